// Setting scenes, and taking stock after them.
#include "scene.h"

#include <algorithm>
#include <numeric>

#include "runtime/arrays.h"
#include "runtime/dictionary.h"
#include "runtime/variants.h"
#include "support/host_arrays.h"

namespace faults {
namespace {

using standin::Value;
using support::Element;
using support::ElementType;

Value to_value(const Element& element) {
  if (const auto* integer = std::get_if<std::int32_t>(&element)) return Value::of_integer(*integer);
  if (const auto* string = std::get_if<standin::StringRef>(&element)) {
    return Value::of_string(*string);
  }
  return Value::of_variant(std::get<standin::ObjectRef>(element));
}

Element to_element(const Value& value) {
  if (value.kind() == standin::TypeKind::integer) return value.as_integer();
  if (value.kind() == standin::TypeKind::string) return value.share_string();
  return value.share_object();
}

ElementType element_type(const standin::Type& array) {
  switch (array.element->kind) {
    case standin::TypeKind::integer:
      return ElementType::integer;
    case standin::TypeKind::string:
      return ElementType::string;
    default:
      return ElementType::variant;
  }
}

std::string element_texts(const standin::Type& type, REALarray array) {
  if (array == nullptr) return "nil";
  std::string text = "array of";
  for (const std::string& element : support::described(element_type(type), array)) {
    text += " " + element;
  }
  return text;
}

std::int64_t sum(const std::vector<std::int64_t>& numbers) {
  return std::accumulate(numbers.begin(), numbers.end(), std::int64_t{0});
}

}  // namespace

std::string state_name(int elements) {
  return elements == no_storage ? "no storage" : std::to_string(elements) + " elements";
}

const char* name(Given given) {
  switch (given) {
    case Given::present:
      return "present";
    case Given::absent:
      return "absent";
    case Given::nil:
      return "nil";
  }
  return "";
}

std::vector<Given> cases(const Routine& routine, int elements) {
  if (routine.takes(Argument::key) || routine.takes(Argument::index)) {
    if (elements > 0) return {Given::present, Given::absent};
    return {Given::absent};
  }
  if (routine.takes_objects()) return {Given::present, Given::nil};
  return {Given::present};
}

Scene::Scene(const Routine& routine, const Access& access, const Stock& stock, int elements,
             Given given, int more_locks)
    : routine_(routine),
      access_(access),
      stock_(stock),
      elements_(elements),
      given_(given),
      key_index_(given == Given::present ? elements / 2 : std::max(elements, 0)),
      live_before_(standin::Host::current().ledger().live_count()),
      locks_before_(stock.locks(source_size(elements) + 1)) {
  standin::Host& host = standin::Host::current();
  const support::ContainerClass& c = *routine.container_class;
  container_ = host.new_instance(c.name);
  for (int i = 0; i < more_locks; ++i) standin::lock(container());
  if (elements != no_storage) {
    access.construct(container());
    fill(elements);
    storage_ = access.word(container(), 0);
  }
  if (routine.of_iterator) {
    if (elements == no_storage) {
      iterator_ = host.new_instance(c.iterator_name);
    } else {
      iterator_ = elements == 0 ? access.last(container())
                                : access.find(container(), stock.key(elements / 2));
    }
  }
  if (elements >= 0 && elements <= 1 && routine.driver->effect != Effect::reads) {
    access.keys(container());
  }
  add_arguments();
  if (elements != no_storage) before_ = access.walk(container()).value();
  cached_at_call_ = access.word(container(), 1) != nullptr;
  locks_at_call_ = stock_.locks(source_size(elements) + 1);
}

Scene::~Scene() = default;

void Scene::fill(int elements) {
  for (int i = 0; i < elements; ++i) access_.put(container(), stock_.key(i), stock_.value(i));
}

void Scene::add_arguments() {
  if (routine_.method == nullptr) return;
  const standin::Declaration& declaration = routine_.method->declaration;
  const std::vector<Argument>& wanted = routine_.driver->arguments;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    const standin::Type& type =
        i < declaration.parameters.size() ? declaration.parameters[i].type : declaration.result;
    const bool is_nil = given_ == Given::nil && wanted[i] >= Argument::position;
    arguments_.push_back(is_nil ? Value::initial(type) : argument(wanted[i], type));
  }
}

