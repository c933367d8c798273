// A map of the C++ world as a subject: each operation a function of its own, reached by pointer.
#ifndef ZRB_SUBJECTS_MAP_SUBJECT_H
#define ZRB_SUBJECTS_MAP_SUBJECT_H

#include "subjects/subject.h"

/// Integers stand in a map as they are.
struct IntegerElement {
  using Stored = std::int32_t;
  static std::int32_t hand_out(std::int32_t value) { return value; }
};

/// `Element` says how a host value of type K is stored in `Map` and handed out again.
template <class Map, class K, class Element>
class MapSubject {
  using Stored = typename Element::Stored;

  // An iterator object, as a host program would hold one.
  struct Position {
    typename Map::iterator at;
  };

  static Map& map(REALobject handle) { return *reinterpret_cast<Map*>(handle); }
  static Position& position(REALobject handle) { return *reinterpret_cast<Position*>(handle); }
  template <class Object>
  static REALobject handle(Object* object) {
    return reinterpret_cast<REALobject>(object);
  }

  static void destroy(REALobject self) { delete &map(self); }
  // Of the ways to do it, the one with the fewest comparisons.
  static void assign(REALobject self, K key, K value) {
    const auto [at, inserted] =
        map(self).insert(typename Map::value_type(Stored(key), Stored(value)));
    if (!inserted) at->second = Stored(value);
  }
  static K lookup(REALobject self, K key, K default_value) {
    const auto found = map(self).find(Stored(key));
    if (found == map(self).end()) return Element::hand_out(Stored(default_value));
    return Element::hand_out(found->second);
  }
  static std::int32_t remove(REALobject self, K key) {
    return static_cast<std::int32_t>(map(self).erase(Stored(key)));
  }
  static REALobject first(REALobject self) { return handle(new Position{map(self).begin()}); }
  static REALobject last(REALobject self) { return handle(new Position{map(self).end()}); }
  static void move_next(REALobject iterator) { ++position(iterator).at; }
  static K iterator_key(REALobject iterator) {
    return Element::hand_out(position(iterator).at->first);
  }
  static unsigned char is_not_equal(REALobject iterator, REALobject other) {
    return position(iterator).at != position(other).at;
  }
  static void release_iterator(REALobject iterator) { delete &position(iterator); }

 public:
  static Subject<K> make() {
    Subject<K> subject;
    subject.create = [] { return handle(new Map); };
    subject.copy = [](REALobject other) { return handle(new Map(map(other))); };
    subject.count = [](REALobject self) { return static_cast<std::int32_t>(map(self).size()); };
    subject.destroy = &destroy;
    subject.assign = &assign;
    subject.lookup = &lookup;
    subject.remove = &remove;
    subject.first = &first;
    subject.last = &last;
    subject.move_next = &move_next;
    subject.iterator_key = &iterator_key;
    subject.is_not_equal = &is_not_equal;
    subject.release_iterator = &release_iterator;
    return subject;
  }
};

#endif
