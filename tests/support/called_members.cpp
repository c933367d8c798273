// Rows of the registered tables, each with a routine or two.
#include "support/called_members.h"

namespace support {
namespace {

constexpr const char* destructor = "destructor";

std::string member_of(std::string_view class_name, std::string_view member) {
  return std::string(class_name) + "." + std::string(member);
}

}  // namespace

void CalledMembers::note(const REALclassDefinition& record, const char* member, const char* how) {
  if (collector_ == nullptr) return;
  collector_->called_.insert(member_of(record.name, member) + how);
}

void CalledMembers::plugin_call_begins(std::string_view call) {
  // `IntegerHashSetZRB #4.destructor`
  if (call.ends_with(std::string(".") + destructor)) {
    called_.insert(member_of(call.substr(0, call.find(' ')), destructor));
  }
}

std::set<std::string> CalledMembers::members(const REALclassDefinition& record) {
  std::set<std::string> result;
  const auto add = [&](const void* routine, const std::string& member) {
    if (routine != nullptr) result.insert(member_of(record.name, member));
  };
  for (std::int32_t i = 0; i < record.methodCount; ++i) {
    const REALmethodDefinition& row = record.methods[i];
    add(row.function, row.declaration);
    add(row.setterFunction, std::string(row.declaration) + assigned);
  }
  for (std::int32_t i = 0; i < record.propertyCount; ++i) {
    const REALproperty& row = record.properties[i];
    add(row.getter, row.name);
    add(row.setter, std::string(row.name) + assigned);
  }
  add(record.constructor, "constructor");
  add(record.destructor, destructor);
  return result;
}

}  // namespace support