Value Scene::argument(Argument argument, const standin::Type& type) {
  standin::Host& host = standin::Host::current();
  const char* const iterator_name = routine_.container_class->iterator_name;
  const int size = source_size(elements_);
  const auto iterator = [&](auto make) {
    return Value::of_object(elements_ == no_storage ? host.new_instance(iterator_name) : make());
  };
  switch (argument) {
    case Argument::key:
      return to_value(stock_.equal_key(key_index_));
    case Argument::index:
      return Value::of_integer(key_index_);
    case Argument::value:
      return to_value(stock_.value(Stock::new_value));
    case Argument::position:
    case Argument::other_iterator:
      return iterator(
          [&] { return access_.find(container(), stock_.key(std::max(elements_, 0) / 2)); });
    case Argument::rest_first:
      return iterator([&] {
        standin::ObjectRef at = access_.first(container());
        if (elements_ > 1) access_.move_next(at.get());
        return at;
      });
    case Argument::rest_last:
      return iterator([&] { return access_.last(container()); });
    case Argument::array:
    case Argument::target_array: {
      std::vector<Element> elements;
      const bool of_strings = element_type(type) == ElementType::string &&
                              routine_.container_class->key == ElementType::variant;
      if (argument == Argument::target_array) {
        elements.push_back(support::neutral(element_type(type)));
      } else {
        for (int i = 0; i < size; ++i) {
          elements.push_back(of_strings ? support::element(ElementType::string, i)
                                        : stock_.equal_key(i));
        }
      }
      return Value::of_array(support::host_array(element_type(type), elements));
    }
    case Argument::dictionary: {
      standin::ObjectRef dictionary = standin::make_dictionary();
      for (int i = 0; i < size; ++i) {
        standin::dictionary_set(dictionary.get(),
                                standin::from_value(to_value(stock_.equal_key(i))).get(),
                                standin::from_value(to_value(stock_.value(i))).get());
      }
      return Value::of_object(std::move(dictionary));
    }
    case Argument::other_map: {
      standin::ObjectRef other = host.new_instance(routine_.container_class->name);
      access_.construct(other.get());
      for (int i = 0; i < size; ++i) {
        access_.put(other.get(), stock_.equal_key(i), stock_.value(i));
      }
      return Value::of_object(std::move(other));
    }
  }
  return {};
}

void Scene::call() {
  cached_at_call_ = access_.word(container(), 1) != nullptr;
  locks_at_call_ = stock_.locks(source_size(elements_) + 1);
  result_ = Value();
  raised_.clear();
  try {
    result_ = faults::call(routine_, routine_.of_iterator ? iterator_.get() : container_.get(),
                           arguments_);
  } catch (const standin::HostException& exception) {
    raised_ = "raises " + exception.class_name() + ": " + exception.message();
  }
}

std::string Scene::result() const {
  if (!raised_.empty()) return raised_;
  switch (result_.kind()) {
    case standin::TypeKind::void_:
      if (!routine_.takes(Argument::target_array) || given_ == Given::nil) return "";
      return element_texts(routine_.method->declaration.parameters[0].type,
                           arguments_[0].as_array());
    case standin::TypeKind::boolean:
      return result_.as_boolean() ? "True" : "False";
    case standin::TypeKind::array:
      return element_texts(routine_.method->declaration.result, result_.as_array());
    case standin::TypeKind::object:
      return text_of_object(result_.as_object());
    default:
      return support::describe(to_element(result_));
  }
}

std::string Scene::text_of_object(REALobject object) const {
  if (object == nullptr) return "nil";
  const standin::ClassInfo& info = *standin::class_of(object);
  if (info.is_native()) return info.name();
  if (info.name() == routine_.container_class->name) {
    return describe(access_.walk(object).value_or(Contents{{}}));
  }
  return "at " + std::to_string(access_.key_at(object));
}

std::optional<Contents> Scene::now() const {
  if (!has_storage()) return Contents();
  return access_.walk(container());
}

