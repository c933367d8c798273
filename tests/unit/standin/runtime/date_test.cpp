// Dates: the calendar, fields that carry over, and SQL texts.
#include "runtime/date.h"

#include <gtest/gtest.h>

#include "runtime/host.h"
#include "runtime/strings.h"

namespace standin {
namespace {

class DateTest : public testing::Test {
 protected:
  DateTest() : date_(make_date(0)) {}

  const PropertyInfo& info(const char* name) { return *host_.find_class("Date")->property(name); }
  std::int32_t field(const char* name) {
    return read_property(info(name), date_.get()).as_integer();
  }
  void set(const char* name, const Value& value) { write_property(info(name), date_.get(), value); }
  void set(const char* name, std::int32_t value) { set(name, Value::of_integer(value)); }
  void set_sql(const char* text) { set("SQLDateTime", Value::of_string(make_string(text))); }
  std::string sql() { return date_sql_text(date_.get()); }

  Host host_;
  ObjectRef date_;
};

TEST_F(DateTest, seconds_count_from_1904) {
  EXPECT_EQ(sql(), "1904-01-01 00:00:00");
  set_sql("1904-03-01 00:00:01");
  EXPECT_EQ(date_total_seconds(date_.get()), 60 * 86400.0 + 1);  // a leap year
  set("TotalSeconds", Value::of_double(-1));
  EXPECT_EQ(sql(), "1903-12-31 23:59:59");
}

TEST_F(DateTest, fields_are_read_and_written) {
  set_sql("2012-05-17 10:20:30");
  EXPECT_EQ(field("Year"), 2012);
  EXPECT_EQ(field("Month"), 5);
  EXPECT_EQ(field("Day"), 17);
  EXPECT_EQ(field("Hour"), 10);
  EXPECT_EQ(field("Minute"), 20);
  EXPECT_EQ(field("Second"), 30);
  EXPECT_EQ(field("DayOfWeek"), 5);  // a Thursday
  EXPECT_EQ(field("DayOfYear"), 138);
  set("Year", 1999);
  EXPECT_EQ(sql(), "1999-05-17 10:20:30");
}

TEST_F(DateTest, fields_carry_over) {
  set_sql("2012-01-31 00:00:00");
  set("Month", 13);
  EXPECT_EQ(sql(), "2013-01-31 00:00:00");
  set("Day", 0);
  EXPECT_EQ(sql(), "2012-12-31 00:00:00");
  set("Second", -1);
  EXPECT_EQ(sql(), "2012-12-30 23:59:59");
}

TEST_F(DateTest, sql_texts_are_checked) {
  set("SQLDate", Value::of_string(make_string("2001-02-03")));
  EXPECT_EQ(sql(), "2001-02-03 00:00:00");
  for (const char* wrong : {"", "2001", "2001-13-01", "2001-02-03 10", "2001-02-03 10:00:00x"}) {
    EXPECT_THROW(set_sql(wrong), HostException) << wrong;
  }
}

TEST_F(DateTest, constructors) {
  const auto constructors = host_.find_class("Date")->overloads("constructor");
  EXPECT_EQ(constructors.size(), 4U);
  const ClassInfo& date_class = *host_.find_class("Date");
  const ObjectRef copy = host_.new_instance("Date");
  set_sql("2012-05-17 10:20:30");
  const Value other = Value::of_object(date_);
  invoke(*date_class.find_method("Constructor(other As Date)"), copy.get(), std::span(&other, 1));
  EXPECT_EQ(date_sql_text(copy.get()), sql());
  invoke(*date_class.find_method("Constructor"), copy.get());
  EXPECT_GT(date_sql_text(copy.get()), "2020");
}

TEST_F(DateTest, is_told_from_other_objects) {
  EXPECT_TRUE(is_date(date_.get()));
  EXPECT_FALSE(is_date(host_.new_instance("Object").get()));
  EXPECT_FALSE(is_date(nullptr));
}

}  // namespace
}  // namespace standin
