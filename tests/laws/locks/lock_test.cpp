// Statements are checked at the end of each test, against the calls that the test made.
#include "laws/locks/lock_test.h"

#include <stdexcept>

#include "support/bucket_witness.h"

namespace locks {
namespace {

std::vector<Statement>& mutable_statements() {
  static std::vector<Statement> all;
  return all;
}

void add_members(std::set<std::string>& members, const char* class_name) {
  const REALclassDefinition& record =
      *standin::Host::current().find_class(class_name)->definition();
  for (std::int32_t i = 0; i < record.methodCount; ++i) {
    const REALmethodDefinition& method = record.methods[i];
    members.insert(method.declaration);
    if (method.setterFunction != nullptr) members.insert(method.declaration + std::string(" ="));
  }
  for (std::int32_t i = 0; i < record.propertyCount; ++i) {
    members.insert(record.properties[i].name);
  }
  if (record.destructor != nullptr) members.insert(member::destructor);
}

/// The index-th two-letter text that belongs into bucket 42 of 193.
std::string text_of_bucket(int index) {
  for (char a = '!'; a < '~'; ++a) {
    for (char b = '!'; b < '~'; ++b) {
      const std::string candidate = {a, b};
      if (support::elf_hash(candidate) % 193 == 42 && index-- == 0) return candidate;
    }
  }
  throw std::logic_error("not that many texts in the bucket");
}

}  // namespace

const std::vector<Statement>& statements() {
  return mutable_statements();
}

StatementOfTest::StatementOfTest(const char* suite, const char* test,
                                 std::initializer_list<const char*> members) {
  mutable_statements().push_back({suite, test, {members.begin(), members.end()}});
}

std::set<std::string> members_of(const support::ContainerClass& container_class) {
  std::set<std::string> members;
  add_members(members, container_class.name);
  add_members(members, container_class.iterator_name);
  return members;
}

void LockTest::SetUp() {
  ClassTest::SetUp();
  support::Instance::on_call = [this](const std::string& member) { called_.insert(member); };
}

void LockTest::TearDown() {
  support::Instance::on_call = nullptr;
  EXPECT_FALSE(IsSkipped()) << "what a test states must hold for every class of its suite";
  const ::testing::TestInfo& info = *::testing::UnitTest::GetInstance()->current_test_info();
  const std::set<std::string> existing = members_of(container_class());
  for (const Statement& statement : statements()) {
    if ("Classes/" + statement.suite != info.test_suite_name() ||
        statement.test + "/" + container_class().name != info.name()) {
      continue;
    }
    for (const std::string& member : statement.members) {
      if (member == member::destructor || !existing.contains(fill(member, container_class()))) {
        continue;
      }
      EXPECT_TRUE(called_.contains(member)) << "states the locks of " << member << " unseen";
    }
  }
  ClassTest::TearDown();
}

LockTest::Single LockTest::single(int index) const {
  Single result{make(), key(index), value(index)};
  result.container.put(result.key, result.value);
  return result;
}

void LockTest::add_comparisons(LockChanges& expected, const Element& a, const Element& b,
                               int count) {
  support::expect(expected, a, count);
  support::expect(expected, b, count);
}

support::Element LockTest::key_of_bucket(int index) const {
  switch (container_class().key) {
    case ElementType::integer:
      return 42 + 193 * index;
    case ElementType::string:
      return support::string(text_of_bucket(index));
    case ElementType::variant:
      return support::variant_string(text_of_bucket(index));
  }
  throw std::logic_error("no such type of keys");
}

std::vector<LockTest::Search> LockTest::searches() {
  std::vector<Search> result = {
      {"membership", [](const Container& c, const Element& sought) { c.contains(sought); }},
      {"CountKey", [](const Container& c, const Element& sought) { c.count_key(sought); }},
      {"find", [](const Container& c, const Element& sought) { c.find(sought); }}};
  if (container_class().is_map()) {
    result.push_back({"value", [this](const Container& c, const Element& sought) {
                        c.value(sought);
                        raised();  // the key may be absent
                      }});
    result.push_back({"lookup", [this](const Container& c, const Element& sought) {
                        c.lookup(sought, value(9));
                      }});
  }
  return result;
}

}  // namespace locks