int Scene::iterator_key() const {
  if (!iterator_ || access_.word(iterator_.get(), 0) == nullptr) return EntryIndices::unknown;
  return access_.key_at(iterator_.get());
}

bool Scene::left_storage_behind() const {
  if (!container_) return false;
  const Effect effect = routine_.driver->effect;
  return leaves_storage_ ||
         (storage_ != nullptr && (effect == Effect::fills || effect == Effect::abandons) &&
          access_.word(container(), 0) != storage_);
}

std::int64_t Scene::comparison_difference(const Contents& now) const {
  if (routine_.container_class->key == ElementType::integer) return 0;
  const Stock::Locks locks = stock_.locks(source_size(elements_) + 1);
  std::int64_t stored = sum(locks.keys) - sum(locks_at_call_.keys);
  std::int64_t sought = sum(locks.equal_keys) - sum(locks_at_call_.equal_keys);
  // What was added holds a lock on the argument, what went has given back that of a stored key.
  const bool added = std::any_of(
      now.begin(), now.end(), [&](const EntryIndices& entry) { return entry.key == key_index_; });
  if (given_ == Given::absent && added) sought -= 1;
  // So has a cached array, of which each element was locked.
  const bool dropped_cache = cached_at_call_ && access_.word(container(), 1) == nullptr;
  if (dropped_cache) stored += static_cast<std::int64_t>(before_.size());
  stored += static_cast<std::int64_t>(before_.size()) -
            (static_cast<std::int64_t>(now.size()) - (given_ == Given::absent && added ? 1 : 0));
  return stored - sought;
}

std::string Scene::end(bool odd) {
  leaves_storage_ = left_storage_behind();
  const bool leaves_storage = leaves_storage_;
  result_ = Value();
  arguments_.clear();
  iterator_.reset();
  container_.reset();

  const support::ContainerClass& c = *routine_.container_class;
  const Stock::Locks locks = stock_.locks(source_size(elements_) + 1);
  std::string problems;
  const auto is_kept = [&](std::size_t index) {
    return leaves_storage && index < before_.size() ? 1 : 0;
  };
  std::int64_t extra_locks = 0;
  for (std::size_t i = 0; i < locks.keys.size(); ++i) {
    const std::int64_t kept = c.key == ElementType::integer ? 0 : is_kept(i);
    const std::int64_t of_key = locks.keys[i] - locks_before_.keys[i] - kept;
    const std::int64_t of_equal_key = locks.equal_keys[i] - locks_before_.equal_keys[i];
    if (of_key < 0 || of_equal_key < 0) {
      problems += "key " + std::to_string(i) + " lost locks: " + std::to_string(of_key) + " and " +
                  std::to_string(of_equal_key) + "\n";
    }
    extra_locks += of_key + of_equal_key;
    const std::int64_t value_kept = c.is_map() && *c.value != ElementType::integer ? is_kept(i) : 0;
    if (const std::int64_t of_value = locks.values[i] - locks_before_.values[i] - value_kept;
        of_value != 0) {
      problems += "value " + std::to_string(i) + ": " + std::to_string(of_value) + " locks\n";
    }
  }
  const bool makes_keys = c.key == ElementType::variant && routine_.takes(Argument::array);
  if (extra_locks % 2 != 0 && !odd && !makes_keys) {
    problems += "locks on keys that no comparison left: " + std::to_string(extra_locks) + "\n";
  }
  // A key that the plugin made, or got from a Dictionary, lives on once it was compared.
  const bool may_keep_keys =
      c.key != ElementType::integer &&
      (routine_.takes(Argument::dictionary) || routine_.takes(Argument::array));
  const std::size_t allowance =
      may_keep_keys ? static_cast<std::size_t>(2 * source_size(elements_)) : 0;
  const std::size_t live = standin::Host::current().ledger().live_count();
  if (live < live_before_ || live > live_before_ + allowance) {
    problems +=
        std::to_string(live) + " live handles instead of " + std::to_string(live_before_) + "\n";
  }
  return problems;
}

}  // namespace faults
