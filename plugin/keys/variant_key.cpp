#include "keys/variant_key.h"

#include "host/services.h"
#include "keys/comparison_locks.h"
#include "keys/variant_access.h"

namespace {

// The order of handles without an order of values.
std::int32_t compare_handles(REALobject a, REALobject b) {
  const auto address_a = reinterpret_cast<std::uintptr_t>(a);
  const auto address_b = reinterpret_cast<std::uintptr_t>(b);
  if constexpr (sizeof(std::uintptr_t) == sizeof(std::int32_t)) {
    return static_cast<std::int32_t>(address_a - address_b);
  } else {
    // A difference cut to 32 bits could call two distinct handles equal.
    return address_a == address_b ? 0 : (address_a < address_b ? -1 : 1);
  }
}

// Reads what both hold, `a` first, and compares it.
template <class Accessor>
std::int32_t compare_values(Accessor& read, REALobject a, REALobject b) {
  const auto value_a = read(a);
  const auto value_b = read(b);
  if (value_a == value_b) return 0;
  return value_b > value_a ? -1 : 1;  // also 1 when either is a NaN
}

std::int32_t compare_strings(REALobject a, REALobject b) {
  const auto string_a = LockedString::adopt(GetVariantString(a));
  const auto string_b = LockedString::adopt(GetVariantString(b));
  return Compare(string_a.get(), string_b.get());
}

}  // namespace

std::int32_t Compare(REALobject a, REALobject b) {
  if (a == b) return 0;
  if (a == nullptr || b == nullptr) return compare_handles(a, b);
  const VariantType type = GetVariantType(a);
  if (type != GetVariantType(b)) return compare_handles(a, b);
  switch (type) {
    case VariantType::nil:
      return 0;
    case VariantType::integer:
    case VariantType::boolean:
    case VariantType::color:
      return compare_values(GetVariantInteger, a, b);
    case VariantType::int64:
    case VariantType::currency:
      return compare_values(GetVariantLong, a, b);
    case VariantType::single:
      return compare_values(GetVariantSingle, a, b);
    case VariantType::double_:
      return compare_values(GetVariantDouble, a, b);
    case VariantType::string:
      return compare_strings(a, b);
    case VariantType::date:
    case VariantType::object:
      break;
  }
  return compare_handles(a, b);
}

bool EqualRBVariant::operator()(const RBVariant& a, const RBVariant& b) const {
  leave_comparison_locks(a, b);
  return Compare(a.get(), b.get()) == 0;
}

bool LTRBVariant::operator()(const RBVariant& a, const RBVariant& b) const {
  leave_comparison_locks(a, b);
  return Compare(a.get(), b.get()) < 0;
}

std::uint32_t RBVariantHash::operator()(const RBVariant& variant) const {
  if (variant.get() == nullptr) return 0;
  if (GetVariantType(variant.get()) != VariantType::string) return GetVariantHash(variant.get());
  const auto string = LockedString::adopt(GetVariantString(variant.get()));
  return GetStringHash(string.get());
}

REALobject REALnewVariant(std::int32_t value) {
  return REALNewVariantInteger(value);
}

REALobject REALnewVariant(REALstring value) {
  return REALNewVariantString(value);
}

REALobject REALnewVariant(const RBVariant& value) {
  return RBVariant(value).detach();
}

REALobject REALnewVariant(const RBString& value) {
  // The text is held across the call, in which the host may run code of its own.
  LockedObject variant;
  {
    const RBString held(value);  // NOLINT(performance-unnecessary-copy-initialization)
    if (held.get() != nullptr) variant = LockedObject::adopt(REALNewVariantString(held.get()));
  }
  return variant.detach();
}
