// The members of every class, as programs see them: one table a kind.
//
// To add a method, write its routine and add one row here; every class of the kind has it then. The
// order and the letters of the declarations are part of the interface: programs are bound by them.
#ifndef ZRB_PLUGIN_HOST_CLASS_TABLES_H
#define ZRB_PLUGIN_HOST_CLASS_TABLES_H

#include <type_traits>

#include "containers/container_object.h"
#include "containers/iterators.h"
#include "containers/keyed_access.h"
#include "containers/positional_access.h"
#include "containers/sets.h"
#include "host/class_record.h"
#include "host/member_tables.h"
#include "maps/dictionary_conversion.h"
#include "maps/map_copy.h"
#include "maps/map_operations.h"

// clang-format off

// ---- sets ----

template <class C>
struct VariantSetMethods {
  using type = Rows<
      Method<"Constructor(Keys() as string)",                     &SetOperations<C>::theMapConstructor3>>;
};

template <class C>
struct SetMethods {
  using type = Rows<
      Method<"Constructor(Keys() as {K})",                        &SetOperations<C>::theMapConstructor2>,
      Method<"Constructor",                                       &ContainerObject<C>::theMapConstructor>,
      Method<"Clear",                                             &ContainerObject<C>::clear>,
      Method<"Key(index as integer) as {K}",                      &PositionalAccess<C>::KeyAtIndex>,
      Method<"Keys as {K}()",                                     &PositionalAccess<C>::rbGetKeys>,
      Method<"first as {Iterator}",                               &ContainerIterators<C>::getbegin>,
      Method<"last as {Iterator}",                                &ContainerIterators<C>::getend>,
      Method<"Remove(pos as {Iterator})",                         &ContainerIterators<C>::erase1>,
      Method<"Remove(first as {Iterator}, last as {Iterator})",   &ContainerIterators<C>::erase2>,
      Method<"Remove(key as {K}) as integer",                     &SetOperations<C>::erase3>,
      Method<"CountKey(key as {K}) as integer",                   &KeyedAccess<C>::count>,
      Method<"find(key as {K}) as {Iterator}",                    &ContainerIterators<C>::find>,
      Method<"lookup(key as {K}) as boolean",                     &KeyedAccess<C>::contains>,
      Method<"insert(key as {K})",                                &SetOperations<C>::insert>>;
};

// ---- maps ----

template <class C>
struct MapMethods {
  using type = Rows<
      Method<"Operator_Convert(dic as dictionary)",               &DictionaryConversion<C>::theMapConstructorDic>,
      Method<"Constructor(dic as dictionary)",                    &DictionaryConversion<C>::theMapConstructorDic>,
      Method<"Constructor(other as {Class})",                     &MapCopy<C>::theMapConstructorClone>,
      Method<"Constructor",                                       &ContainerObject<C>::theMapConstructor>,
      Method<"CloneDictionary as Dictionary",                     &DictionaryConversion<C>::cloneDictionary>,
      Method<"Operator_Convert as Dictionary",                    &DictionaryConversion<C>::cloneDictionary>,
      Method<"Clone as {Class}",                                  &MapCopy<C>::cloneMap>,
      Method<"Clear",                                             &ContainerObject<C>::clear>,
      Method<"ValueAtIndex(index as integer) as {V}",             &PositionalAccess<C>::ValueAtIndex>,
      Method<"Key(index as integer) as {K}",                      &PositionalAccess<C>::KeyAtIndex>,
      Method<"Keys as {K}()",                                     &PositionalAccess<C>::rbGetKeys>,
      Method<"Values as {V}()",                                   &PositionalAccess<C>::rbGetValues>,
      Method<"AddKeys(targetArray() as {K})",                     &PositionalAccess<C>::rbGetKeys2>,
      Method<"AddValues(targetArray() as {V})",                   &PositionalAccess<C>::rbGetValues2>,
      Method<"first as {Iterator}",                               &ContainerIterators<C>::getbegin>,
      Method<"last as {Iterator}",                                &ContainerIterators<C>::getend>,
      Method<"Remove(pos as {Iterator})",                         &ContainerIterators<C>::erase1>,
      Method<"Remove(first as {Iterator}, last as {Iterator})",   &ContainerIterators<C>::erase2>,
      Method<"Remove(key as {K}) as integer",                     &MapOperations<C>::erase3>,
      Method<"CountKey(key as {K}) as integer",                   &KeyedAccess<C>::count>,
      Method<"find(key as {K}) as {Iterator}",                    &ContainerIterators<C>::find>,
      Method<"value(key as {K}) as {V}",                          &MapOperations<C>::getValue, &MapOperations<C>::setValue>,
      Method<"hasKey(key as {K}) as boolean",                     &KeyedAccess<C>::contains>,
      Method<"lookup(key as {K}, defaultvalue as {V}) as {V}",    &MapOperations<C>::lookup>>;
};

