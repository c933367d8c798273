// The table of entry points. A row is a name, the function behind it, and what a strict ledger
// demands of the handles that it is given; the instrumented twin is made from the same row.
#include "runtime/entry_points.h"

#include <array>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

#include "runtime/declarations.h"
#include "runtime/instrumented.h"
#include "runtime/services.h"

namespace standin {
namespace {

template <EntryPointGroup group, EntryName name, auto function, Handles demand>
struct Row {
  template <std::size_t place>
  static EntryPoint entry_point() {
    return {group, name.text, reinterpret_cast<AnyFunction>(function),
            reinterpret_cast<AnyFunction>(&Instrumented<place, name, function, demand>::call)};
  }
};

template <EntryName name, auto function, Handles demand = Handles::any>
using Service = Row<EntryPointGroup::service, name, function, demand>;
template <EntryName name, auto function>
using Framework = Row<EntryPointGroup::framework, name, function, Handles::any>;
template <EntryName name, auto function>
using DictionaryMethod = Row<EntryPointGroup::dictionary_method, name, function, Handles::any>;
template <EntryName name, auto function>
using ArrayProcedure = Row<EntryPointGroup::array_procedure, name, function, Handles::any>;

template <class... Rows>
struct Table {
  static constexpr std::size_t size = sizeof...(Rows);

  static std::array<EntryPoint, size> build() { return build(std::index_sequence_for<Rows...>()); }

 private:
  template <std::size_t... places>
  static std::array<EntryPoint, size> build(std::index_sequence<places...>) {
    return {Rows::template entry_point<places>()...};
  }
};

// clang-format off
using AllEntryPoints = Table<
    Service<"RegisterPluginVersion", services::register_plugin_version>,
    Service<"REALGetRBVersion",      services::get_version>,
    Service<"PluginRegisterClass",   services::register_class>,
    Service<"REALLoadGlobalMethod",  services::load_global_method>,
    Service<"REALLoadObjectMethod",  services::load_object_method>,

    Service<"REALBuildString",         services::build_string>,
    Service<"REALSetStringEncoding",   services::set_string_encoding>,
    Service<"REALGetStringEncoding",   services::get_string_encoding>,
    Service<"REALConvertString",       services::convert_string>,
    Service<"REALLockString",          services::lock_string,   Handles::locks>,
    Service<"REALUnlockString",        services::unlock_string, Handles::releases>,
    Service<"PluginGetStringData",     services::get_string_data>,
    Service<"PluginDisposeStringData", services::dispose_string_data>,
    Service<"StringGetCString",        services::string_get_cstring>,
    Framework<"LenB( s as string ) as integer", services::length_in_bytes>,

    Service<"REALLockObject",        services::lock_object,   Handles::locks>,
    Service<"REALUnlockObject",      services::unlock_object, Handles::releases>,
    Service<"PluginNewInstance",     services::new_instance>,
    Service<"RuntimeRaiseException", services::raise_exception>,

    Service<"REALGetPropValueInt",    services::get_property_int32>,
    Service<"REALGetPropValueInt64",  services::get_property_int64>,
    Service<"REALGetPropValueSingle", services::get_property_single>,
    Service<"REALGetPropValueDouble", services::get_property_double>,
    Service<"REALGetPropValueString", services::get_property_string>,
    Service<"REALGetPropValueObject", services::get_property_object>,
    Service<"REALSetPropValueString", services::set_property_string>,

    Service<"StringToVariant", services::string_to_variant>,
    Service<"Int32ToVariant",  services::int32_to_variant>,
    Framework<"VarType(value As Variant) As Int32", services::variant_type_code>,
    Service<"VariantToObject", services::variant_to_object, Handles::required>,
    Service<"VariantToString", services::variant_to_string, Handles::required>,
    Service<"VariantHash",     services::hash_of_variant>,
    Service<"VariantToInt32",  services::variant_to_int32>,
    Service<"VariantToInt64",  services::variant_to_int64>,
    Service<"VariantToSingle", services::variant_to_single>,
    Service<"VariantToDouble", services::variant_to_double>,

    Service<"RuntimeArrayCreateSingleDimBoundedArray", services::create_array>,
    Service<"RuntimeUBound",                   services::array_upper_bound>,
    Service<"RuntimeArrayDirectGetGetProc",    services::array_get_procedure>,
    Service<"RuntimeArrayDirectGetSetProc",    services::array_set_procedure>,
    Service<"RuntimeArrayDirectGetInsertProc", services::array_insert_procedure>,
    ArrayProcedure<"array get integer",    services::array_get_integer>,
    ArrayProcedure<"array get string",     services::array_get_string>,
    ArrayProcedure<"array get object",     services::array_get_object>,
    ArrayProcedure<"array set integer",    services::array_set_integer>,
    ArrayProcedure<"array set string",     services::array_set_string>,
    ArrayProcedure<"array set object",     services::array_set_object>,
    ArrayProcedure<"array insert integer", services::array_insert_integer>,
    ArrayProcedure<"array insert string",  services::array_insert_string>,
    ArrayProcedure<"array insert object",  services::array_insert_object>,

    DictionaryMethod<"Value(key As Variant, Assigns _value As Variant)", services::dictionary_set_value>,
    DictionaryMethod<"Value(key As Variant) As Variant",                 services::dictionary_get_value>,
    DictionaryMethod<"Key(index As Integer) As Variant",                 services::dictionary_get_key>>;
// clang-format on

}  // namespace

std::span<const EntryPoint> entry_points() {
  static const auto table = AllEntryPoints::build();
  return table;
}

std::optional<std::size_t> entry_point_index(std::string_view name) {
  static const std::map<std::string, std::size_t> places = [] {
    std::map<std::string, std::size_t> result;
    for (std::size_t i = 0; i < entry_points().size(); ++i) {
      result[normalized(entry_points()[i].name)] = i;
    }
    return result;
  }();
  const auto found = places.find(normalized(name));
  return found == places.end() ? std::nullopt : std::optional(found->second);
}

std::size_t require_entry_point(std::string_view name) {
  const std::optional<std::size_t> index = entry_point_index(name);
  if (!index) {
    throw std::invalid_argument("the host has no entry point called \"" + std::string(name) + "\"");
  }
  return *index;
}

}  // namespace standin
