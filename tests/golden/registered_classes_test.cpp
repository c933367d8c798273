// A dump of everything registered, compared line by line with registered_classes.txt. Sizes are
// left out, since they differ from width to width.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/registration_recorder.h"

namespace {

std::string property_line(const REALproperty& property) {
  std::string line = std::string("  property ") + property.name + " as " + property.type;
  line += ", flags " + std::to_string(property.flags);
  if (property.getter == nullptr) line += ", no getter";
  line += property.setter == nullptr ? ", read-only" : ", writable";
  return line;
}

std::string method_line(const REALmethodDefinition& method, std::map<void*, std::size_t>& routines,
                        std::size_t number) {
  std::string line = "  " + std::to_string(number) + ". " + method.declaration;
  line += ", flags " + std::to_string(method.mFlags);
  if (method.setterFunction != nullptr) line += ", assignable";
  const auto [seen, fresh] = routines.emplace(method.function, number);
  if (!fresh) line += ", routine of " + std::to_string(seen->second);
  return line;
}

std::vector<std::string> dump() {
  std::vector<std::string> lines;
  for (const REALclassDefinition* record : support::LoadedPlugin::first_registration().records) {
    std::string head = std::string("class ") + record->name;
    head += ", version " + std::to_string(record->version);
    head += ", flags " + std::to_string(record->mFlags);
    if (record->superName != nullptr) head += std::string(", inherits ") + record->superName;
    if (record->constructor != nullptr) head += ", constructor";
    if (record->destructor != nullptr) head += ", destructor";
    lines.push_back(head);
    for (std::int32_t i = 0; i < record->propertyCount; ++i) {
      lines.push_back(property_line(record->properties[i]));
    }
    std::map<void*, std::size_t> routines;
    for (std::int32_t i = 0; i < record->methodCount; ++i) {
      lines.push_back(method_line(record->methods[i], routines, static_cast<std::size_t>(i) + 1));
    }
  }
  return lines;
}

std::vector<std::string> golden() {
  std::ifstream file(ZRB_GOLDEN_FOLDER "/registered_classes.txt");
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

TEST(RegisteredClasses, are_to_the_letter_those_of_the_golden_file) {
  const std::vector<std::string> expected = golden();
  const std::vector<std::string> actual = dump();
  ASSERT_FALSE(expected.empty()) << "the golden file cannot be read";
  for (std::size_t i = 0; i < std::min(expected.size(), actual.size()); ++i) {
    ASSERT_EQ(actual[i], expected[i]) << "line " << i + 1 << " of registered_classes.txt";
  }
  EXPECT_EQ(actual.size(), expected.size());
}

}  // namespace
