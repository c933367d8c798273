// Variants as elements: order, equality and hash by type and value.
#ifndef ZRB_PLUGIN_KEYS_VARIANT_KEY_H
#define ZRB_PLUGIN_KEYS_VARIANT_KEY_H

#include <cstdint>

#include "host/binary_interface.h"
#include "host/locked_handle.h"
#include "keys/string_key.h"

/// A stored variant: one host variant, locked while it is held; nil is allowed.
using RBVariant = LockedHandle<REALobjectStruct>;

/// 0 when the variants are equal as keys, negative when `a` sorts first.
///
/// Numbers, booleans, colours and strings compare by value within one type. Unlike types and all
/// other types (dates, objects) compare by handle: by identity. A NaN sorts behind whatever it is
/// compared with, on either side.
std::int32_t Compare(REALobject a, REALobject b);

// Equality and order leave one lock on either operand at every call, see `leave_comparison_locks`.
struct EqualRBVariant {
  bool operator()(const RBVariant& a, const RBVariant& b) const;
};
struct LTRBVariant {
  bool operator()(const RBVariant& a, const RBVariant& b) const;
};

/// 0 for nil, the string hash for a string, else the host's hash of the variant (0 in a host that
/// has none: such keys all share one bucket).
struct RBVariantHash {
  std::uint32_t operator()(const RBVariant& variant) const;
};

/// Variants for the host, each with one lock for the receiver; nil gives nil.
REALobject REALnewVariant(std::int32_t value);
REALobject REALnewVariant(REALstring value);
REALobject REALnewVariant(const RBVariant& value);
REALobject REALnewVariant(const RBString& value);

#endif
