// The binary interface between host and plugin: handles, records and codes, as both sides see them.
//
// The host is a 32-bit program: in its own build every field of a record is 32 bits wide, at four
// times its index. A 64-bit build keeps the same fields in the same order; handles, routine
// addresses, table addresses and texts become 64 bits wide, everything else stays 32 bits, with
// natural alignment and no packing. `binary_interface_layout.cpp` pins both layouts.
//
// This header is the only file that a host may share with the plugin.
#ifndef ZRB_PLUGIN_HOST_BINARY_INTERFACE_H
#define ZRB_PLUGIN_HOST_BINARY_INTERFACE_H

#include <cstdint>

// Opaque to the plugin, reference-counted ("locked" and "unlocked") by the host.
struct REALobjectStruct;  // an object or a variant
struct REALstringStruct;  // a string with its encoding
struct REALarrayStruct;   // a one-dimensional array
using REALobject = REALobjectStruct*;
using REALstring = REALstringStruct*;
using REALarray = REALarrayStruct*;
using REALdictionary = REALobjectStruct*;  // an instance of the host's class Dictionary

// The bytes of a string, in an encoding of the asker's choice. `data` belongs to the record until
// it is disposed of.
struct REALstringData {
  void* data;
  std::uint32_t length;  // bytes, not counting a terminator
  std::uint32_t encoding;
};

struct REALmethodDefinition {
  void* function = nullptr;
  void* setterFunction = nullptr;     // only for an assignable declaration
  const char* declaration = nullptr;  // e.g. "Key(index as integer) as string"
  std::int32_t mFlags = 0;
};

struct REALproperty {
  const char* group = nullptr;
  const char* name = nullptr;
  const char* type = nullptr;
  std::int32_t flags = 0;
  void* getter = nullptr;
  void* setter = nullptr;
  std::int32_t param = 0;
  const char* editor = nullptr;
  std::int32_t enumCount = 0;
  void* enumEntries = nullptr;
};

struct REALclassDefinition {
  std::int32_t version = 0;
  const char* name = nullptr;
  const char* superName = nullptr;
  std::int32_t dataSize = 0;
  std::int32_t forSystemUse = 0;  // written by the host: offset of the plugin's data in an instance
  void* constructor = nullptr;
  void* destructor = nullptr;
  REALproperty* properties = nullptr;
  std::int32_t propertyCount = 0;
  REALmethodDefinition* methods = nullptr;
  std::int32_t methodCount = 0;
  void* events = nullptr;
  std::int32_t eventCount = 0;
  void* eventInstances = nullptr;
  std::int32_t eventInstanceCount = 0;
  void* interfaces = nullptr;
  void* attributes = nullptr;
  std::int32_t attributeCount = 0;
  void* constants = nullptr;
  std::int32_t constantCount = 0;
  std::int32_t mFlags = 0;
  REALproperty* sharedProperties = nullptr;
  std::int32_t sharedPropertyCount = 0;
  REALmethodDefinition* sharedMethods = nullptr;
  std::int32_t sharedMethodCount = 0;
};

// The host's text-encoding codes.
namespace host_encoding {
inline constexpr std::uint32_t utf8 = 0x08000100;
inline constexpr std::uint32_t utf16 = 0x00000100;  // in the byte order of the host
inline constexpr std::uint32_t utf32 = 0x0C000100;
inline constexpr std::uint32_t ascii = 0x00000600;
inline constexpr std::uint32_t as_stored = 0xFFFF;  // raw bytes, no conversion
}  // namespace host_encoding

// What an array holds, as array creation takes it.
enum class ArrayElementType : std::int32_t { integer = 0, string = 3, object = 4 };

// What the type accessor of a variant answers; other codes exist.
enum class VariantType : std::int32_t {
  nil = 0,
  integer = 2,
  int64 = 3,
  single = 4,
  double_ = 5,
  currency = 6,
  date = 7,
  string = 8,
  object = 9,
  boolean = 11,
  color = 16,
};

// Looks up an entry point of the host by its name; null when the host has none of that name.
using HostResolver = void* (*)(const char* entry_point_name);

extern "C" {
// The exported entries of a plugin. The host calls `REALPluginMain` once, first of all; what it
// returns is what `PluginEntry`, which registers the classes, returned.
using PluginMainFunction = std::int32_t (*)(HostResolver resolver);
}

#endif
