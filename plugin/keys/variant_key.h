// Variants as elements: order, equality and hash by type and value.
#ifndef ZRB_PLUGIN_KEYS_VARIANT_KEY_H
#define ZRB_PLUGIN_KEYS_VARIANT_KEY_H

#include <cstdint>

#include "host/binary_interface.h"
#include "host/locked_handle.h"
#include "keys/comparison_locks.h"
#include "keys/string_key.h"
#include "keys/text_view.h"

/// A stored variant: one host variant, locked while it is held; nil is allowed.
using RBVariant = LockedHandle<REALobjectStruct>;

/// What a variant holds, for one operation: its type and its text are asked of the host once. The
/// caller holds the variant.
class VariantView {
 public:
  explicit VariantView(REALobject variant) : variant_(variant) {}

  REALobject handle() const { return variant_; }
  VariantType type();
  /// Of a variant that holds a string.
  rbText& text();

 private:
  REALobject variant_;
  VariantType type_{};
  bool type_known_ = false;
  bool text_known_ = false;
  LockedString string_;
  rbText text_{nullptr};
};

/// A variant that is searched for, held for one operation.
class VariantProbe : public SoughtHandle<REALobjectStruct> {
 public:
  explicit VariantProbe(REALobject variant) : SoughtHandle(variant), view_(variant) {}

  VariantView& view() const { return view_; }

 private:
  mutable VariantView view_;  // asks the host when it is first asked
};

/// 0 when the variants are equal as keys, negative when `a` sorts first.
///
/// Numbers, booleans, colours and strings compare by value within one type. Unlike types and all
/// other types (dates, objects) compare by handle: by identity. A NaN sorts behind whatever it is
/// compared with, on either side.
std::int32_t Compare(VariantView& a, VariantView& b);

// Equality and order leave one lock on either operand at every call, see `leave_comparison_locks`:
// that lock also holds the stored variant while it is read.
struct EqualRBVariant {
  bool operator()(const RBVariant& stored, const VariantProbe& key) const;
};
struct LTRBVariant {
  bool operator()(const RBVariant& stored, const VariantProbe& key) const;
  bool operator()(const VariantProbe& key, const RBVariant& stored) const;

  /// What a comparison leaves, for an order that is known.
  template <class Operand>
  static void leave_locks(const RBVariant& stored, const Operand& key) {
    leave_comparison_locks(stored, key);
  }
};

/// 0 for nil, the string hash for a string, else the host's hash of the variant (0 in a host that
/// has none: such keys all share one bucket).
struct RBVariantHash {
  std::uint32_t operator()(const VariantProbe& key) const;

  /// Of a variant that stays in its container meanwhile.
  std::uint32_t operator()(const RBVariant& stored) const;
};

/// Variants for the host, each with one lock for the receiver; nil gives nil.
REALobject REALnewVariant(std::int32_t value);
REALobject REALnewVariant(REALstring value);
REALobject REALnewVariant(const RBVariant& value);
REALobject REALnewVariant(const RBString& value);

#endif
