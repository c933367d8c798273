// Containers and iterators as a host program handles them: every operation is a call of the
// registered routine that bears the declaration, through its function pointer.
//
// A call that raises leaves its exception pending in the host and gives what the routine returned,
// so that tests see both (PluginTest::raised takes the exception).
#ifndef ZRB_TESTS_SUPPORT_CONTAINER_H
#define ZRB_TESTS_SUPPORT_CONTAINER_H

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "runtime/host.h"
#include "support/container_classes.h"
#include "support/elements.h"

namespace support {

/// A host object of a registered class.
class Instance {
 public:
  explicit operator bool() const { return static_cast<bool>(object_); }
  REALobject get() const { return object_.get(); }
  const ContainerClass& container_class() const { return *class_; }

  /// Calls the routine of a declaration, given as the template of its kind.
  template <class Result, class... Arguments>
  Result call(std::string_view declaration_template, Arguments... arguments) const {
    using Routine = Result (*)(REALobject, Arguments...);
    return reinterpret_cast<Routine>(function(declaration_template))(get(), arguments...);
  }

  /// Calls the setter of an assignable declaration; the assigned value comes last.
  template <class... Arguments>
  void assign(std::string_view declaration_template, Arguments... arguments) const {
    using Routine = void (*)(REALobject, Arguments...);
    reinterpret_cast<Routine>(setter(declaration_template))(get(), arguments...);
  }

  /// The same for a routine whose result is an element; takes over the lock of the result.
  template <class... Arguments>
  Element call_for(ElementType result, std::string_view declaration_template,
                   Arguments... arguments) const {
    switch (result) {
      case ElementType::integer:
        return adopt(call<std::int32_t>(declaration_template, arguments...));
      case ElementType::string:
        return adopt(call<REALstring>(declaration_template, arguments...));
      case ElementType::variant:
        return adopt(call<REALobject>(declaration_template, arguments...));
    }
    std::abort();
  }

  /// The record of a method, by its declaration.
  const REALmethodDefinition& method(std::string_view declaration_template) const;

  /// The plugin's data of this instance: its first pointer-wide word.
  void* first_word() const;

  /// Puts an array into a slot of the plugin's data, with a lock of the instance's own: slot 0 is
  /// for cached keys, slot 1 for cached values.
  void plant_array(std::size_t slot, const standin::ArrayRef& array) const;

  /// Gives up the host's object, so that it dies now if nobody else holds it.
  void release() { object_.reset(); }

  /// Hears of each member that is called: the template of its declaration, with " =" behind it for
  /// a setter, or the name of a property.
  static inline std::function<void(const std::string& member)> on_call;

 protected:
  Instance(const ContainerClass& container_class, const char* registered_name,
           standin::ObjectRef object);
  static void tell_call(std::string_view member, const char* suffix = "");

  const ContainerClass* class_;
  const REALclassDefinition* record_;
  standin::ObjectRef object_;

 private:
  // About to be called.
  void* function(std::string_view declaration_template) const;
  void* setter(std::string_view declaration_template) const;
};

class Iterator : public Instance {
 public:
  /// Takes over an iterator that a routine returned; null gives an empty Iterator.
  static Iterator adopt(const ContainerClass& container_class, REALobject iterator);
  /// An iterator made by the host's `New`: it has no position.
  static Iterator without_position(const ContainerClass& container_class);

  void move_next() const { call<void>("MoveNext"); }
  void move_prev() const { call<void>("MovePrev"); }
  Element key() const { return call_for(container_class().key, "Key as {K}"); }
  Element value() const { return call_for(*container_class().value, "Value as {V}"); }
  void set_value(const Element& new_value) const;
  bool is_equal(const Iterator& other) const { return is_equal(other.get()); }
  bool is_not_equal(const Iterator& other) const { return is_not_equal(other.get()); }
  bool is_equal(REALobject other) const;
  bool is_not_equal(REALobject other) const;

 private:
  using Instance::Instance;
};

class Container : public Instance {
 public:
  /// An instance on which the parameterless constructor ran.
  static Container make(const ContainerClass& container_class);
  /// An instance on which no constructor ran.
  static Container without_storage(const ContainerClass& container_class);

  /// Takes over a container that a routine returned; null gives an empty Container.
  static Container adopt(const ContainerClass& container_class, REALobject container);

  void construct() const { call<void>("Constructor"); }
  void clear() const { call<void>("Clear"); }

  std::int32_t max_size() const { return property<std::int32_t>("MaxSize"); }
  std::int32_t count() const { return property<std::int32_t>("Count"); }
  std::int32_t bin_count() const { return property<std::int32_t>("BinCount"); }
  bool empty() const { return property<bool>("Empty"); }

  Iterator first() const { return iterator("first as {Iterator}"); }
  Iterator last() const { return iterator("last as {Iterator}"); }
  /// An iterator that was moved on so many steps from the first element.
  Iterator nth(int steps) const;
  Iterator find(const Element& key) const {
    return iterator_at("find(key as {K}) as {Iterator}", key);
  }
  Iterator lower_bound(const Element& key) const {
    return iterator_at("LowerBound(key as {K}) as {Iterator}", key);
  }
  Iterator upper_bound(const Element& key) const {
    return iterator_at("UpperBound(key as {K}) as {Iterator}", key);
  }

  void remove(const Iterator& position) const { remove_at(position.get()); }
  void remove(const Iterator& first, const Iterator& last) const {
    remove_range(first.get(), last.get());
  }
  void remove_at(REALobject position) const;
  void remove_range(REALobject first, REALobject last) const;
  std::int32_t remove(const Element& key) const;
  std::int32_t count_key(const Element& key) const;

  /// Sets: `insert`, and `lookup` for membership.
  void insert(const Element& key) const;
  /// Sets and maps: `lookup` of a set, `hasKey` of a map.
  bool contains(const Element& key) const;

  /// Maps.
  void assign_value(const Element& key, const Element& value) const;
  Element value(const Element& key) const;
  Element lookup(const Element& key, const Element& default_value) const;

  /// Adds a key; to a map with the value given, which sets ignore.
  void put(const Element& key, const Element& value) const;
  /// Adds the index-th key, to a map with the index-th value.
  void put(int index) const;
  void put_all(int first_index, int count) const;

  /// Keys and, for maps, values, by iteration from first to last.
  std::vector<Element> keys() const;
  std::vector<std::string> described_keys() const;
  std::vector<std::string> described_values() const;

 private:
  using Instance::Instance;

  template <class Result>
  Result property(std::string_view name) const {
    using Getter = Result (*)(REALobject, std::int32_t);
    return reinterpret_cast<Getter>(getter(name))(get(), 0);
  }
  void* getter(std::string_view name) const;
  Iterator iterator(std::string_view declaration_template) const;
  Iterator iterator_at(std::string_view declaration_template, const Element& key) const;
};

}  // namespace support

#endif
