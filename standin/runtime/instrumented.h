// The instrumented twin of an entry point: the same call, counted, failing on demand, checked, and
// traced.
#ifndef ZRB_STANDIN_RUNTIME_INSTRUMENTED_H
#define ZRB_STANDIN_RUNTIME_INSTRUMENTED_H

#include <cstddef>
#include <string>
#include <type_traits>

#include "runtime/entry_points.h"
#include "runtime/host.h"
#include "runtime/services.h"

namespace standin {

// What a strict ledger demands of the handles that an entry point is given.
enum class Handles : std::uint8_t {
  any,       // null, or a live handle of the right kind
  required,  // not null
  locks,     // not null; an object or an array where the type says object
  releases,  // the same, and one lock less afterwards
};

// A text as a template argument.
template <std::size_t size>
struct EntryName {
  char text[size];
  constexpr EntryName(const char (&literal)[size]) {  // NOLINT: meant to be implicit
    for (std::size_t i = 0; i < size; ++i) text[i] = literal[i];
  }
};

// Counts the call, tells the trace and the ledger of it, and lets faults happen. Faults that throw
// leave the constructor, after it put everything back.
class InstrumentedCall {
 public:
  InstrumentedCall(Host& host, std::size_t entry_point, const char* name,
                   const std::string& arguments);
  ~InstrumentedCall();
  InstrumentedCall(const InstrumentedCall&) = delete;
  InstrumentedCall& operator=(const InstrumentedCall&) = delete;

  bool is_faulty() const { return is_faulty_; }
  bool is_traced() const { return traced_; }
  void ends(const std::string& result);

 private:
  Host& host_;
  bool traced_;
  bool is_faulty_ = false;
};

bool is_in_order(Ledger& ledger, Handles demand, REALstring handle);
bool is_in_order(Ledger& ledger, Handles demand, REALobject handle);
bool is_in_order(Ledger& ledger, Handles demand, REALarray handle);
template <class Other>
bool is_in_order(Ledger&, Handles, const Other&) {
  return true;
}

std::string traced_text(REALstring handle);
std::string traced_text(REALobject handle);
std::string traced_text(REALarray handle);
std::string traced_text(std::int32_t value);
std::string traced_text(std::uint32_t value);
std::string traced_text(std::int64_t value);
std::string traced_text(float value);
std::string traced_text(double value);
std::string traced_text(const char* text);
std::string traced_text(services::HostBoolean value);
std::string traced_text(const REALclassDefinition* definition);
std::string traced_text(const REALstringData* record);
// A place for a result, or an address.
std::string traced_text(const void* address);

template <class... Arguments>
std::string traced_arguments(const Arguments&... arguments) {
  std::string text;
  ((text += (text.empty() ? "" : ", ") + traced_text(arguments)), ...);
  return text;
}

template <std::size_t place, EntryName name, auto function, Handles demand>
struct Instrumented;

template <std::size_t place, EntryName name, class Result, class... Arguments,
          Result (*function)(Arguments...), Handles demand>
struct Instrumented<place, name, function, demand> {
  static Result call(Arguments... arguments) {
    Host* host = Host::current_or_null();
    if (host == nullptr) return function(arguments...);
    InstrumentedCall scope(
        *host, place, name.text,
        host->trace() == nullptr ? std::string() : traced_arguments(arguments...));
    bool in_order = true;
    if (host->ledger().strict()) {
      // Every argument is looked at, so that every violation is reported.
      ((in_order = is_in_order(host->ledger(), demand, arguments) && in_order), ...);
    }
    if constexpr (std::is_void_v<Result>) {
      if (!scope.is_faulty() && in_order) function(arguments...);
      if (scope.is_traced()) scope.ends("");
    } else {
      Result result{};
      if (!scope.is_faulty() && in_order) result = function(arguments...);
      if (scope.is_traced()) scope.ends(traced_text(result));
      return result;
    }
  }
};

}  // namespace standin

#endif
