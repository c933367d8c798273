// The registered records read as raw memory, without the header's structures: a host compiled
// elsewhere finds every field where the layout says, pointers of the build's width and 32-bit
// integers in natural alignment.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "support/registration_recorder.h"

namespace {

using support::LoadedPlugin;

// One letter a field: 'p' a pointer, 'i' a 32-bit integer.
constexpr std::string_view class_fields =
    "ippiippp"  // version ... properties
    "ipipipi"   // propertyCount ... eventInstanceCount
    "ppipii"    // interfaces ... mFlags
    "pipi";     // shared properties and methods
constexpr std::string_view method_fields = "pppi";
constexpr std::string_view property_fields = "pppippipip";

class Layout {
 public:
  explicit Layout(std::string_view fields) {
    for (const char field : fields) {
      const std::size_t width = field == 'p' ? sizeof(void*) : 4;
      size_ = (size_ + width - 1) / width * width;
      offsets_.push_back(size_);
      size_ += width;
      alignment_ = width > alignment_ ? width : alignment_;
    }
    size_ = (size_ + alignment_ - 1) / alignment_ * alignment_;
  }

  std::size_t offset(std::size_t field) const { return offsets_.at(field); }
  std::size_t size() const { return size_; }
  std::size_t field_count() const { return offsets_.size(); }

  template <class Field>
  Field read(const void* record, std::size_t field) const {
    Field value;
    std::memcpy(&value, static_cast<const char*>(record) + offset(field), sizeof value);
    return value;
  }

 private:
  std::vector<std::size_t> offsets_;
  std::size_t size_ = 0;
  std::size_t alignment_ = 1;
};

const void* record(std::size_t index) {
  return LoadedPlugin::first_registration().records.at(index);
}

TEST(RecordLayout, a_class_record_has_25_fields) {
  EXPECT_EQ(Layout(class_fields).field_count(), 25u);
  EXPECT_EQ(sizeof(REALclassDefinition), Layout(class_fields).size());
}

TEST(RecordLayout, in_a_32_bit_build_every_field_lies_at_four_times_its_index) {
  if (sizeof(void*) != 4) GTEST_SKIP() << "this build is not the 32-bit one";
  for (const std::string_view fields : {class_fields, method_fields, property_fields}) {
    const Layout layout(fields);
    for (std::size_t i = 0; i < fields.size(); ++i) EXPECT_EQ(layout.offset(i), 4 * i);
  }
}

TEST(RecordLayout, the_fields_of_a_class_record_lie_in_order) {
  const Layout layout(class_fields);
  // The tenth container is the ordered string set: hashed kinds have one property more.
  const void* const set = record(2 * 9);
  EXPECT_EQ(layout.read<std::int32_t>(set, 0), 9);
  EXPECT_STREQ(layout.read<const char*>(set, 1), "StringOrderedSetZRB");
  EXPECT_EQ(layout.read<void*>(set, 2), nullptr);
  EXPECT_EQ(layout.read<std::int32_t>(set, 3), 16);
  EXPECT_EQ(layout.read<std::int32_t>(set, 4), 0);
  EXPECT_EQ(layout.read<void*>(set, 5), nullptr);
  EXPECT_NE(layout.read<void*>(set, 6), nullptr);
  EXPECT_NE(layout.read<void*>(set, 7), nullptr);
  EXPECT_EQ(layout.read<std::int32_t>(set, 8), 3);
  EXPECT_NE(layout.read<void*>(set, 9), nullptr);
  EXPECT_EQ(layout.read<std::int32_t>(set, 10), 16);
  for (const std::size_t pointer : {11u, 13u, 15u, 16u, 18u, 21u, 23u}) {
    EXPECT_EQ(layout.read<void*>(set, pointer), nullptr) << "field " << pointer;
  }
  for (const std::size_t count : {12u, 14u, 17u, 19u, 22u, 24u}) {
    EXPECT_EQ(layout.read<std::int32_t>(set, count), 0) << "field " << count;
  }
  EXPECT_EQ(layout.read<std::int32_t>(set, 20), 4);
}

TEST(RecordLayout, methods_follow_each_other_in_records_of_four_fields) {
  const Layout layout(method_fields);
  const void* const map = record(2 * 4);  // IntegerToStringHashMapZRB
  const char* const methods = Layout(class_fields).read<const char*>(map, 9);
  const auto nth = [&](std::size_t index) { return methods + index * layout.size(); };
  EXPECT_STREQ(layout.read<const char*>(nth(0), 2), "Operator_Convert(dic as dictionary)");
  EXPECT_EQ(layout.read<void*>(nth(0), 1), nullptr);
  EXPECT_STREQ(layout.read<const char*>(nth(21), 2), "value(key as integer) as string");
  EXPECT_NE(layout.read<void*>(nth(21), 0), nullptr);
  EXPECT_NE(layout.read<void*>(nth(21), 1), nullptr);
  EXPECT_EQ(layout.read<std::int32_t>(nth(21), 3), 4);
}

TEST(RecordLayout, properties_follow_each_other_in_records_of_ten_fields) {
  const Layout layout(property_fields);
  const char* const properties = Layout(class_fields).read<const char*>(record(0), 7);
  const char* const third = properties + 2 * layout.size();
  EXPECT_EQ(layout.read<void*>(third, 0), nullptr);
  EXPECT_STREQ(layout.read<const char*>(third, 1), "BinCount");
  EXPECT_STREQ(layout.read<const char*>(third, 2), "Integer");
  EXPECT_EQ(layout.read<std::int32_t>(third, 3), 6);
  EXPECT_NE(layout.read<void*>(third, 4), nullptr);
  EXPECT_EQ(layout.read<void*>(third, 5), nullptr);
  EXPECT_EQ(layout.read<std::int32_t>(third, 6), 0);
  EXPECT_EQ(layout.read<void*>(third, 7), nullptr);
  EXPECT_EQ(layout.read<std::int32_t>(third, 8), 0);
  EXPECT_EQ(layout.read<void*>(third, 9), nullptr);
}

}  // namespace
