// Keeping the ledger.
#include "runtime/ledger.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "runtime/blocks.h"

namespace standin {
namespace {

const char* kind_text(Violation::Kind kind) {
  switch (kind) {
    case Violation::Kind::null_handle:
      return "was given null instead of a handle";
    case Violation::Kind::double_release:
      return "released more often than it was locked";
    case Violation::Kind::use_after_release:
      return "used after its last lock was released";
    case Violation::Kind::unknown_handle:
      return "is no handle of this host";
    case Violation::Kind::wrong_kind:
      return "is a handle of the wrong kind";
    case Violation::Kind::damaged_instance:
      return "was written outside its instance data";
    case Violation::Kind::kept_by_destructor:
      return "was still locked after its own destructor";
  }
  return "is out of order";
}

std::string address_text(const void* handle) {
  char text[32];
  std::snprintf(text, sizeof text, "address %p", handle);
  return text;
}

template <class Function>
auto visit(const void* handle, HandleKind kind, Function function) {
  void* block = const_cast<void*>(handle);
  if (kind == HandleKind::string) return function(static_cast<REALstring>(block));
  if (kind == HandleKind::array) return function(static_cast<REALarray>(block));
  return function(static_cast<REALobject>(block));
}

std::uint64_t serial_of(REALstring handle) {
  return handle->serial;
}
std::uint64_t serial_of(REALobject handle) {
  return handle->serial;
}
std::uint64_t serial_of(REALarray handle) {
  return handle->serial;
}

}  // namespace

std::string Violation::text() const {
  return entry_point + ": " + handle + " " + kind_text(kind);
}

Ledger::Ledger(bool active, bool strict) : active_(active), strict_(strict) {
  if (active_) active_one_ = this;
}

Ledger::~Ledger() {
  if (active_one_ == this) active_one_ = nullptr;
  forget_released();
}

void Ledger::forget_released() {
  for (const auto& [block, description] : dead_) blocks::deallocate(block);
  dead_.clear();
}

std::vector<HandleReport> Ledger::live() const {
  // Describing a handle may make a string, which would change `live_` under the loop.
  const std::vector<std::pair<const void*, HandleKind>> handles(live_.begin(), live_.end());
  std::vector<HandleReport> reports;
  reports.reserve(handles.size());
  for (const auto& [block, handle_kind] : handles) {
    const HandleKind kind = handle_kind;
    reports.push_back(visit(block, kind, [kind](auto handle) {
      const std::uint32_t locks = lock_count(handle);
      return HandleReport{handle, kind, serial_of(handle), locks, locks, describe(handle)};
    }));
  }
  std::sort(reports.begin(), reports.end(),
            [](const HandleReport& a, const HandleReport& b) { return a.serial < b.serial; });
  return reports;
}

Ledger::Snapshot Ledger::snapshot() const {
  Snapshot result;
  for (const auto& [block, kind] : live_) {
    visit(block, kind, [&](auto handle) { result[serial_of(handle)] = lock_count(handle); });
  }
  return result;
}

std::vector<HandleReport> Ledger::changes_since(const Snapshot& snapshot) const {
  std::vector<HandleReport> result;
  for (HandleReport& report : live()) {
    const auto before = snapshot.find(report.serial);
    if (before != snapshot.end()) report.change -= before->second;
    if (report.change != 0) result.push_back(std::move(report));
  }
  return result;
}

std::vector<HandleReport> Ledger::held_since(const Snapshot& snapshot) const {
  std::vector<HandleReport> result = changes_since(snapshot);
  std::erase_if(result, [](const HandleReport& report) { return report.change < 0; });
  return result;
}

void Ledger::record(Violation::Kind kind, std::string handle_description) {
  if (!strict_) return;
  violations_.push_back({kind, entry_points_.empty() ? "the host" : entry_points_.back(),
                         std::move(handle_description)});
  if (hook_) {
    // A copy: the hook may record further violations.
    const Violation violation = violations_.back();
    hook_(violation);
  }
}

void Ledger::created(void* handle, HandleKind kind) {
  live_.emplace(handle, kind);
}

bool Ledger::died(void* handle, std::string description) {
  live_.erase(handle);
  if (!strict_) return false;
  dead_.emplace(handle, std::move(description));
  return true;
}

bool Ledger::check(const void* handle, Demand demand, bool is_release) {
  if (handle == nullptr) return true;
  const auto found = live_.find(handle);
  if (found == live_.end()) {
    const bool is_dead = dead_.contains(const_cast<void*>(handle));
    const Violation::Kind released =
        is_release ? Violation::Kind::double_release : Violation::Kind::use_after_release;
    record(is_dead ? released : Violation::Kind::unknown_handle, describe_safely(handle));
    return false;
  }
  bool fits = false;
  switch (demand) {
    case Demand::string:
      fits = found->second == HandleKind::string;
      break;
    case Demand::array:
      fits = found->second == HandleKind::array;
      break;
    case Demand::object:
      fits = found->second == HandleKind::object || found->second == HandleKind::variant;
      break;
    case Demand::object_or_array:
      fits = found->second != HandleKind::string;
      break;
  }
  if (!fits) record(Violation::Kind::wrong_kind, describe_safely(handle));
  return fits;
}

std::string Ledger::describe_safely(const void* handle) const {
  if (handle == nullptr) return "nil";
  if (const auto live = live_.find(handle); live != live_.end()) {
    return visit(handle, live->second, [](auto typed) { return describe(typed); });
  }
  const auto dead = dead_.find(const_cast<void*>(handle));
  return dead != dead_.end() ? dead->second : address_text(handle);
}

std::string text(const std::vector<HandleReport>& reports) {
  std::string result;
  for (const HandleReport& report : reports) {
    result += report.description + ": " + std::to_string(report.locks) +
              (report.locks == 1 ? " lock" : " locks");
    if (report.change != static_cast<std::int64_t>(report.locks)) {
      result += (report.change > 0 ? ", +" : ", ") + std::to_string(report.change);
    }
    result += '\n';
  }
  return result;
}

}  // namespace standin
