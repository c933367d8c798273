// The parts of instrumented calls that do not depend on their types.
#include "runtime/instrumented.h"

#include <cstdio>

#include "runtime/variants.h"

namespace standin {
namespace {

bool check(Ledger& ledger, Handles demand, const void* handle, Ledger::Demand kind) {
  if (handle == nullptr && demand != Handles::any) {
    ledger.record(Violation::Kind::null_handle, "nil");
    return false;
  }
  return ledger.check(handle, kind, demand == Handles::releases);
}

std::string safely(const void* handle) {
  Host* host = Host::current_or_null();
  return host == nullptr ? "?" : host->ledger().describe_safely(handle);
}

}  // namespace

InstrumentedCall::InstrumentedCall(Host& host, std::size_t entry_point, const char* name,
                                   const std::string& arguments)
    : host_(host), traced_(host.trace() != nullptr) {
  host_.calls().count(entry_point);
  if (traced_) host_.trace()->host_call_begins(std::string(name) + "(" + arguments + ")");
  host_.ledger().enter(name);
  try {
    is_faulty_ = host_.faults().apply(entry_point, name);
  } catch (...) {
    host_.ledger().leave();
    if (traced_ && host_.trace() != nullptr) host_.trace()->host_call_ends("throws");
    throw;
  }
}

InstrumentedCall::~InstrumentedCall() {
  host_.ledger().leave();
  // Still open: the call was left by an exception.
  if (traced_ && host_.trace() != nullptr) host_.trace()->host_call_ends("throws");
}

void InstrumentedCall::ends(const std::string& result) {
  if (host_.trace() != nullptr) host_.trace()->host_call_ends(result);
  traced_ = false;
}

bool is_in_order(Ledger& ledger, Handles demand, REALstring handle) {
  return check(ledger, demand, handle, Ledger::Demand::string);
}
bool is_in_order(Ledger& ledger, Handles demand, REALobject handle) {
  const bool any_block = demand == Handles::locks || demand == Handles::releases;
  return check(ledger, demand, handle,
               any_block ? Ledger::Demand::object_or_array : Ledger::Demand::object);
}
bool is_in_order(Ledger& ledger, Handles demand, REALarray handle) {
  return check(ledger, demand, handle, Ledger::Demand::array);
}

std::string traced_text(REALstring handle) {
  return safely(handle);
}
std::string traced_text(REALobject handle) {
  return safely(handle);
}
std::string traced_text(REALarray handle) {
  return safely(handle);
}
std::string traced_text(std::int32_t value) {
  return std::to_string(value);
}
std::string traced_text(std::int64_t value) {
  return std::to_string(value);
}
std::string traced_text(float value) {
  return number_text(value);
}
std::string traced_text(double value) {
  return number_text(value);
}
std::string traced_text(const char* text) {
  return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
}
std::string traced_text(services::HostBoolean value) {
  return value == services::HostBoolean::yes ? "True" : "False";
}
std::string traced_text(const REALclassDefinition* definition) {
  return definition == nullptr || definition->name == nullptr ? "null" : definition->name;
}
std::string traced_text(const REALstringData* record) {
  if (record == nullptr) return "null";
  return "record of " + std::to_string(record->length) + " bytes";
}
std::string traced_text(const void* address) {
  return address == nullptr ? "null" : "address";
}
// Encodings and hashes.
std::string traced_text(std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(value));
  return text;
}

}  // namespace standin
