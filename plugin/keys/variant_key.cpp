#include "keys/variant_key.h"

#include "host/services.h"
#include "keys/variant_access.h"

namespace {

// The order of two different handles without an order of values.
std::int32_t compare_handles(REALobject a, REALobject b) {
  const auto address_a = reinterpret_cast<std::uintptr_t>(a);
  const auto address_b = reinterpret_cast<std::uintptr_t>(b);
  if constexpr (sizeof(std::uintptr_t) == sizeof(std::int32_t)) {
    return static_cast<std::int32_t>(address_a - address_b);
  } else {
    // A difference cut to 32 bits could call two distinct handles equal.
    return address_a < address_b ? -1 : 1;
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

std::uint32_t hash(VariantView& variant) {
  if (variant.handle() == nullptr) return 0;
  if (variant.type() != VariantType::string) return GetVariantHash(variant.handle());
  return GetStringHash(variant.text());
}

}  // namespace

VariantType VariantView::type() {
  if (!type_known_) {
    type_ = GetVariantType(variant_);
    type_known_ = true;
  }
  return type_;
}

rbText& VariantView::text() {
  if (!text_known_) {
    string_ = LockedString::adopt(GetVariantString(variant_));
    text_.view(string_.get());
    text_known_ = true;
  }
  return text_;
}

std::int32_t Compare(VariantView& a, VariantView& b) {
  const REALobject handle_a = a.handle();
  const REALobject handle_b = b.handle();
  if (handle_a == handle_b) return 0;
  if (handle_a == nullptr || handle_b == nullptr) return compare_handles(handle_a, handle_b);
  const VariantType type = a.type();
  if (type != b.type()) return compare_handles(handle_a, handle_b);
  switch (type) {
    case VariantType::nil:
      return 0;
    case VariantType::integer:
    case VariantType::boolean:
    case VariantType::color:
      return compare_values(GetVariantInteger, handle_a, handle_b);
    case VariantType::int64:
    case VariantType::currency:
      return compare_values(GetVariantLong, handle_a, handle_b);
    case VariantType::single:
      return compare_values(GetVariantSingle, handle_a, handle_b);
    case VariantType::double_:
      return compare_values(GetVariantDouble, handle_a, handle_b);
    case VariantType::string: {
      rbText& text_a = a.text();
      return Compare(text_a, b.text());
    }
    case VariantType::date:
    case VariantType::object:
      break;
  }
  return compare_handles(handle_a, handle_b);
}

bool EqualRBVariant::operator()(const RBVariant& stored, const VariantProbe& key) const {
  VariantView view(stored.get());
  leave_comparison_locks(stored, key);
  return Compare(view, key.view()) == 0;
}

bool LTRBVariant::operator()(const RBVariant& stored, const VariantProbe& key) const {
  VariantView view(stored.get());
  leave_comparison_locks(stored, key);
  return Compare(view, key.view()) < 0;
}

bool LTRBVariant::operator()(const VariantProbe& key, const RBVariant& stored) const {
  VariantView view(stored.get());
  leave_comparison_locks(key, stored);
  return Compare(key.view(), view) < 0;
}

std::uint32_t RBVariantHash::operator()(const VariantProbe& key) const {
  return hash(key.view());
}

std::uint32_t RBVariantHash::operator()(const RBVariant& stored) const {
  VariantView view(stored.get());
  return hash(view);
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
