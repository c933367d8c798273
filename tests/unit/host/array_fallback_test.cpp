// Elements of arrays where the host names no procedures for them.
//
// The services keep what they found for the life of the process, so that every test here has a host
// without procedures.
#include <gtest/gtest.h>

#include "host/arrays.h"
#include "host/resolver.h"
#include "runtime/arrays.h"
#include "runtime/host.h"
#include "runtime/strings.h"
#include "runtime/variants.h"
#include "with_faults.h"

namespace {

using standin::ObjectRef;
using standin::StringRef;

class ArrayFallback : public testing::Test {
 protected:
  ArrayFallback() { keep_resolver(standin::Host::resolver()); }

  static standin::HostOptions without_procedures() {
    standin::HostOptions options = with_faults();
    options.without = {"RuntimeArrayDirectGetGetProc", "RuntimeArrayDirectGetSetProc",
                       "RuntimeArrayDirectGetInsertProc"};
    return options;
  }

  standin::Host host_{without_procedures()};
};

template <class Element>
void set_element(REALarray array, std::int32_t index, Element value) {
  ArrayWriter<Element>(array).set(index, value);
}

TEST_F(ArrayFallback, integers_are_read_and_written) {
  const auto array = standin::ArrayRef::adopt(REALCreateArrayInteger(2));
  set_element(array.get(), 1, -7);
  std::int32_t read = 5;
  REALGetArrayValue(array.get(), 1, &read);
  EXPECT_EQ(read, -7);
  EXPECT_EQ(standin::integer_at(array.get(), 1), -7);
}

TEST_F(ArrayFallback, a_string_read_has_one_more_lock_for_the_caller) {
  const auto array = standin::ArrayRef::adopt(REALCreateArrayString(0));
  const StringRef text = standin::make_string("text", host_encoding::utf8);
  set_element(array.get(), 0, text.get());
  EXPECT_EQ(standin::lock_count(text.get()), 2U) << "the array's and the test's";
  REALstring read = nullptr;
  REALGetArrayValue(array.get(), 0, &read);
  EXPECT_EQ(read, text.get());
  EXPECT_EQ(standin::lock_count(text.get()), 3U);
  standin::unlock(read);
}

TEST_F(ArrayFallback, an_object_read_has_one_more_lock_for_the_caller) {
  const auto array = standin::ArrayRef::adopt(REALCreateArrayObject(0));
  const ObjectRef variant = standin::variant_from_integer(5);
  set_element(array.get(), 0, variant.get());
  EXPECT_EQ(standin::lock_count(variant.get()), 2U) << "the array's and the test's";
  REALobject read = nullptr;
  REALGetArrayValue(array.get(), 0, &read);
  EXPECT_EQ(read, variant.get());
  EXPECT_EQ(standin::lock_count(variant.get()), 3U);
  standin::unlock(read);
}

TEST_F(ArrayFallback, nil_is_read_and_written) {
  const auto array = standin::ArrayRef::adopt(REALCreateArrayObject(0));
  const ObjectRef variant = standin::variant_from_integer(5);
  set_element(array.get(), 0, variant.get());
  set_element(array.get(), 0, REALobject{nullptr});
  EXPECT_EQ(standin::lock_count(variant.get()), 1U);
  REALobject read = variant.get();
  REALGetArrayValue(array.get(), 0, &read);
  EXPECT_EQ(read, nullptr);
}

// The array alone holds the element: unlocked first, it would die before it is locked again.
TEST_F(ArrayFallback, an_element_set_to_itself_survives) {
  const auto strings = standin::ArrayRef::adopt(REALCreateArrayString(0));
  const auto objects = standin::ArrayRef::adopt(REALCreateArrayObject(0));
  set_element(strings.get(), 0, standin::make_string("text", host_encoding::utf8).get());
  set_element(objects.get(), 0, standin::variant_from_integer(5).get());
  set_element(strings.get(), 0, standin::string_at(strings.get(), 0));
  set_element(objects.get(), 0, standin::object_at(objects.get(), 0));
  EXPECT_EQ(standin::lock_count(standin::string_at(strings.get(), 0)), 1U);
  EXPECT_EQ(standin::bytes(standin::string_at(strings.get(), 0)), "text");
  EXPECT_EQ(standin::lock_count(standin::object_at(objects.get(), 0)), 1U);
  EXPECT_EQ(standin::to_int32(standin::object_at(objects.get(), 0)), 5);
}

TEST_F(ArrayFallback, nothing_is_inserted) {
  const auto array = standin::ArrayRef::adopt(REALCreateArrayObject(-1));
  const ObjectRef variant = standin::variant_from_integer(5);
  REALInsertArrayValue(array.get(), 0, variant.get());
  EXPECT_EQ(standin::upper_bound(array.get()), -1);
  EXPECT_EQ(standin::lock_count(variant.get()), 1U);
}

TEST_F(ArrayFallback, a_null_place_reads_nothing) {
  const auto array = standin::ArrayRef::adopt(REALCreateArrayObject(0));
  const ObjectRef variant = standin::variant_from_integer(5);
  set_element(array.get(), 0, variant.get());
  REALGetArrayValue(array.get(), 0, static_cast<REALobject*>(nullptr));
  EXPECT_EQ(standin::lock_count(variant.get()), 2U);
}

TEST_F(ArrayFallback, an_integer_out_of_range_reads_as_0) {
  const auto array = standin::ArrayRef::adopt(REALCreateArrayInteger(1));
  for (const std::int32_t index : {-1, 2}) {
    std::int32_t read = 5;
    REALGetArrayValue(array.get(), index, &read);
    EXPECT_EQ(read, 0) << index;
  }
}

TEST_F(ArrayFallback, nothing_is_written_out_of_range) {
  const auto integers = standin::ArrayRef::adopt(REALCreateArrayInteger(1));
  const auto strings = standin::ArrayRef::adopt(REALCreateArrayString(1));
  const StringRef text = standin::make_string("text", host_encoding::utf8);
  for (const std::int32_t index : {-1, 2}) {
    set_element(integers.get(), index, 5);
    set_element(strings.get(), index, text.get());
  }
  EXPECT_EQ(standin::integer_at(integers.get(), 0), 0);
  EXPECT_EQ(standin::integer_at(integers.get(), 1), 0);
  EXPECT_EQ(standin::lock_count(text.get()), 1U);
}

}  // namespace
