// The three element types, each as one set of rules by which the containers handle it.
//
// An element type tells:
//   word         what declarations call it
//   Host         how it crosses the binary interface
//   Stored       how a container holds it: constructed from a Host value, which it locks, and empty
//                (nil or 0) by default
//   Probe        a key prepared for a search: derived from Stored, made from a Host value
//   Hash, Equal, Less   for keys
//   lend         the stored element as the host's, borrowed
//   hand_out     the same with one lock that passes to the host
//   create_array a host array of such elements
//   from_variant, to_variant   to and from a host variant; the latter gives one lock to the caller
#ifndef ZRB_PLUGIN_KEYS_ELEMENTS_H
#define ZRB_PLUGIN_KEYS_ELEMENTS_H

#include <cstdint>

#include "host/arrays.h"
#include "host/fixed_string.h"
#include "keys/entry.h"
#include "keys/integer_key.h"
#include "keys/string_key.h"
#include "keys/variant_access.h"
#include "keys/variant_key.h"

struct VariantElement {
  static constexpr FixedString word = "variant";
  using Host = REALobject;
  using Stored = RBVariant;
  using Probe = VariantProbe;
  using Hash = RBVariantHash;
  using Equal = EqualRBVariant;
  using Less = LTRBVariant;

  static Host lend(const Stored& element) { return element.get(); }
  static Host hand_out(Stored element) { return element.detach(); }
  static REALarray create_array(std::int32_t upper_bound) {
    return REALCreateArrayObject(upper_bound);
  }
  static Stored from_variant(REALobject variant) {
    const REALobject object = GetVariantObject(variant);
    return Stored(object);
  }
  static REALobject to_variant(const Stored& element) { return REALnewVariant(element); }
};

struct StringElement {
  static constexpr FixedString word = "string";
  using Host = REALstring;
  using Stored = RBString;
  using Probe = StringProbe;
  using Hash = RBStringHash;
  using Equal = EqualRBString;
  using Less = LTRBString;

  static Host lend(const Stored& element) { return element.get(); }
  static Host hand_out(Stored element) { return element.detach(); }
  static REALarray create_array(std::int32_t upper_bound) {
    return REALCreateArrayString(upper_bound);
  }
  static Stored from_variant(REALobject variant) {
    return Stored::adopt(GetVariantString(variant));
  }
  static REALobject to_variant(const Stored& element) { return REALnewVariant(element); }
};

struct IntegerElement {
  static constexpr FixedString word = "integer";
  using Host = std::int32_t;
  using Stored = std::int32_t;
  using Probe = std::int32_t;
  using Hash = IntegerHash;
  using Equal = IntegerEqual;
  using Less = IntegerLess;

  static Host lend(Stored element) { return element; }
  static Host hand_out(Stored element) { return element; }
  static REALarray create_array(std::int32_t upper_bound) {
    return REALCreateArrayInteger(upper_bound);
  }
  static Stored from_variant(REALobject variant) { return GetVariantInteger(variant); }
  static REALobject to_variant(Stored element) { return REALnewVariant(element); }
};

/// Stands for the value type of a set.
struct NoElement {
  static constexpr FixedString word = "";
  using Host = NoValue;
  using Stored = NoValue;
};

#endif
