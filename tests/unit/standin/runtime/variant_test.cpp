// Variants: type codes, conversions, hashes.
#include "runtime/variants.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "runtime/date.h"
#include "runtime/host.h"
#include "runtime/services.h"
#include "runtime/strings.h"

namespace standin {
namespace {

class VariantTest : public testing::Test {
 protected:
  static ObjectRef text(const char* utf8_text) {
    return variant_from_string(make_string(utf8_text).get());
  }
  static std::string string_of(const ObjectRef& variant) {
    return utf8(to_string(variant.get()).get());
  }
  static std::int32_t code(const ObjectRef& variant) {
    return static_cast<std::int32_t>(variant_type(variant.get()));
  }
  Host host_;
};

TEST_F(VariantTest, type_codes) {
  EXPECT_EQ(code(nullptr), 0);
  EXPECT_EQ(code(variant_from_integer(1)), 2);
  EXPECT_EQ(code(variant_from_int64(1)), 3);
  EXPECT_EQ(code(variant_from_single(1)), 4);
  EXPECT_EQ(code(variant_from_double(1)), 5);
  EXPECT_EQ(code(variant_from_currency(1)), 6);
  EXPECT_EQ(code(make_date(0)), 7);
  EXPECT_EQ(code(text("a")), 8);
  EXPECT_EQ(code(host_.new_instance("Dictionary")), 9);
  EXPECT_EQ(code(variant_from_boolean(true)), 11);
  EXPECT_EQ(code(variant_from_color(1)), 16);
}

TEST_F(VariantTest, numbers_become_texts) {
  EXPECT_EQ(string_of(variant_from_integer(INT32_MIN)), "-2147483648");
  EXPECT_EQ(string_of(variant_from_int64(INT64_MAX)), "9223372036854775807");
  EXPECT_EQ(string_of(variant_from_single(0.1F)), "0.1");
  EXPECT_EQ(string_of(variant_from_double(0.1)), "0.1");
  EXPECT_EQ(string_of(variant_from_double(3)), "3");
  EXPECT_EQ(string_of(variant_from_double(1e300)), "1e+300");
  EXPECT_EQ(string_of(variant_from_currency(-15000)), "-1.5");
  EXPECT_EQ(string_of(variant_from_currency(20000)), "2");
  EXPECT_EQ(string_of(variant_from_currency(-1)), "-0.0001");
  EXPECT_EQ(string_of(variant_from_currency(INT64_MIN)), "-922337203685477.5808");
  EXPECT_EQ(string_of(variant_from_boolean(true)), "True");
  EXPECT_EQ(string_of(variant_from_color(0xFF00AB)), "&cFF00AB");
  EXPECT_EQ(string_of(make_date(0)), "1904-01-01 00:00:00");
  EXPECT_FALSE(to_string(nullptr));
}

TEST_F(VariantTest, texts_become_numbers) {
  EXPECT_EQ(to_int32(text("25").get()), 25);
  EXPECT_EQ(to_int32(text("  -25abc").get()), -25);
  EXPECT_EQ(to_int32(text("2.9").get()), 2);
  EXPECT_EQ(to_int32(text("&hFF").get()), 255);
  EXPECT_EQ(to_int32(text("abc").get()), 0);
  EXPECT_EQ(to_int32(text("inf").get()), 0);
  EXPECT_EQ(to_int32(text("99999999999").get()), INT32_MAX);
  EXPECT_EQ(to_int64(text("9007199254740993").get()), 9007199254740993);
  EXPECT_EQ(to_int64(text("12e3").get()), 12000);
  EXPECT_EQ(to_double(text("+1.5e2").get()), 150);
  EXPECT_EQ(to_double(text("1e400").get()), std::numeric_limits<double>::infinity());
  EXPECT_EQ(to_double(text("1e-400").get()), 0);
  EXPECT_EQ(to_currency(text("1.25").get()), 12500);
  EXPECT_EQ(to_color(text("&c010203").get()), 0x010203U);
}

TEST_F(VariantTest, truth) {
  EXPECT_TRUE(to_boolean(text("TRUE").get()));
  EXPECT_TRUE(to_boolean(text("1").get()));
  EXPECT_FALSE(to_boolean(text("no").get()));
  EXPECT_TRUE(to_boolean(variant_from_double(0.5).get()));
  EXPECT_FALSE(to_boolean(nullptr));
  EXPECT_EQ(to_int32(variant_from_boolean(true).get()), 1);
}

TEST_F(VariantTest, numbers_are_cut_and_saturate) {
  EXPECT_EQ(to_int32(variant_from_double(-2.9).get()), -2);
  EXPECT_EQ(to_int32(variant_from_double(1e10).get()), INT32_MAX);
  EXPECT_EQ(to_int32(variant_from_double(std::nan("")).get()), 0);
  EXPECT_EQ(to_int32(variant_from_int64(INT64_MIN).get()), INT32_MIN);
  EXPECT_EQ(to_int64(variant_from_double(1e30).get()), INT64_MAX);
  EXPECT_EQ(to_int64(variant_from_currency(19999).get()), 1);
  EXPECT_EQ(to_int64(variant_from_int64(INT64_MAX).get()), INT64_MAX);
  EXPECT_EQ(to_single(variant_from_double(0.5).get()), 0.5F);
}

TEST_F(VariantTest, an_object_is_its_own_variant) {
  const ObjectRef date = make_date(86400);
  EXPECT_EQ(to_object(date.get()), date.get());
  const ObjectRef five = variant_from_integer(5);
  EXPECT_EQ(to_object(five.get()), five.get());
  const ObjectRef box = box_object(date.get());
  EXPECT_EQ(variant_type(box.get()), VariantType::date);
  EXPECT_EQ(to_object(box.get()), date.get());
  EXPECT_EQ(lock_count(date.get()), 2U);
  EXPECT_EQ(variant_type(box_object(host_.new_instance("Dictionary").get()).get()),
            VariantType::object);
}

TEST_F(VariantTest, equal_values_hash_alike) {
  EXPECT_EQ(variant_hash(variant_from_integer(5).get()),
            variant_hash(variant_from_integer(5).get()));
  EXPECT_NE(variant_hash(variant_from_integer(5).get()),
            variant_hash(variant_from_integer(6).get()));
  EXPECT_EQ(variant_hash(text("abc").get()), variant_hash(text("abc").get()));
  EXPECT_EQ(variant_hash(variant_from_double(0.0).get()),
            variant_hash(variant_from_double(-0.0).get()));
  EXPECT_EQ(variant_hash(nullptr), 0U);
  const ObjectRef a = make_date(0);
  const ObjectRef b = make_date(0);
  EXPECT_EQ(variant_hash(a.get()), variant_hash(box_object(a.get()).get()));
  EXPECT_NE(variant_hash(a.get()), variant_hash(b.get()));
}

TEST_F(VariantTest, values_go_in_and_come_out) {
  const Value values[] = {Value::of_integer(1),  Value::of_int64(2),
                          Value::of_single(3),   Value::of_double(4),
                          Value::of_currency(5), Value::of_boolean(true),
                          Value::of_color(6),    Value::of_string(make_string("x"))};
  for (const Value& value : values) {
    const Value back = to_value(from_value(value).get());
    EXPECT_EQ(back.kind(), value.kind());
    EXPECT_EQ(describe(back), describe(value));
  }
  EXPECT_EQ(to_value(nullptr).kind(), TypeKind::void_);
  EXPECT_THROW(from_value(Value::of_array(nullptr)), HostException);
}

TEST_F(VariantTest, what_is_numeric) {
  EXPECT_TRUE(is_numeric(variant_from_single(1).get()));
  EXPECT_TRUE(is_numeric(text(" 1.5 ").get()));
  EXPECT_TRUE(is_numeric(text("&b101").get()));
  EXPECT_FALSE(is_numeric(text("1x").get()));
  EXPECT_FALSE(is_numeric(text("").get()));
  EXPECT_FALSE(is_numeric(nullptr));
  EXPECT_FALSE(is_numeric(variant_from_boolean(true).get()));
}

template <class Out, class Getter>
std::pair<bool, Out> read(Getter getter, REALobject object, const char* name) {
  Out out{};
  const auto answer = static_cast<std::uint32_t>(getter(object, name, &out));
  return {(answer & 0xFFU) != 0, out};
}

TEST_F(VariantTest, the_properties_tell_what_the_functions_tell) {
  const ObjectRef five = variant_from_integer(5);
  using services::get_property_double;
  using services::get_property_int32;
  using services::get_property_int64;
  using services::get_property_single;
  EXPECT_EQ(read<std::int32_t>(get_property_int32, five.get(), "Type"), std::pair(true, 2));
  EXPECT_EQ(read<std::int32_t>(get_property_int32, five.get(), "int32value"), std::pair(true, 5));
  EXPECT_EQ(read<std::int64_t>(get_property_int64, five.get(), "LongValue"),
            std::pair(true, std::int64_t{5}));
  EXPECT_EQ(read<float>(get_property_single, five.get(), "SingleValue"), std::pair(true, 5.0F));
  EXPECT_EQ(read<double>(get_property_double, five.get(), "DoubleValue"), std::pair(true, 5.0));
  EXPECT_EQ(read<std::int32_t>(get_property_int32, five.get(), "Ghost"), std::pair(false, 0));
  EXPECT_EQ(read<std::int32_t>(get_property_int32, five.get(), "DoubleValue"), std::pair(false, 0));
  EXPECT_EQ(read<std::int32_t>(get_property_int32, nullptr, "Type"), std::pair(false, 0));
}

TEST_F(VariantTest, string_properties_are_owned_and_object_properties_borrowed) {
  const StringRef abc = make_string("abc");
  const ObjectRef variant = variant_from_string(abc.get());
  const auto [has_text, got] =
      read<REALstring>(services::get_property_string, variant.get(), "StringValue");
  ASSERT_TRUE(has_text);
  EXPECT_EQ(got, abc.get());
  EXPECT_EQ(lock_count(abc.get()), 3U);
  unlock(got);
  const auto [has_object, object] =
      read<REALobject>(services::get_property_object, variant.get(), "ObjectValue");
  ASSERT_TRUE(has_object);
  EXPECT_EQ(object, variant.get());
  EXPECT_EQ(lock_count(variant.get()), 1U);
}

}  // namespace
}  // namespace standin
