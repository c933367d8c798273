// Dates count seconds from the beginning of 1904; the calendar is that of <chrono>.
#include "runtime/date.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "runtime/exceptions.h"
#include "runtime/host.h"
#include "runtime/native_classes.h"
#include "runtime/strings.h"

namespace standin {
namespace {

struct DateData {
  std::int64_t seconds = 0;  // since 1904-01-01 00:00:00
};

constexpr NativeData date_data = native_data_of<DateData>();

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days epoch = std::chrono::year(1904) / 1 / 1;
constexpr std::int64_t seconds_a_day = 86400;
// Ten thousand years and more each way, and nothing overflows.
constexpr double most_seconds = 4e11;

struct Fields {
  int year = 1904;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

std::int64_t floor_divide(std::int64_t a, std::int64_t b) {
  return a / b - (a % b < 0 ? 1 : 0);
}

Fields fields_of(std::int64_t seconds) {
  const std::int64_t day_number = floor_divide(seconds, seconds_a_day);
  const int rest = static_cast<int>(seconds - day_number * seconds_a_day);
  const year_month_day date(epoch + days(static_cast<int>(day_number)));
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          rest / 3600,
          rest / 60 % 60,
          rest % 60};
}

// Fields beyond their range carry over: month 13 is January of the next year, day 0 the last day of
// the month before.
std::int64_t seconds_of(const Fields& fields) {
  const std::int64_t months = static_cast<std::int64_t>(fields.year) * 12 + fields.month - 1;
  const std::int64_t year = floor_divide(months, 12);
  if (year < -9999 || year > 9999) raise("OutOfBoundsException", "the year is out of range");
  const sys_days first = std::chrono::year(static_cast<int>(year)) /
                         std::chrono::month(static_cast<unsigned>(months - year * 12 + 1)) / 1;
  const std::int64_t day_number =
      (first - epoch).count() + static_cast<std::int64_t>(fields.day) - 1;
  return day_number * seconds_a_day + static_cast<std::int64_t>(fields.hour) * 3600 +
         static_cast<std::int64_t>(fields.minute) * 60 + fields.second;
}

DateData& data_of(REALobject date) {
  const ClassInfo* owner = class_with(date, date_data.construct);
  if (owner == nullptr) raise("IllegalCastException", "not a Date");
  return *static_cast<DateData*>(instance_data(date, *owner));
}

std::int64_t local_now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return seconds_of({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                     local.tm_min, local.tm_sec});
}

std::string sql_date(const Fields& fields) {
  char text[48];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", fields.year, fields.month, fields.day);
  return text;
}

std::string sql_date_time(const Fields& fields) {
  char text[48];
  std::snprintf(text, sizeof text, " %02d:%02d:%02d", fields.hour, fields.minute, fields.second);
  return sql_date(fields) + text;
}

void set_sql(REALobject self, const Value& value) {
  const std::string text = utf8(value.as_string());
  Fields fields;
  char beyond;
  const int count = std::sscanf(text.c_str(), "%d-%d-%d %d:%d:%d%c", &fields.year, &fields.month,
                                &fields.day, &fields.hour, &fields.minute, &fields.second, &beyond);
  const bool in_range = fields.month >= 1 && fields.month <= 12 && fields.day >= 1 &&
                        fields.day <= 31 && fields.hour >= 0 && fields.hour <= 23 &&
                        fields.minute >= 0 && fields.minute <= 59 && fields.second >= 0 &&
                        fields.second <= 59;
  if ((count != 3 && count != 6) || !in_range) {
    raise("UnsupportedFormatException", "no SQL date: " + text);
  }
  data_of(self).seconds = seconds_of(fields);
}

// The class as programs see it.

Value construct_now(REALobject self, std::span<const Value>) {
  data_of(self).seconds = local_now();
  return {};
}

Value construct_copy(REALobject self, std::span<const Value> arguments) {
  if (arguments[0].as_object() == nullptr) raise("NilObjectException");
  data_of(self).seconds = data_of(arguments[0].as_object()).seconds;
  return {};
}

Value construct_fields(REALobject self, std::span<const Value> arguments) {
  Fields fields;
  int* const parts[] = {&fields.year, &fields.month,  &fields.day,
                        &fields.hour, &fields.minute, &fields.second};
  for (std::size_t i = 0; i < arguments.size(); ++i) *parts[i] = arguments[i].as_integer();
  data_of(self).seconds = seconds_of(fields);
  return {};
}

template <int Fields::*field>
Value get_field(REALobject self) {
  return Value::of_integer(fields_of(data_of(self).seconds).*field);
}

template <int Fields::*field>
void set_field(REALobject self, const Value& value) {
  Fields fields = fields_of(data_of(self).seconds);
  fields.*field = value.as_integer();
  data_of(self).seconds = seconds_of(fields);
}

Value get_total_seconds(REALobject self) {
  return Value::of_double(date_total_seconds(self));
}
void set_total_seconds(REALobject self, const Value& value) {
  if (!(std::abs(value.as_double()) < most_seconds)) {
    raise("OutOfBoundsException", "the date is out of range");
  }
  data_of(self).seconds = static_cast<std::int64_t>(std::floor(value.as_double()));
}

Value get_sql_date(REALobject self) {
  return Value::of_string(make_string(sql_date(fields_of(data_of(self).seconds))));
}
Value get_sql_date_time(REALobject self) {
  return Value::of_string(make_string(date_sql_text(self)));
}

// 1 is Sunday.
Value get_day_of_week(REALobject self) {
  const std::int64_t day_number = floor_divide(data_of(self).seconds, seconds_a_day);
  const std::chrono::weekday weekday(epoch + days(static_cast<int>(day_number)));
  return Value::of_integer(static_cast<std::int32_t>(weekday.c_encoding()) + 1);
}

Value get_day_of_year(REALobject self) {
  const std::int64_t seconds = data_of(self).seconds;
  const std::int64_t new_year = seconds_of({fields_of(seconds).year});
  return Value::of_integer(static_cast<std::int32_t>((seconds - new_year) / seconds_a_day) + 1);
}

constexpr NativeMethodRow methods[] = {
    {"Constructor", construct_now},
    {"Constructor(other As Date)", construct_copy},
    {"Constructor(year As Integer, month As Integer, day As Integer)", construct_fields},
    {"Constructor(year As Integer, month As Integer, day As Integer, hour As Integer, "
     "minute As Integer, second As Integer)",
     construct_fields},
};

constexpr NativePropertyRow properties[] = {
    {"Year", "Integer", get_field<&Fields::year>, set_field<&Fields::year>},
    {"Month", "Integer", get_field<&Fields::month>, set_field<&Fields::month>},
    {"Day", "Integer", get_field<&Fields::day>, set_field<&Fields::day>},
    {"Hour", "Integer", get_field<&Fields::hour>, set_field<&Fields::hour>},
    {"Minute", "Integer", get_field<&Fields::minute>, set_field<&Fields::minute>},
    {"Second", "Integer", get_field<&Fields::second>, set_field<&Fields::second>},
    {"TotalSeconds", "Double", get_total_seconds, set_total_seconds},
    {"SQLDate", "String", get_sql_date, set_sql},
    {"SQLDateTime", "String", get_sql_date_time, set_sql},
    {"DayOfWeek", "Integer", get_day_of_week},
    {"DayOfYear", "Integer", get_day_of_year},
};

}  // namespace

NativeClassRow date_class_row() {
  return {"Date", nullptr, date_data, methods, properties};
}

ObjectRef make_date(double total_seconds) {
  ObjectRef date = make_instance(*Host::current().find_class("Date"));
  set_total_seconds(date.get(), Value::of_double(total_seconds));
  return date;
}

bool is_date(REALobject object) {
  return class_with(object, date_data.construct) != nullptr;
}

double date_total_seconds(REALobject date) {
  return static_cast<double>(data_of(date).seconds);
}

std::string date_sql_text(REALobject date) {
  return sql_date_time(fields_of(data_of(date).seconds));
}

}  // namespace standin
