// One service of the host: an entry point found by name at its first call and kept.
//
// A host may lack any entry point. The answer of the lookup is kept when it is an address; when it
// is null, the service is asked for again at the next call, and meanwhile the call does what a
// host without the service can do: the fallback given with the service, else nothing, with 0,
// false or null for a result.
#ifndef ZRB_PLUGIN_HOST_HOST_SERVICE_H
#define ZRB_PLUGIN_HOST_HOST_SERVICE_H

#include <type_traits>

#include "host/fixed_string.h"
#include "host/resolver.h"

/// `Name` is looked up with `Lookup`; `Fallback` is a function of the same signature, or nullptr.
template <FixedString Name, class Signature, auto Fallback = nullptr,
          void* (*Lookup)(const char*) = &find_entry_point>
class HostService;

template <FixedString Name, class Result, class... Arguments, auto Fallback,
          void* (*Lookup)(const char*)>
class HostService<Name, Result(Arguments...), Fallback, Lookup> {
  // A host's boolean is the low byte of what it returns, and any non-zero byte is true.
  using RawResult = std::conditional_t<std::is_same_v<Result, bool>, unsigned char, Result>;
  using EntryPoint = RawResult (*)(Arguments...);

 public:
  /// Whether the host has the service; looks it up if that is not known yet.
  bool is_available() { return entry_point_ != nullptr || look_up(); }

  /// Calls the service; a C++ exception of the host passes through.
  Result operator()(Arguments... arguments) {
    if (is_available()) [[likely]] {
      return static_cast<Result>(entry_point_(arguments...));
    }
    if constexpr (!std::is_null_pointer_v<decltype(Fallback)>) {
      return Fallback(arguments...);
    } else {
      return Result();
    }
  }

 private:
  [[gnu::cold]] bool look_up() {
    entry_point_ = reinterpret_cast<EntryPoint>(Lookup(Name.text));
    return entry_point_ != nullptr;
  }

  EntryPoint entry_point_ = nullptr;
};

#endif
