// What is compared after the steps of a playthrough.
#include <algorithm>
#include <string_view>

#include "model/playthrough.h"

namespace model {
namespace {

using support::Element;
using support::Iterator;

/// Integers have no identity; of the others, content that is the same is not enough.
bool is_the_object(const Object& expected, const Element& actual) {
  if (const auto* number = std::get_if<std::int32_t>(&actual)) {
    return *number == std::get<std::int32_t>(expected.element);
  }
  return support::handle(expected.element) == support::handle(actual);
}

}  // namespace

std::ptrdiff_t Playthrough::live_handles_beyond_objects() const {
  std::ptrdiff_t result = live_handles_ + (container_ ? 1 : 0);
  result += std::count_if(slots_.begin(), slots_.end(),
                          [](const std::optional<Slot>& slot) { return slot.has_value(); });
  if (keys_cache) ++result;
  if (values_cache) ++result;
  if (held && held->known != keys_cache) ++result;
  return result;
}

void Playthrough::check_state() {
  performed.count = model_->count();
  performed.bucket_count = model_->bucket_count();
  expect("exception", std::string(), outcome([] { return std::string(); }));
  if (container_) {
    expect("Count", model_->count(), container_->count());
    expect("Empty", model_->count() == 0, container_->empty());
    if (class_.is_hashed()) expect("BinCount", model_->bucket_count(), container_->bin_count());
  }
  for (const auto* cache : {&keys_cache, &values_cache}) {
    if (!*cache || (*cache)->handle == nullptr) continue;
    const unsigned holders = held && held->known == *cache ? 2 : 1;
    expect("locks of the cached array", holders, standin::lock_count((*cache)->handle));
  }
  expect("locks", std::string(), book_.check_changed());
  expect("living handles",
         live_handles_beyond_objects() + static_cast<std::ptrdiff_t>(objects_.live_handles()),
         static_cast<std::ptrdiff_t>(host_.ledger().live_count()));
  for (const standin::Violation& violation : host_.ledger().violations()) {
    expect("use of handles", std::string(), violation.text());
  }
  for (const std::string& error : host_.destructor_errors()) {
    expect("destructors", std::string(), error);
  }
}

void Playthrough::note_order() {
  performed.order.clear();
  for (const Entry& entry : model_->order()) performed.order.push_back(shown_key(*entry.key));
}

void Playthrough::check_element(const char* what, std::size_t place, const Object& expected,
                                const Element& actual) {
  // Most are right, and texts take their time.
  if (is_the_object(expected, actual)) return;
  const support::ElementType type =
      std::string_view(what).starts_with("value") ? *class_.value : class_.key;
  expect(what + (" at place " + std::to_string(place)), shown(type, expected),
         identified(&expected, actual));
}

void Playthrough::check_ends(int most) {
  const Iterator last = container_->last();
  const Iterator position = container_->first();
  std::size_t index = 0;
  std::optional<int> key = model_->first();
  for (; key && most > static_cast<int>(index); key = model_->next(*key), ++index) {
    if (position.is_equal(last)) break;
    const Entry& entry = *model_->find(*key);
    check_element("key", index, *entry.key, position.key());
    if (class_.is_map()) check_element("value", index, *entry.value, position.value());
    position.move_next();
  }
  if (!key) expect("length of the iteration", static_cast<std::size_t>(model_->count()), index);
  expect("whether the iteration is over", !key, position.is_equal(last));
  if (!class_.is_ordered()) return;
  key = model_->last();
  for (index = 0; key && most > static_cast<int>(index); key = model_->previous(*key), ++index) {
    last.move_prev();
    check_element("key from the end", index, *model_->find(*key)->key, last.key());
  }
}

void Playthrough::check_everything() {
  const std::vector<Entry> entries = model_->order();
  const Iterator last = container_->last();
  const Iterator position = container_->first();
  std::size_t index = 0;
  for (; index < entries.size() && !position.is_equal(last); position.move_next(), ++index) {
    const Entry& entry = entries[index];
    check_element("key", index, *entry.key, position.key());
    if (class_.is_map()) check_element("value", index, *entry.value, position.value());
  }
  expect("length of the iteration", entries.size(), index);
  expect("first.isEqual(last) behind the last key", true, position.is_equal(last));
  for (; class_.is_ordered() && index > 0; --index) {
    position.move_prev();
    check_element("key backwards", index - 1, *entries[index - 1].key, position.key());
  }
  expect("locks", std::string(), book_.check_all());
}

void Playthrough::end() {
  for (int i = 0; i < slot_count; ++i) clear_slot(i);
  held.reset();
  drop_caches();
  container_.reset();
  dropped_all();
  check_state();
  expect("locks after the end", std::string(), book_.check_all());
}

}  // namespace model
