// What the diagnostic build asks before an iterator is used, and what it writes down.
//
// Each `may_...` tells whether the use is right, and raises when it is not: no other build asks.
// The `note_...` do nothing in any other.
#ifndef ZRB_PLUGIN_CONTAINERS_ITERATOR_CHECKS_H
#define ZRB_PLUGIN_CONTAINERS_ITERATOR_CHECKS_H

#include "diagnosis/findings.h"
#include "diagnosis/switch.h"

template <class C>
struct IteratorChecks {
  using Storage = typename C::Storage;
  using Position = typename C::Position;

  /// The iterator was made or moved. One that became void meanwhile stays so.
  static void note_made([[maybe_unused]] const Position& position) {
    if constexpr (diagnosis::enabled) book().place(&position, place_of(position));
  }
  static void note_moved([[maybe_unused]] const Position& position) {
    if constexpr (diagnosis::enabled) {
      if (book().loss(&position) == diagnosis::Loss::none) note_made(position);
    }
  }

  static bool may_step(const Position& position) {
    const diagnosis::Call call = of_iterator("MoveNext");
    if (!is_sound(position, call)) return false;
    if (position.is_end()) return diagnosis::raise_step_past_the_end(call), false;
    return true;
  }
  static bool may_step_back(const Position& position) {
    const diagnosis::Call call = of_iterator("MovePrev");
    if (!is_sound(position, call)) return false;
    if (position == position.storage().begin()) {
      return diagnosis::raise_step_before_the_first(call), false;
    }
    return true;
  }

  /// `part`: "Key" or "Value".
  static bool may_use_element(const Position& position, const char* part) {
    const diagnosis::Call call = of_iterator(part);
    if (!is_sound(position, call)) return false;
    if (position.is_end()) return diagnosis::raise_nothing_to_read(call), false;
    return true;
  }

  /// Either may be null; such a comparison is defined.
  static bool may_compare(const Position* one, const Position* other, const char* operation) {
    if (one == nullptr || other == nullptr) return true;
    const diagnosis::Call call = of_iterator(operation);
    if (!is_sound(*one, call) || !is_sound(*other, call)) return false;
    if (&one->storage() != &other->storage()) {
      return diagnosis::raise_different_containers(call), false;
    }
    return true;
  }

  static bool may_remove(const Storage& storage, const Position& position) {
    if (!is_of(storage, position)) return false;
    if (position.is_end()) return diagnosis::raise_nothing_to_remove(remove()), false;
    return true;
  }
  static bool may_remove(const Storage& storage, const Position& first, const Position& last) {
    return is_of(storage, first) && is_of(storage, last);
  }

 private:
  static diagnosis::IteratorBook& book() { return diagnosis::IteratorBook::instance(); }

  static diagnosis::Place place_of(const Position& position) {
    return {&position.storage(), position.is_end() ? nullptr : &position.entry().key};
  }

  static diagnosis::Call of_iterator(const char* operation) {
    return {C::iterator_name.text, operation};
  }
  static diagnosis::Call remove() { return {C::name.text, "Remove"}; }

  // Nothing of a position may be looked at before this is true.
  static bool is_sound(const Position& position, diagnosis::Call call) {
    const diagnosis::Loss loss = book().loss(&position);
    if (loss != diagnosis::Loss::none) diagnosis::raise_stale(call, loss);
    return loss == diagnosis::Loss::none;
  }

  static bool is_of(const Storage& storage, const Position& position) {
    if (!is_sound(position, remove())) return false;
    if (&position.storage() == &storage) return true;
    return diagnosis::raise_other_container(remove()), false;
  }
};

#endif
