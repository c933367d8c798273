// Counting down to faults.
#include "runtime/faults.h"

#include <limits>

#include "runtime/entry_points.h"

namespace standin {
namespace {
constexpr std::size_t every = std::numeric_limits<std::size_t>::max();
}

void Faults::throw_at(std::string_view entry_point, std::uint64_t n, Repeat repeat) {
  add(entry_point, n, repeat, Action::throw_exception, {});
}

void Faults::answer_null_at(std::string_view entry_point, std::uint64_t n, Repeat repeat) {
  add(entry_point, n, repeat, Action::answer_null, {});
}

void Faults::call_at(std::string_view entry_point, std::uint64_t n, std::function<void()> callback,
                     Repeat repeat) {
  add(entry_point, n, repeat, Action::call_back, std::move(callback));
}

void Faults::add(std::string_view entry_point, std::uint64_t n, Repeat repeat, Action action,
                 std::function<void()> callback) {
  if (n == 0) throw std::invalid_argument("calls are counted from 1");
  std::size_t index = every;
  if (entry_point != any_entry_point) index = require_entry_point(entry_point);
  rules_.push_back({index, n, repeat, action, std::move(callback)});
}

bool Faults::apply_rules(std::size_t entry_point, const char* name) {
  bool throws = false;
  bool answers_null = false;
  std::vector<std::function<void()>> callbacks;
  for (Rule& rule : rules_) {
    if (rule.entry_point != every && rule.entry_point != entry_point) continue;
    if (rule.countdown == 0 && rule.repeat == Repeat::once) continue;
    if (rule.countdown > 0) --rule.countdown;
    if (rule.countdown > 0) continue;
    ++fired_;
    last_fired_ = name;
    throws = throws || rule.action == Action::throw_exception;
    answers_null = answers_null || rule.action == Action::answer_null;
    if (rule.action == Action::call_back) callbacks.push_back(rule.callback);
  }
  // Only now, since a callback may change the rules.
  for (const std::function<void()>& callback : callbacks) callback();
  if (throws) throw InjectedFault(std::string("injected fault in ") + name);
  return answers_null;
}

}  // namespace standin
