// Every service of the host that goes by a name of its own: looked-up name, types, fallback.
//
// Called like functions. "Owned" in a remark means that the result carries one lock which the
// caller must give back; every other handle is borrowed. A service without a fallback does nothing
// in a host that lacks it and answers 0, false or null. Any of them may throw what the host throws.
//
// Handles given to a lock or unlock service are never null: callers test first. Arrays are locked
// and unlocked as objects.
#ifndef ZRB_PLUGIN_HOST_SERVICES_H
#define ZRB_PLUGIN_HOST_SERVICES_H

#include <cstdint>

#include "host/binary_interface.h"
#include "host/fallbacks.h"
#include "host/host_service.h"

// clang-format off

// Start and lookup
inline constinit HostService<"RegisterPluginVersion",  void(std::int32_t)>                     RegisterPluginVersion;
inline constinit HostService<"REALGetRBVersion",       double()>                               REALGetRBVersion;
inline constinit HostService<"REALLoadGlobalMethod",   void*(std::int32_t, const char*)>       REALLoadGlobalMethod;
inline constinit HostService<"REALLoadObjectMethod",   void*(REALobject, const char*)>         REALLoadObjectMethod;
inline constinit HostService<"PluginRegisterClass",    void(REALclassDefinition*)>             REALRegisterClass;

// Strings
inline constinit HostService<"REALBuildString",        REALstring(const char*, std::int32_t)>  RawBuildString;  // owned
inline constinit HostService<"REALSetStringEncoding",  void(REALstring, std::uint32_t)>        REALSetStringEncoding;
inline constinit HostService<"REALGetStringEncoding",  std::uint32_t(REALstring)>              REALGetStringEncoding;
inline constinit HostService<"REALConvertString",      REALstring(REALstring, std::uint32_t)>  REALConvertString;  // owned
inline constinit HostService<"REALLockString",         void(REALstring)>                       REALLockString;
inline constinit HostService<"REALUnlockString",       void(REALstring)>                       REALUnlockString;
inline constinit HostService<"StringGetCString",       const char*(REALstring)>                StringGetCString;
inline constinit HostService<"PluginGetStringData",    bool(REALstring, std::uint32_t, REALstringData*),
                             &fallbacks::get_string_data>                                      REALGetStringData;
inline constinit HostService<"PluginDisposeStringData", void(REALstringData*),
                             &fallbacks::dispose_string_data>                                  REALDisposeStringData;

// Objects and exceptions
inline constinit HostService<"REALLockObject",         void(REALobject)>                       REALLockObject;
inline constinit HostService<"REALUnlockObject",       void(REALobject)>                       REALUnlockObject;
inline constinit HostService<"PluginNewInstance",      REALobject(const char*)>                REALnewInstance;  // owned
inline constinit HostService<"RuntimeRaiseException",  void(REALobject)>                       REALRaiseException;

// Properties by name
inline constinit HostService<"REALGetPropValueInt",    bool(REALobject, const char*, std::int32_t*)> REALGetPropValueInt32;
inline constinit HostService<"REALGetPropValueInt64",  bool(REALobject, const char*, std::int64_t*)> REALGetPropValueInt64;
inline constinit HostService<"REALGetPropValueSingle", bool(REALobject, const char*, float*)>        REALGetPropValueSingle;
inline constinit HostService<"REALGetPropValueDouble", bool(REALobject, const char*, double*)>       REALGetPropValueDouble;
inline constinit HostService<"REALGetPropValueString", bool(REALobject, const char*, REALstring*)>   REALGetPropValueString;  // owned
inline constinit HostService<"REALGetPropValueObject", bool(REALobject, const char*, REALobject*)>   REALGetPropValueObject;
inline constinit HostService<"REALSetPropValueString", bool(REALobject, const char*, REALstring)>    REALSetPropValueString;

// Variants from values
inline constinit HostService<"StringToVariant",        REALobject(REALstring)>                 REALNewVariantString;   // owned
inline constinit HostService<"Int32ToVariant",         REALobject(std::int32_t)>               REALNewVariantInteger;  // owned

// Arrays; their elements are reached through procedures that the host gives for each array
inline constinit HostService<"RuntimeArrayCreateSingleDimBoundedArray",
                             REALarray(ArrayElementType, std::int32_t)>                        REALCreateArray;  // owned
inline constinit HostService<"RuntimeUBound",          std::int32_t(REALarray)>                REALGetArrayUBound;

// clang-format on

/// A global function of the host's framework, by its declaration text; null if there is none.
inline void* REALLoadFrameworkMethod(const char* declaration) {
  return REALLoadGlobalMethod(0, declaration);
}

/// Framework functions, found by declaration.
inline constinit HostService<"LenB( s as string ) as integer", std::int32_t(REALstring), nullptr,
                             &REALLoadFrameworkMethod>
    LenB;

#endif
