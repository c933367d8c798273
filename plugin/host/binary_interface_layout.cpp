// Pins the layout of every record that crosses to the host, for the width of this build.
#include <cstddef>

#include "host/binary_interface.h"

namespace {

constexpr std::size_t word = sizeof(void*);
constexpr bool is_32_bit = word == 4;

// Offset of the field with this index: 4 bytes a field in the host's own build; with 64-bit
// pointers an integer followed by a pointer is padded, two integers in a row are not.
constexpr std::size_t at(std::size_t index, std::size_t offset_in_64_bits) {
  return is_32_bit ? 4 * index : offset_in_64_bits;
}

#define PIN(record, field, index, offset_in_64_bits) \
  static_assert(offsetof(record, field) == at(index, offset_in_64_bits))

PIN(REALstringData, data, 0, 0);
PIN(REALstringData, length, 1, 8);
PIN(REALstringData, encoding, 2, 12);
static_assert(sizeof(REALstringData) == at(3, 16));

PIN(REALmethodDefinition, function, 0, 0);
PIN(REALmethodDefinition, setterFunction, 1, 8);
PIN(REALmethodDefinition, declaration, 2, 16);
PIN(REALmethodDefinition, mFlags, 3, 24);
static_assert(sizeof(REALmethodDefinition) == at(4, 32));

PIN(REALproperty, group, 0, 0);
PIN(REALproperty, name, 1, 8);
PIN(REALproperty, type, 2, 16);
PIN(REALproperty, flags, 3, 24);
PIN(REALproperty, getter, 4, 32);
PIN(REALproperty, setter, 5, 40);
PIN(REALproperty, param, 6, 48);
PIN(REALproperty, editor, 7, 56);
PIN(REALproperty, enumCount, 8, 64);
PIN(REALproperty, enumEntries, 9, 72);
static_assert(sizeof(REALproperty) == at(10, 80));

PIN(REALclassDefinition, version, 0, 0);
PIN(REALclassDefinition, name, 1, 8);
PIN(REALclassDefinition, superName, 2, 16);
PIN(REALclassDefinition, dataSize, 3, 24);
PIN(REALclassDefinition, forSystemUse, 4, 28);
PIN(REALclassDefinition, constructor, 5, 32);
PIN(REALclassDefinition, destructor, 6, 40);
PIN(REALclassDefinition, properties, 7, 48);
PIN(REALclassDefinition, propertyCount, 8, 56);
PIN(REALclassDefinition, methods, 9, 64);
PIN(REALclassDefinition, methodCount, 10, 72);
PIN(REALclassDefinition, events, 11, 80);
PIN(REALclassDefinition, eventCount, 12, 88);
PIN(REALclassDefinition, eventInstances, 13, 96);
PIN(REALclassDefinition, eventInstanceCount, 14, 104);
PIN(REALclassDefinition, interfaces, 15, 112);
PIN(REALclassDefinition, attributes, 16, 120);
PIN(REALclassDefinition, attributeCount, 17, 128);
PIN(REALclassDefinition, constants, 18, 136);
PIN(REALclassDefinition, constantCount, 19, 144);
PIN(REALclassDefinition, mFlags, 20, 148);
PIN(REALclassDefinition, sharedProperties, 21, 152);
PIN(REALclassDefinition, sharedPropertyCount, 22, 160);
PIN(REALclassDefinition, sharedMethods, 23, 168);
PIN(REALclassDefinition, sharedMethodCount, 24, 176);
static_assert(sizeof(REALclassDefinition) == at(25, 184));

#undef PIN

}  // namespace
