// What is measured: a map behind function pointers.
//
// The plugin's registered routines are such pointers already: the instance handle first, then the
// arguments. A peer gets functions of the same signatures, so that both pay the same for a call and
// the loops that measure them are the same code.
#ifndef ZRB_SUBJECTS_SUBJECT_H
#define ZRB_SUBJECTS_SUBJECT_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/binary_interface.h"

enum class Structure { hashed, ordered };

/// A map from K to K, where K is std::int32_t or REALstring. Handles of a peer's objects are never
/// seen by the host. Strings that a subject returns carry one lock for the caller.
template <class K>
struct Subject {
  // Life of a map. Called once in a timed region at most.
  std::function<REALobject()> create;
  std::function<REALobject(REALobject other)> copy;
  std::function<std::int32_t(REALobject)> count;
  void (*destroy)(REALobject) = nullptr;

  void (*assign)(REALobject, K key, K value) = nullptr;
  K (*lookup)(REALobject, K key, K default_value) = nullptr;
  std::int32_t (*remove)(REALobject, K key) = nullptr;

  // Iterator objects.
  REALobject (*first)(REALobject) = nullptr;
  REALobject (*last)(REALobject) = nullptr;
  void (*move_next)(REALobject iterator) = nullptr;
  K (*iterator_key)(REALobject iterator) = nullptr;
  unsigned char (*is_not_equal)(REALobject iterator, REALobject other) = nullptr;
  void (*release_iterator)(REALobject iterator) = nullptr;

  // What only the plugin has; null for peers.
  REALobject (*find)(REALobject, K key) = nullptr;
  REALarray (*keys)(REALobject) = nullptr;
  K (*key_at)(REALobject, std::int32_t index) = nullptr;
};

/// A subject by name. It is made when it is first measured, so that a process loads the plugin only
/// if it measures it.
template <class K>
struct SubjectEntry {
  std::string_view name;
  Structure structure;
  std::function<Subject<K>()> make;
};

/// The plugin's map from K to K, from the plugin that is loaded.
template <class K>
Subject<K> plugin_subject(Structure structure);

const std::vector<SubjectEntry<std::int32_t>>& integer_peers();
const std::vector<SubjectEntry<REALstring>>& string_peers();

#endif
