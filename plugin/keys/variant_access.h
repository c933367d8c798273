// What a host variant holds, read through the host's accessors.
//
// Each accessor is an entry point of the host; where the host lacks it, the property of the variant
// named beside it is read instead, and a property that cannot be read gives 0 or nil.
#ifndef ZRB_PLUGIN_KEYS_VARIANT_ACCESS_H
#define ZRB_PLUGIN_KEYS_VARIANT_ACCESS_H

#include <cstdint>

#include "host/binary_interface.h"
#include "host/services.h"

namespace variant_properties {

template <auto& Reader, class Value, FixedString Property>
Value read(REALobject variant) {
  Value value{};
  return Reader(variant, Property.text, &value) ? value : Value{};
}

}  // namespace variant_properties

// clang-format off

inline constinit HostService<"VarType(value As Variant) As Int32", std::int32_t(REALobject),
    &variant_properties::read<REALGetPropValueInt32, std::int32_t, "Type">, &REALLoadFrameworkMethod> VarType;
inline constinit HostService<"VariantHash", std::uint32_t(REALobject)>                               GetVariantHash;
inline constinit HostService<"VariantToInt32", std::int32_t(REALobject),
    &variant_properties::read<REALGetPropValueInt32, std::int32_t, "Int32Value">>                    GetVariantInteger;
inline constinit HostService<"VariantToInt64", std::int64_t(REALobject),
    &variant_properties::read<REALGetPropValueInt64, std::int64_t, "LongValue">>                     GetVariantLong;
inline constinit HostService<"VariantToSingle", float(REALobject),
    &variant_properties::read<REALGetPropValueSingle, float, "SingleValue">>                         GetVariantSingle;
inline constinit HostService<"VariantToDouble", double(REALobject),
    &variant_properties::read<REALGetPropValueDouble, double, "DoubleValue">>                        GetVariantDouble;
inline constinit HostService<"VariantToObject", REALobject(REALobject),
    &variant_properties::read<REALGetPropValueObject, REALobject, "ObjectValue">>                    VariantToObject;
inline constinit HostService<"VariantToString", REALstring(REALobject),
    &variant_properties::read<REALGetPropValueString, REALstring, "StringValue">>                    VariantToString;  // owned

// clang-format on

inline VariantType GetVariantType(REALobject variant) {
  return static_cast<VariantType>(VarType(variant));
}

/// The object that a variant holds, as the host tells it: a variant that holds none answers with
/// itself. Nil for nil. Borrowed: whoever keeps it locks it.
inline REALobject GetVariantObject(REALobject variant) {
  return variant == nullptr ? nullptr : VariantToObject(variant);
}

/// The variant's text, owned by the caller; nil for nil.
inline REALstring GetVariantString(REALobject variant) {
  return variant == nullptr ? nullptr : VariantToString(variant);
}

#endif