// ---- what the ordered kinds of both add ----

template <class C>
struct OrderedMethods {
  using type = Rows<
      Method<"LowerBound(key as {K}) as {Iterator}",              &ContainerIterators<C>::lower_bound>,
      Method<"UpperBound(key as {K}) as {Iterator}",              &ContainerIterators<C>::upper_bound>>;
};

// ---- iterators ----

template <class C>
struct SetIteratorMethods {
  using type = Rows<
      Method<"MoveNext",                                          &IteratorObject<C>::MoveNext>,
      Method<"Key as {K}",                                        &IteratorObject<C>::GetKey>,
      Method<"isEqual(other as {Iterator}) as boolean",           &IteratorObject<C>::isEqual>,
      Method<"isNotEqual(other as {Iterator}) as boolean",        &IteratorObject<C>::isNotEqual>>;
};

template <class C>
struct MapIteratorMethods {
  using type = Rows<
      Method<"MoveNext",                                          &IteratorObject<C>::MoveNext>,
      Method<"Key as {K}",                                        &IteratorObject<C>::GetKey>,
      Method<"Value as {V}",                                      &IteratorObject<C>::GetValue, &IteratorObject<C>::SetValue>,
      Method<"isEqual(other as {Iterator}) as boolean",           &IteratorObject<C>::isEqual>,
      Method<"isNotEqual(other as {Iterator}) as boolean",        &IteratorObject<C>::isNotEqual>>;
};

template <class C>
struct OrderedIteratorMethods {
  using type = Rows<
      Method<"MovePrev",                                          &IteratorObject<C>::MovePrev>>;
};

// ---- properties of the containers ----

template <class C>
struct MapProperties {
  using type = Rows<
      Property<"MaxSize",  "Integer", &ContainerObject<C>::GetMaxSize>,
      Property<"Count",    "Integer", &ContainerObject<C>::GetSize>>;
};

template <class C>
struct HashedProperties {
  using type = Rows<
      Property<"BinCount", "Integer", &ContainerObject<C>::GetBucketCount>>;
};

template <class C>
struct LastProperties {
  using type = Rows<
      Property<"Empty",    "Boolean", &ContainerObject<C>::GetEmpty>>;
};

// ---- which lists make up which table ----

template <class C>
inline constexpr bool is_variant_set = !C::is_map && std::is_same_v<typename C::Key, VariantElement>;

template <class C>
using ContainerMethodTable = MethodTable<C, typename JoinRows<
    typename RowsIf<is_variant_set<C>, VariantSetMethods,      C>::type,
    typename RowsIf<!C::is_map,        SetMethods,             C>::type,
    typename RowsIf<C::is_map,         MapMethods,             C>::type,
    typename RowsIf<C::is_ordered,     OrderedMethods,         C>::type>::type>;

template <class C>
using IteratorMethodTable = MethodTable<C, typename JoinRows<
    typename RowsIf<!C::is_map,        SetIteratorMethods,     C>::type,
    typename RowsIf<C::is_map,         MapIteratorMethods,     C>::type,
    typename RowsIf<C::is_ordered,     OrderedIteratorMethods, C>::type>::type>;

template <class C>
using ContainerPropertyTable = PropertyTable<typename JoinRows<
    typename MapProperties<C>::type,
    typename RowsIf<!C::is_ordered,    HashedProperties,       C>::type,
    typename LastProperties<C>::type>::type>;

// clang-format on

// ---- the records ----

inline constexpr std::int32_t class_record_version = 9;
inline constexpr std::int32_t class_flags = 4;

// An iterator declares its position word; the record behind it fits into what rounding adds in the
// host's own build, and is declared along where words are wider.
template <class C>
inline constexpr std::int32_t declared_iterator_size = sizeof(void*) == 4 ? 4 : 24;

template <class C>
REALclassDefinition ClassRecord<C>::container = {
    .version = class_record_version,
    .name = C::name.text,
    .dataSize = sizeof(ContainerData<C>),
    .destructor = reinterpret_cast<void*>(&ContainerObject<C>::theMapDestructor),
    .properties = ContainerPropertyTable<C>::records,
    .propertyCount = ContainerPropertyTable<C>::count,
    .methods = ContainerMethodTable<C>::records,
    .methodCount = ContainerMethodTable<C>::count,
    .mFlags = class_flags,
};

template <class C>
REALclassDefinition ClassRecord<C>::iterator = {
    .version = class_record_version,
    .name = C::iterator_name.text,
    .dataSize = declared_iterator_size<C>,
    .methods = IteratorMethodTable<C>::records,
    .methodCount = IteratorMethodTable<C>::count,
    .mFlags = class_flags,
};

#endif
