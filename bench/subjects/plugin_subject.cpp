#include "fasthost/blocks.h"
#include "fasthost/plugin.h"
#include "subjects/subject.h"

namespace {

template <class K>
struct Word;  // of the host language
template <>
struct Word<std::int32_t> {
  static constexpr const char* declared = "integer";
  static constexpr const char* in_class_name = "Integer";
};
template <>
struct Word<REALstring> {
  static constexpr const char* declared = "string";
  static constexpr const char* in_class_name = "String";
};

template <class Routine>
void take(Routine*& slot, const REALclassDefinition& definition, const std::string& declaration,
          bool setter = false) {
  slot = reinterpret_cast<Routine*>(fasthost::require_routine(definition, declaration, setter));
}

}  // namespace

template <class K>
Subject<K> plugin_subject(Structure structure) {
  const std::string k = Word<K>::declared;
  const std::string word = Word<K>::in_class_name;
  const std::string stem =
      word + "To" + word + (structure == Structure::hashed ? "Hash" : "Ordered") + "Map";
  const std::string class_name = stem + "ZRB";
  const std::string iterator_name = stem + "IteratorZRB";
  const REALclassDefinition& container = fasthost::require_class(class_name);
  const REALclassDefinition& iterator = fasthost::require_class(iterator_name);

  Subject<K> subject;
  void (*construct)(REALobject) = nullptr;
  take(construct, container, "Constructor");
  subject.create = [&container, construct] {
    REALobject map = fasthost::make_instance(container);
    construct(map);
    return map;
  };
  void (*construct_copy)(REALobject, REALobject) = nullptr;
  take(construct_copy, container, "Constructor(other as " + class_name + ")");
  subject.copy = [&container, construct_copy](REALobject other) {
    REALobject map = fasthost::make_instance(container);
    construct_copy(map, other);
    return map;
  };
  const auto get_count = reinterpret_cast<std::int32_t (*)(REALobject, std::int32_t)>(
      fasthost::require_getter(container, "Count"));
  subject.count = [get_count](REALobject map) { return get_count(map, 0); };
  subject.destroy = [](REALobject map) { fasthost::unlock(map); };

  take(subject.assign, container, "value(key as " + k + ") as " + k, true);
  take(subject.lookup, container, "lookup(key as " + k + ", defaultvalue as " + k + ") as " + k);
  take(subject.remove, container, "Remove(key as " + k + ") as integer");
  take(subject.first, container, "first as " + iterator_name);
  take(subject.last, container, "last as " + iterator_name);
  take(subject.find, container, "find(key as " + k + ") as " + iterator_name);
  take(subject.keys, container, "Keys as " + k + "()");
  take(subject.key_at, container, "Key(index as integer) as " + k);
  take(subject.move_next, iterator, "MoveNext");
  take(subject.iterator_key, iterator, "Key as " + k);
  take(subject.is_not_equal, iterator, "isNotEqual(other as " + iterator_name + ") as boolean");
  subject.release_iterator = [](REALobject position) { fasthost::unlock(position); };
  return subject;
}

template Subject<std::int32_t> plugin_subject(Structure structure);
template Subject<REALstring> plugin_subject(Structure structure);
