// Entries stand in a vector in their order; an index finds them by key. A removed entry leaves a
// gap, and the gaps are closed when someone asks for entries by position.
#include "runtime/dictionary.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <unordered_map>
#include <vector>

#include "runtime/arrays.h"
#include "runtime/currency.h"
#include "runtime/exceptions.h"
#include "runtime/host.h"
#include "runtime/native_classes.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace standin {
namespace {

// A number as a key: whole ones exactly, so that Integer 1, Double 1.0 and Currency 1 are one key.
struct NumberKey {
  bool is_whole;
  std::int64_t whole;
  double fraction;

  friend bool operator==(const NumberKey& a, const NumberKey& b) {
    if (a.is_whole || b.is_whole) return a.is_whole == b.is_whole && a.whole == b.whole;
    return a.fraction == b.fraction || (std::isnan(a.fraction) && std::isnan(b.fraction));
  }
};

NumberKey number_key(double value) {
  const bool is_whole = value == std::floor(value) && std::abs(value) < 9007199254740992.0;
  return {is_whole, is_whole ? static_cast<std::int64_t>(value) : 0, value};
}

NumberKey number_key(REALobject key, VariantType type) {
  switch (type) {
    case VariantType::integer:
    case VariantType::int64:
      return {true, to_int64(key), 0};
    case VariantType::currency: {
      const std::int64_t scaled = to_currency(key);
      if (scaled % currency_scale == 0) return {true, scaled / currency_scale, 0};
      return number_key(to_double(key));
    }
    default:
      return number_key(to_double(key));
  }
}

bool is_number(VariantType type) {
  return type == VariantType::integer || type == VariantType::int64 ||
         type == VariantType::single || type == VariantType::double_ ||
         type == VariantType::currency;
}

struct KeyHash {
  std::size_t operator()(const ObjectRef& key) const {
    const VariantType type = variant_type(key.get());
    if (is_number(type)) {
      const NumberKey number = number_key(key.get(), type);
      if (number.is_whole) return std::hash<std::int64_t>()(number.whole);
      return std::isnan(number.fraction) ? 0 : std::hash<double>()(number.fraction);
    }
    if (type == VariantType::string) {
      const StringRef text = to_string(key.get());
      return std::hash<std::string>()(lower_name(bytes(text.get()))) + encoding(text.get());
    }
    if (type == VariantType::boolean || type == VariantType::color) {
      return static_cast<std::size_t>(to_int32(key.get()));
    }
    return std::hash<void*>()(to_object(key.get()));
  }
};

struct KeyEqual {
  bool operator()(const ObjectRef& a, const ObjectRef& b) const {
    const VariantType a_type = variant_type(a.get());
    const VariantType b_type = variant_type(b.get());
    if (is_number(a_type) && is_number(b_type)) {
      return number_key(a.get(), a_type) == number_key(b.get(), b_type);
    }
    if (a_type != b_type) return false;
    switch (a_type) {
      case VariantType::nil:
        return true;
      case VariantType::string: {
        const StringRef a_text = to_string(a.get());
        const StringRef b_text = to_string(b.get());
        return encoding(a_text.get()) == encoding(b_text.get()) &&
               same_name(bytes(a_text.get()), bytes(b_text.get()));
      }
      case VariantType::boolean:
      case VariantType::color:
        return to_int32(a.get()) == to_int32(b.get());
      default:
        return to_object(a.get()) == to_object(b.get());
    }
  }
};

struct DictionaryData {
  struct Entry {
    ObjectRef key;
    ObjectRef value;
    bool removed = false;
  };

  std::vector<Entry> entries;
  std::unordered_map<ObjectRef, std::size_t, KeyHash, KeyEqual> positions;

  Entry* find(REALobject key) {
    const auto found = positions.find(ObjectRef::share(key));
    return found == positions.end() ? nullptr : &entries[found->second];
  }

  // A replaced value goes last: its end may come back to this dictionary.
  void set(REALobject key, REALobject value) {
    ObjectRef replaced = ObjectRef::share(value);
    if (Entry* entry = find(key)) {
      std::swap(entry->value, replaced);
      return;
    }
    positions.emplace(ObjectRef::share(key), entries.size());
    entries.push_back({ObjectRef::share(key), std::move(replaced)});
  }

  bool remove(REALobject key) {
    Entry* entry = find(key);
    if (entry == nullptr) return false;
    entry->removed = true;
    const Entry removed = std::exchange(*entry, Entry{nullptr, nullptr, true});
    positions.erase(removed.key);
    return true;
  }

  void close_gaps() {
    if (entries.size() == positions.size()) return;
    std::erase_if(entries, [](const Entry& entry) { return entry.removed; });
    for (std::size_t i = 0; i < entries.size(); ++i) positions.at(entries[i].key) = i;
  }

