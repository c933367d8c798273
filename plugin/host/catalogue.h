// The eighteen container classes, each with its iterator class: one row a class.
#ifndef ZRB_PLUGIN_HOST_CATALOGUE_H
#define ZRB_PLUGIN_HOST_CATALOGUE_H

#include "containers/container_class.h"

template <class... Classes>
struct ClassList {};

/// In the order of registration, which hosts list the classes in.
///
/// The iterator of the last one lacks the "Ordered" of all its kin: programs know it by this name.
// clang-format off
using ContainerClasses = ClassList<
    ContainerClass<"IntegerHashSetZRB",             "IntegerHashSetIteratorZRB",             IntegerElement, NoElement,      Hashed>,
    ContainerClass<"IntegerOrderedSetZRB",          "IntegerOrderedSetIteratorZRB",          IntegerElement, NoElement,      Ordered>,
    ContainerClass<"IntegerToIntegerHashMapZRB",    "IntegerToIntegerHashMapIteratorZRB",    IntegerElement, IntegerElement, Hashed>,
    ContainerClass<"IntegerToIntegerOrderedMapZRB", "IntegerToIntegerOrderedMapIteratorZRB", IntegerElement, IntegerElement, Ordered>,
    ContainerClass<"IntegerToStringHashMapZRB",     "IntegerToStringHashMapIteratorZRB",     IntegerElement, StringElement,  Hashed>,
    ContainerClass<"IntegerToStringOrderedMapZRB",  "IntegerToStringOrderedMapIteratorZRB",  IntegerElement, StringElement,  Ordered>,
    ContainerClass<"IntegerToVariantHashMapZRB",    "IntegerToVariantHashMapIteratorZRB",    IntegerElement, VariantElement, Hashed>,
    ContainerClass<"IntegerToVariantOrderedMapZRB", "IntegerToVariantOrderedMapIteratorZRB", IntegerElement, VariantElement, Ordered>,
    ContainerClass<"StringHashSetZRB",              "StringHashSetIteratorZRB",              StringElement,  NoElement,      Hashed>,
    ContainerClass<"StringOrderedSetZRB",           "StringOrderedSetIteratorZRB",           StringElement,  NoElement,      Ordered>,
    ContainerClass<"StringToStringHashMapZRB",      "StringToStringHashMapIteratorZRB",      StringElement,  StringElement,  Hashed>,
    ContainerClass<"StringToStringOrderedMapZRB",   "StringToStringOrderedMapIteratorZRB",   StringElement,  StringElement,  Ordered>,
    ContainerClass<"StringToVariantHashMapZRB",     "StringToVariantHashMapIteratorZRB",     StringElement,  VariantElement, Hashed>,
    ContainerClass<"StringToVariantOrderedMapZRB",  "StringToVariantOrderedMapIteratorZRB",  StringElement,  VariantElement, Ordered>,
    ContainerClass<"VariantHashSetZRB",             "VariantHashSetIteratorZRB",             VariantElement, NoElement,      Hashed>,
    ContainerClass<"VariantOrderedSetZRB",          "VariantOrderedSetIteratorZRB",          VariantElement, NoElement,      Ordered>,
    ContainerClass<"VariantToVariantHashMapZRB",    "VariantToVariantHashMapIteratorZRB",    VariantElement, VariantElement, Hashed>,
    ContainerClass<"VariantToVariantOrderedMapZRB", "VariantToVariantMapIteratorZRB",        VariantElement, VariantElement, Ordered>>;
// clang-format on

#endif
