// Arrays through the runtime and through the element procedures.
#include "runtime/arrays.h"

#include <gtest/gtest.h>

#include "runtime/host.h"
#include "runtime/services.h"
#include "runtime/strings.h"
#include "runtime/variants.h"

namespace standin {
namespace {

class ArrayTest : public testing::Test {
 protected:
  static ArrayRef integers(std::initializer_list<std::int32_t> values) {
    ArrayRef array = make_array(Type::of(TypeKind::integer), -1);
    for (const std::int32_t value : values) append(array.get(), Value::of_integer(value));
    return array;
  }
  static std::vector<std::int32_t> content(const ArrayRef& array) {
    std::vector<std::int32_t> result;
    for (std::int32_t i = 0; i <= upper_bound(array.get()); ++i) {
      result.push_back(get(array.get(), i).as_integer());
    }
    return result;
  }
  static void expect_raises(const char* class_name, const std::function<void()>& action) {
    try {
      action();
      ADD_FAILURE() << "nothing was raised";
    } catch (const HostException& exception) {
      EXPECT_EQ(exception.class_name(), class_name);
    }
  }
  std::string take_pending_class() {
    const ObjectRef exception = host_.take_pending_exception();
    return exception ? class_of(exception.get())->name() : "none";
  }

  Host host_;
};

using Integers = std::vector<std::int32_t>;

TEST_F(ArrayTest, elements_start_as_zero) {
  EXPECT_EQ(content(make_array(Type::of(TypeKind::integer), 2)), (Integers{0, 0, 0}));
  EXPECT_EQ(get(make_array(Type::of(TypeKind::string), 0).get(), 0).as_string(), nullptr);
  EXPECT_EQ(upper_bound(make_array(Type::of(TypeKind::string), -1).get()), -1);
}

TEST_F(ArrayTest, elements_are_inserted_and_removed_in_order) {
  const ArrayRef array = integers({1, 2, 3});
  insert(array.get(), 0, Value::of_integer(0));
  insert(array.get(), 4, Value::of_integer(4));
  insert(array.get(), 2, Value::of_integer(9));
  EXPECT_EQ(content(array), (Integers{0, 1, 9, 2, 3, 4}));
  remove(array.get(), 2);
  remove(array.get(), 4);
  EXPECT_EQ(content(array), (Integers{0, 1, 2, 3}));
  swap(array.get(), 0, 3);
  EXPECT_EQ(content(array), (Integers{3, 1, 2, 0}));
}

TEST_F(ArrayTest, resizing_keeps_what_fits) {
  const ArrayRef array = integers({1, 2, 3});
  resize(array.get(), 4);
  EXPECT_EQ(content(array), (Integers{1, 2, 3, 0, 0}));
  resize(array.get(), 0);
  EXPECT_EQ(content(array), (Integers{1}));
  resize(array.get(), 1);
  EXPECT_EQ(content(array), (Integers{1, 0}));
}

TEST_F(ArrayTest, indices_out_of_range_raise) {
  const ArrayRef array = integers({1});
  for (const std::int32_t index : {-1, 1}) {
    expect_raises("OutOfBoundsException", [&] { get(array.get(), index); });
    expect_raises("OutOfBoundsException", [&] { set(array.get(), index, Value::of_integer(1)); });
    expect_raises("OutOfBoundsException", [&] { remove(array.get(), index); });
  }
  expect_raises("OutOfBoundsException", [&] { insert(array.get(), 2, Value::of_integer(1)); });
  expect_raises("OutOfBoundsException", [&] { resize(array.get(), -2); });
  expect_raises("NilObjectException", [&] { upper_bound(nullptr); });
}

TEST_F(ArrayTest, every_kind_of_element_comes_back) {
  const Value values[] = {Value::of_boolean(true), Value::of_int64(1LL << 40),
                          Value::of_single(1.5F),  Value::of_double(2.5),
                          Value::of_currency(123), Value::of_color(0x112233)};
  for (const Value& value : values) {
    const ArrayRef array = make_array(Type::of(value.kind()), 1);
    set(array.get(), 1, value);
    EXPECT_EQ(describe(get(array.get(), 1)), describe(value));
    EXPECT_NE(describe(get(array.get(), 0)), describe(value));
  }
}

TEST_F(ArrayTest, an_element_is_locked_while_it_is_in) {
  const StringRef text = make_string("abc");
  const ArrayRef array = make_array(Type::of(TypeKind::string), 0);
  set(array.get(), 0, Value::of_string(text));
  EXPECT_EQ(lock_count(text.get()), 2U);
  set(array.get(), 0, Value::of_string(text));
  EXPECT_EQ(lock_count(text.get()), 2U);
  insert(array.get(), 0, Value::of_string(text));
  EXPECT_EQ(lock_count(text.get()), 3U);
  remove(array.get(), 1);
  EXPECT_EQ(lock_count(text.get()), 2U);
  resize(array.get(), -1);
  EXPECT_EQ(lock_count(text.get()), 1U);
}

TEST_F(ArrayTest, variants_and_objects_share_a_storage) {
  const ArrayRef array = make_array(Type::of(TypeKind::variant), 0);
  set(array.get(), 0, Value::of_variant(variant_from_integer(7)));
  EXPECT_EQ(get(array.get(), 0).kind(), TypeKind::object);
  const Value variant = get(array.get(), 0, Type::of(TypeKind::variant));
  EXPECT_EQ(variant.kind(), TypeKind::variant);
  EXPECT_EQ(to_int32(variant.as_object()), 7);
  EXPECT_THROW(set(array.get(), 0, Value::of_integer(7)), std::logic_error);
}

TEST_F(ArrayTest, plugins_create_three_kinds) {
  for (const std::int32_t type : {0, 3, 4}) {
    const ArrayRef array = ArrayRef::adopt(services::create_array(type, 2));
    ASSERT_TRUE(array);
    EXPECT_EQ(services::array_upper_bound(array.get()), 2);
  }
  EXPECT_EQ(services::create_array(1, 2), nullptr);
  EXPECT_EQ(services::create_array(0, -2), nullptr);
}

TEST_F(ArrayTest, element_procedures_lock_what_they_give) {
  const ArrayRef array = ArrayRef::adopt(services::create_array(3, 0));
  const StringRef text = make_string("abc");
  using Get = REALstring (*)(REALarray, std::int32_t);
  using Set = void (*)(REALarray, REALstring, std::int32_t);
  using Insert = void (*)(REALarray, std::int32_t, REALstring);
  reinterpret_cast<Set>(services::array_set_procedure(array.get()))(array.get(), text.get(), 0);
  EXPECT_EQ(lock_count(text.get()), 2U);
  reinterpret_cast<Insert>(services::array_insert_procedure(array.get()))(array.get(), 0, nullptr);
  const auto get_string = reinterpret_cast<Get>(services::array_get_procedure(array.get()));
  EXPECT_EQ(get_string(array.get(), 0), nullptr);
  const StringRef read = StringRef::adopt(get_string(array.get(), 1));
  EXPECT_EQ(read.get(), text.get());
  EXPECT_EQ(lock_count(text.get()), 3U);
}

TEST_F(ArrayTest, element_procedures_leave_an_exception_pending) {
  const ArrayRef array = integers({1});
  EXPECT_EQ(services::array_get_integer(array.get(), 1), 0);
  EXPECT_EQ(take_pending_class(), "OutOfBoundsException");
  services::array_set_integer(array.get(), 5, -1);
  EXPECT_EQ(take_pending_class(), "OutOfBoundsException");
  services::array_insert_integer(array.get(), 2, 5);
  EXPECT_EQ(take_pending_class(), "OutOfBoundsException");
  services::array_insert_integer(array.get(), 1, 5);
  EXPECT_EQ(take_pending_class(), "none");
  EXPECT_EQ(content(array), (Integers{1, 5}));
}

TEST_F(ArrayTest, the_languages_own_arrays_have_no_procedures) {
  const ArrayRef array = make_array(Type::of(TypeKind::double_), 0);
  EXPECT_EQ(services::array_get_procedure(array.get()), nullptr);
}

}  // namespace
}  // namespace standin
