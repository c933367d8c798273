// Locks and the references that own them.
#include <gtest/gtest.h>

#include "runtime/arrays.h"
#include "runtime/host.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace standin {
namespace {

TEST(Ref, owns_exactly_one_lock) {
  StringRef text = make_string("abc");
  REALstring handle = text.get();
  EXPECT_EQ(lock_count(handle), 1U);
  {
    StringRef copy = text;
    EXPECT_EQ(lock_count(handle), 2U);
    StringRef moved = std::move(copy);
    EXPECT_EQ(lock_count(handle), 2U);
    EXPECT_FALSE(copy);  // NOLINT: a moved-from reference is empty
    StringRef& same = moved;
    moved = same;
    EXPECT_EQ(lock_count(handle), 2U);
  }
  EXPECT_EQ(lock_count(handle), 1U);
  StringRef shared = StringRef::share(handle);
  EXPECT_EQ(lock_count(handle), 2U);
  REALstring released = shared.release();
  EXPECT_EQ(lock_count(handle), 2U);
  StringRef adopted = StringRef::adopt(released);
  adopted.reset();
  EXPECT_EQ(lock_count(handle), 1U);
}

TEST(Ref, null_is_nil) {
  lock(REALstring(nullptr));
  unlock(REALobject(nullptr));
  EXPECT_EQ(lock_count(REALarray(nullptr)), 0U);
  EXPECT_FALSE(ObjectRef::share(nullptr));
}

TEST(Handles, what_a_block_holds_goes_with_it) {
  const StringRef text = make_string("abc");
  ObjectRef variant = variant_from_string(text.get());
  EXPECT_EQ(lock_count(text.get()), 2U);
  ArrayRef array = make_array(Type::of(TypeKind::variant), 0);
  set(array.get(), 0, Value::of_variant(variant));
  variant.reset();
  EXPECT_EQ(lock_count(text.get()), 2U);
  array.reset();
  EXPECT_EQ(lock_count(text.get()), 1U);
}

TEST(Handles, arrays_are_unlocked_as_objects_too) {
  const StringRef text = make_string("abc");
  REALarray array = make_array(Type::of(TypeKind::string), 0).release();
  set(array, 0, Value::of_string(text));
  unlock(reinterpret_cast<REALobject>(array));
  EXPECT_EQ(lock_count(text.get()), 1U);
}

TEST(Handles, descriptions_tell_kind_and_content) {
  Host host;
  EXPECT_NE(describe(make_string("a\"b\n").get()).find(R"("a"b\x0A" (UTF-8))"), std::string::npos);
  EXPECT_NE(describe(variant_from_integer(5).get()).find("Integer 5"), std::string::npos);
  EXPECT_NE(describe(host.new_instance("Dictionary").get()).find("Dictionary #"),
            std::string::npos);
  EXPECT_NE(describe(make_array(Type::of(TypeKind::integer), 2).get()).find("of 3 integers"),
            std::string::npos);
  EXPECT_EQ(describe(REALobject(nullptr)), "nil");
}

// Plugins for hosts without some services read a string as two words and an array as three.
TEST(Layout, the_second_word_of_a_string_points_before_its_text) {
  const StringRef text = make_string("abc");
  const char* const* words = reinterpret_cast<const char* const*>(text.get());
  EXPECT_STREQ(words[1] + 1, "abc");
  EXPECT_EQ(words[1][0], 3);
  EXPECT_EQ(std::string(words[1] + 4, 4), std::string(4, '\0'));
}

TEST(Layout, the_third_word_of_an_array_points_to_its_elements) {
  const ArrayRef integers = make_array(Type::of(TypeKind::integer), 1);
  set(integers.get(), 1, Value::of_integer(77));
  EXPECT_EQ(reinterpret_cast<std::int32_t* const*>(integers.get())[2][1], 77);
  const ArrayRef strings = make_array(Type::of(TypeKind::string), 1);
  const StringRef text = make_string("abc");
  set(strings.get(), 1, Value::of_string(text));
  EXPECT_EQ(reinterpret_cast<REALstring* const*>(strings.get())[2][1], text.get());
}

TEST(Value, holds_one_lock_and_moves_it) {
  const StringRef text = make_string("abc");
  Value value = Value::of_string(text);
  EXPECT_EQ(lock_count(text.get()), 2U);
  Value copy = value;
  EXPECT_EQ(lock_count(text.get()), 3U);
  Value moved = std::move(copy);
  EXPECT_EQ(lock_count(text.get()), 3U);
  moved = Value::of_integer(1);
  EXPECT_EQ(lock_count(text.get()), 2U);
  value = Value(value);
  EXPECT_EQ(lock_count(text.get()), 2U);
}

TEST(Value, starts_as_its_type_does) {
  EXPECT_EQ(Value::initial(Type::of(TypeKind::integer)).as_integer(), 0);
  EXPECT_EQ(Value::initial(Type::of(TypeKind::double_)).as_double(), 0.0);
  EXPECT_FALSE(Value::initial(Type::of(TypeKind::boolean)).as_boolean());
  EXPECT_EQ(Value::initial(Type::of(TypeKind::string)).as_string(), nullptr);
  EXPECT_EQ(Value::initial(Type::of(TypeKind::variant)).as_variant(), nullptr);
}

}  // namespace
}  // namespace standin
