// The accounts of a playthrough: what steps do to the model and to the book of locks.
#include "model/playthrough.h"

#include <algorithm>
#include <cmath>

#include "runtime/exceptions.h"

namespace model {
namespace {

using support::Container;
using support::Element;
using support::Iterator;

std::unique_ptr<standin::Host> started_host() {
  standin::HostOptions options;
  options.instrument = true;
  options.strict_ledger = true;
  auto host = std::make_unique<standin::Host>(options);
  host->load_plugin(ZRB_PLUGIN_PATH);
  return host;
}

/// More than any search of a balanced tree needs, also when it descends twice.
std::int64_t most_comparisons(int count) {
  return 8 * static_cast<std::int64_t>(std::ceil(std::log2(count + 2))) + 8;
}

/// The host's message about an index is its own affair.
std::string without_host_message(const std::string& exception) {
  const std::string outside = "OutOfBoundsException";
  return exception.starts_with(outside) ? outside : exception;
}

}  // namespace

std::string Disagreement::text() const {
  return "step " + std::to_string(step) + ", " + name(operation) + ": " + what +
         "\n  expected: " + expected + "\n  actual:   " + actual + "\n";
}

Playthrough::Playthrough(const Sequence& sequence, const ModelFactory& make_model,
                         standin::Host* host)
    : class_(*sequence.container_class),
      make_model_(make_model),
      own_host_(host == nullptr ? started_host() : nullptr),
      host_(host == nullptr ? *own_host_ : *host),
      leftovers_(host_, /*in_shared_host=*/host != nullptr),
      live_handles_(static_cast<std::ptrdiff_t>(host_.ledger().live_count())),
      objects_(class_, sequence.scheme, sequence.key_count, sequence.value_count, book_),
      model_(new_model()),
      container_(Container::make(class_)) {}

Playthrough::~Playthrough() {
  held.reset();
  keys_cache.reset();
  values_cache.reset();
}

const Object& Playthrough::key_of(const Step& step) {
  const Object& key = objects_.key(step.key % objects_.key_count(), step.variation % copies);
  performed.keys.push_back({*key.content, key.other_form});
  return key;
}

const Object& Playthrough::value_of(const Step& step) {
  const Object& value =
      objects_.value(step.value % objects_.value_count(), step.variation % copies);
  performed.values.push_back({*value.content, value.other_form});
  return value;
}

std::vector<const Object*> Playthrough::keys_of(const Step& step, int most, bool with_equal_ones) {
  const int count = std::min({step.number, most, objects_.key_count()});
  // Neighbours in order, or scattered.
  const int distance = step.variation % 2 == 0 ? 1 : 7;
  std::vector<const Object*> result;
  for (int i = 0; i < count; ++i) {
    const int place = with_equal_ones ? i * 2 / 3 : i;
    const int number = (step.key + place * distance) % objects_.key_count();
    result.push_back(&objects_.key(number, with_equal_ones ? i % 2 : 0));
    performed.keys.push_back({*result.back()->content, false});
  }
  return result;
}

std::vector<const Object*> Playthrough::values_of(const Step& step, std::size_t count) {
  std::vector<const Object*> result;
  for (std::size_t i = 0; i < count; ++i) {
    const int number = (step.value + static_cast<int>(i)) % objects_.value_count();
    result.push_back(&objects_.value(number, 0));
    performed.values.push_back({*result.back()->content, false});
  }
  return result;
}

bool Playthrough::searched(Model& model, const Object& key, bool whole_chain) {
  const bool found = model.find(key.number) != nullptr;
  if (class_.key == support::ElementType::integer) return found;
  if (support::handle(key.element) == nullptr) book_.unknown_takes_part();
  if (class_.is_ordered()) {
    if (model.count() > 0) book_.compared_some(1, most_comparisons(model.count()));
    return found;
  }
  for (const Object* stored : model.chain(objects_.hash(key.number))) {
    book_.compared(key.element, stored->element);
    if (stored->number == key.number && !whole_chain) break;
  }
  return found;
}

void Playthrough::searched_by_unknown(Model& model, int key) {
  book_.unknown_takes_part();
  if (class_.is_ordered()) {
    book_.compared_some(1, most_comparisons(model.count()));
    return;
  }
  for (const Object* stored : model.chain(objects_.hash(key))) {
    book_.add(stored->element, 1);
    if (stored->number == key) break;
  }
}

void Playthrough::stored(Model& model, const Object& key, const Object* value) {
  model.grow();
  if (!searched(model, key)) {
    model.insert({&key, nullptr}, objects_.hash(key.number));
    book_.add(key.element, 1);
  }
  if (value != nullptr) replaced(*model.find(key.number), *value);
}

void Playthrough::replaced(Entry& entry, const Object& value) {
  book_.add(value.element, 1);
  if (entry.value != nullptr) book_.add(entry.value->element, -1);
  entry.value = &value;
}

void Playthrough::dropped(int key) {
  const Entry* const entry = model_->find(key);
  book_.add(entry->key->element, -1);
  if (entry->value != nullptr) book_.add(entry->value->element, -1);
  model_->erase(key);
  for (int i = 0; i < slot_count; ++i) {
    if (slot(i) && slot(i)->key == key) clear_slot(i);
  }
}

void Playthrough::dropped_all() {
  for (const Entry& entry : model_->order()) dropped(entry.key->number);
}

void Playthrough::abandoned() {
  model_ = new_model();
  for (int i = 0; i < slot_count; ++i) clear_slot(i);
}

void Playthrough::build_caches() {
  if (keys_cache) return;
  std::vector<const Object*> its_keys;
  std::vector<const Object*> its_values;
  for (const Entry& entry : model_->order()) {
    its_keys.push_back(entry.key);
    if (class_.is_map()) its_values.push_back(entry.value);
  }
  keys_cache = std::make_shared<KnownArray>(book_, std::move(its_keys));
  if (class_.is_map()) values_cache = std::make_shared<KnownArray>(book_, std::move(its_values));
}

void Playthrough::drop_caches() {
  keys_cache.reset();
  values_cache.reset();
}

void Playthrough::set_slot(int number, Iterator iterator, std::optional<int> key) {
  slot(number).emplace(Slot{std::move(iterator), key});
}

void Playthrough::clear_slot(int number) {
  slot(number).reset();
}

void Playthrough::replace_container(Container container) {
  for (int i = 0; i < slot_count; ++i) clear_slot(i);
  drop_caches();
  container_.emplace(std::move(container));
}

std::string Playthrough::outcome(const std::function<std::string()>& call) {
  const std::string result = call();
  if (!host_.has_pending_exception()) return result;
  const standin::HostException exception(host_.take_pending_exception());
  const std::string raised =
      without_host_message(exception.class_name() + ": " + exception.message());
  for (const char* neutral : {"", "0", "0:", "False"}) {
    if (result == neutral) return raised;
  }
  return raised + ", with the result " + result;
}

std::string Playthrough::identified(const Object* expected, const Element& actual) const {
  const bool is_same =
      expected == nullptr || support::handle(expected->element) == support::handle(actual);
  return shown(actual) + (is_same ? "" : " in another object");
}

void Playthrough::expect(const std::string& what, const std::string& expected,
                         const std::string& actual) {
  if (expected == actual) return;
  throw Disagreed{{performed.number, performed.operation, what, expected, actual}};
}

void Playthrough::expect_result(const std::string& expected, const std::string& actual) {
  performed.expected = expected;
  expect("result", expected, actual);
}

void Playthrough::begin(std::size_t number, const Step& step) {
  performed = {};
  performed.number = number;
  performed.operation = step.operation;
  performed.variation = step.variation;
}

}  // namespace model
