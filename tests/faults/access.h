// Looking at a container and changing it, through routines that are looked up once: the suites that
// let every call fail do little else.
#ifndef ZRB_TESTS_FAULTS_ACCESS_H
#define ZRB_TESTS_FAULTS_ACCESS_H

#include <cstddef>
#include <cstdint>
#include <optional>

#include "runtime/host.h"
#include "stock.h"

namespace faults {

class Access {
 public:
  Access(const support::ContainerClass& container_class, const Stock& stock);

  void construct(REALobject container) const { call<void>(construct_, container); }
  void put(REALobject container, const support::Element& key, const support::Element& value) const;
  std::int32_t remove(REALobject container, const support::Element& key) const;
  bool contains(REALobject container, const support::Element& key) const;
  std::int32_t count(REALobject container) const {
    return call<std::int32_t>(count_, container, 0);
  }
  std::int32_t bin_count(REALobject container) const;
  void clear(REALobject container) const { call<void>(clear_, container); }
  standin::ArrayRef keys(REALobject container) const;

  standin::ObjectRef first(REALobject container) const;
  standin::ObjectRef last(REALobject container) const;
  standin::ObjectRef find(REALobject container, const support::Element& key) const;
  void move_next(REALobject iterator) const { call<void>(move_next_, iterator); }
  bool is_equal(REALobject a, REALobject b) const { return call<bool>(is_equal_, a, b); }

  /// From first to last; nothing when the walk meets more than it can contain.
  std::optional<Contents> walk(REALobject container) const;
  /// The index of the key that an iterator names.
  int key_at(REALobject iterator) const;
  int index_of_key(const support::Element& key) const { return stock_.index_of_key(key); }
  int index_of_value(const support::Element& value) const { return stock_.index_of_value(value); }

  /// The instance's own words: storage, keys cache, values cache; of an iterator its position.
  void* word(REALobject instance, std::size_t place) const;
  bool has_storage(REALobject container) const { return word(container, 0) != nullptr; }

 private:
  template <class Result, class... Arguments>
  static Result call(void* routine, REALobject instance, Arguments... arguments) {
    return reinterpret_cast<Result (*)(REALobject, Arguments...)>(routine)(instance, arguments...);
  }

  const support::ContainerClass& class_;
  const Stock& stock_;
  void *construct_, *put_, *remove_, *contains_, *count_, *bin_count_, *clear_, *keys_;
  void *first_, *last_, *find_, *move_next_, *is_equal_, *key_, *value_;
};

}  // namespace faults

#endif