  void clear() {
    const std::vector<Entry> removed = std::exchange(entries, {});
    positions.clear();
  }
};

constexpr NativeData dictionary_data = native_data_of<DictionaryData>();

DictionaryData& data_of(REALobject dictionary) {
  const ClassInfo* owner = class_with(dictionary, dictionary_data.construct);
  if (owner == nullptr) raise("IllegalCastException", "not a Dictionary");
  return *static_cast<DictionaryData*>(instance_data(dictionary, *owner));
}

[[noreturn]] void raise_missing_key() {
  raise("KeyNotFoundException", "Key not found");
}

// The class as programs see it.

Value construct(REALobject, std::span<const Value>) {
  return {};
}

Value clear(REALobject self, std::span<const Value>) {
  dictionary_clear(self);
  return {};
}

Value has_key(REALobject self, std::span<const Value> arguments) {
  return Value::of_boolean(dictionary_has(self, arguments[0].as_object()));
}

Value key_at(REALobject self, std::span<const Value> arguments) {
  return Value::of_variant(dictionary_key(self, arguments[0].as_integer()));
}

Value value_of(REALobject self, std::span<const Value> arguments) {
  return Value::of_variant(dictionary_value(self, arguments[0].as_object()));
}

Value set_value(REALobject self, std::span<const Value> arguments) {
  dictionary_set(self, arguments[0].as_object(), arguments[1].as_object());
  return {};
}

Value lookup(REALobject self, std::span<const Value> arguments) {
  const auto* entry = data_of(self).find(arguments[0].as_object());
  return Value::of_variant(entry == nullptr ? arguments[1].share_object() : entry->value);
}

Value remove_key(REALobject self, std::span<const Value> arguments) {
  dictionary_remove(self, arguments[0].as_object());
  return {};
}

template <ObjectRef DictionaryData::Entry::*part>
Value all_parts(REALobject self, std::span<const Value>) {
  DictionaryData& data = data_of(self);
  data.close_gaps();
  ArrayRef array = make_array(Type::of(TypeKind::variant), dictionary_count(self) - 1);
  for (std::size_t i = 0; i < data.entries.size(); ++i) {
    set(array.get(), static_cast<std::int32_t>(i), Value::of_variant(data.entries[i].*part));
  }
  return Value::of_array(std::move(array));
}

Value get_count(REALobject self) {
  return Value::of_integer(dictionary_count(self));
}
Value get_bin_count(REALobject self) {
  return Value::of_integer(static_cast<std::int32_t>(data_of(self).positions.bucket_count()));
}

constexpr NativeMethodRow methods[] = {
    {"Constructor", construct},
    {"Clear", clear},
    {"HasKey(key As Variant) As Boolean", has_key},
    {"Key(index As Integer) As Variant", key_at},
    {"Keys As Variant()", all_parts<&DictionaryData::Entry::key>},
    {"Lookup(key As Variant, defaultValue As Variant) As Variant", lookup},
    {"Remove(key As Variant)", remove_key},
    {"Value(key As Variant) As Variant", value_of, set_value},
    {"Values As Variant()", all_parts<&DictionaryData::Entry::value>},
};

constexpr NativePropertyRow properties[] = {
    {"Count", "Integer", get_count},
    {"BinCount", "Integer", get_bin_count},
};

}  // namespace

NativeClassRow dictionary_class_row() {
  return {"Dictionary", nullptr, dictionary_data, methods, properties};
}

ObjectRef make_dictionary() {
  return make_instance(*Host::current().find_class("Dictionary"));
}

bool is_dictionary(REALobject object) {
  return class_with(object, dictionary_data.construct) != nullptr;
}

std::int32_t dictionary_count(REALobject dictionary) {
  return static_cast<std::int32_t>(data_of(dictionary).positions.size());
}

void dictionary_set(REALobject dictionary, REALobject key, REALobject value) {
  data_of(dictionary).set(key, value);
}

bool dictionary_has(REALobject dictionary, REALobject key) {
  return data_of(dictionary).find(key) != nullptr;
}

ObjectRef dictionary_value(REALobject dictionary, REALobject key) {
  const auto* entry = data_of(dictionary).find(key);
  if (entry == nullptr) raise_missing_key();
  return entry->value;
}

ObjectRef dictionary_key(REALobject dictionary, std::int32_t index) {
  DictionaryData& data = data_of(dictionary);
  data.close_gaps();
  if (index < 0 || static_cast<std::size_t>(index) >= data.entries.size()) {
    raise("OutOfBoundsException", "no key at index " + std::to_string(index));
  }
  return data.entries[static_cast<std::size_t>(index)].key;
}

void dictionary_remove(REALobject dictionary, REALobject key) {
  if (!data_of(dictionary).remove(key)) raise_missing_key();
}

void dictionary_clear(REALobject dictionary) {
  data_of(dictionary).clear();
}

}  // namespace standin
