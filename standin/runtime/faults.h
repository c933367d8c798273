// Faults: making the n-th call of an entry point fail. For hosts made with `instrument`.
#ifndef ZRB_STANDIN_RUNTIME_FAULTS_H
#define ZRB_STANDIN_RUNTIME_FAULTS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace standin {

// What a faulty entry point throws, in place of any exception that a host might let through.
class InjectedFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Entry points are named as they are looked up; framework functions and Dictionary methods by their
// declaration (any case and spacing); the procedures of array elements as "array get integer",
// "array set string", "array insert object" and so on. Calls are counted from the moment that a
// fault is set, the first being number 1. Several faults may be set; each counts for itself.
class Faults {
 public:
  enum class Repeat : std::uint8_t { once, from_there_on };
  static constexpr std::string_view any_entry_point = "*";

  // Throws InjectedFault instead of carrying the call out. std::invalid_argument for an unknown
  // name.
  void throw_at(std::string_view entry_point, std::uint64_t n, Repeat repeat = Repeat::once);
  // Answers null, 0 or false instead of carrying the call out.
  void answer_null_at(std::string_view entry_point, std::uint64_t n, Repeat repeat = Repeat::once);
  // Runs the callback, then carries the call out. The callback may throw.
  void call_at(std::string_view entry_point, std::uint64_t n, std::function<void()> callback,
               Repeat repeat = Repeat::once);

  void clear() { rules_.clear(); }
  // How many faults came to pass since the last `clear` of this number.
  std::uint64_t fired() const { return fired_; }
  void reset_fired() { fired_ = 0; }
  // The entry point at which the last fault came to pass; for callbacks too. "" before the first.
  const char* last_fired() const { return last_fired_; }

  // For the runtime itself: returns whether to answer null; may throw.
  bool apply(std::size_t entry_point, const char* name) {
    return rules_.empty() ? false : apply_rules(entry_point, name);
  }

 private:
  enum class Action : std::uint8_t { throw_exception, answer_null, call_back };
  struct Rule {
    std::size_t entry_point;  // `every` for any
    std::uint64_t countdown;
    Repeat repeat;
    Action action;
    std::function<void()> callback;
  };
  void add(std::string_view entry_point, std::uint64_t n, Repeat repeat, Action action,
           std::function<void()> callback);
  bool apply_rules(std::size_t entry_point, const char* name);

  std::vector<Rule> rules_;
  std::uint64_t fired_ = 0;
  const char* last_fired_ = "";
};

}  // namespace standin

#endif
