// The tables of odd contents.
#include "model/odd_contents.h"

#include <limits>

#include "runtime/date.h"
#include "runtime/dictionary.h"
#include "runtime/encodings.h"
#include "runtime/variants.h"

namespace model {
namespace {

using namespace std::string_literals;
using standin::ObjectRef;
using standin::encodings::iso_latin1;
using standin::encodings::windows_latin1;

constexpr std::uint32_t utf8 = host_encoding::utf8;
constexpr std::uint32_t utf16 = host_encoding::utf16;
constexpr std::uint32_t utf32 = host_encoding::utf32;
constexpr std::uint32_t ascii = host_encoding::ascii;
constexpr std::uint32_t as_stored = host_encoding::as_stored;
constexpr std::uint32_t unknown = 0x1234;

// The byte order is that of the machines that the host runs on, little-endian.
std::string wide(std::u16string_view units) {
  return {reinterpret_cast<const char*>(units.data()), 2 * units.size()};
}
std::string wider(std::u32string_view units) {
  return {reinterpret_cast<const char*>(units.data()), 4 * units.size()};
}

template <class Number>
using Limits = std::numeric_limits<Number>;

template <double (*number)()>
ObjectRef real(bool) {
  return standin::variant_from_double(number());
}
ObjectRef zero(bool other_form) {
  return standin::variant_from_double(other_form ? -0.0 : 0.0);
}
ObjectRef single_zero(bool other_form) {
  return standin::variant_from_single(other_form ? -0.0F : 0.0F);
}
template <float (*number)()>
ObjectRef single(bool) {
  return standin::variant_from_single(number());
}
template <std::int64_t (*number)()>
ObjectRef int64(bool) {
  return standin::variant_from_int64(number());
}
template <std::int64_t (*number)()>
ObjectRef currency(bool) {
  return standin::variant_from_currency(number());
}
template <std::int32_t (*number)()>
ObjectRef integer(bool) {
  return standin::variant_from_integer(number());
}
template <std::uint32_t rgb>
ObjectRef color(bool) {
  return standin::variant_from_color(rgb);
}
template <bool value>
ObjectRef boolean(bool) {
  return standin::variant_from_boolean(value);
}

ObjectRef nil(bool) {
  return nullptr;
}
ObjectRef date(bool) {
  return standin::make_date(0);
}
ObjectRef dictionary(bool) {
  return standin::make_dictionary();
}

double minus_infinity() {
  return -Limits<double>::infinity();
}
double minus_denormal() {
  return -Limits<double>::denorm_min();
}
float minus_infinite_single() {
  return -Limits<float>::infinity();
}

}  // namespace

const std::vector<OddText>& odd_texts() {
  static const std::string long_text(5000, 'x');
  static const std::u16string long_units(5000, u'x');
  static const std::vector<OddText> texts = {
      // What cannot be converted counts as empty, and so does what begins with a zero byte.
      {"",
       {{utf16, wide(u"\xD801")},
        {utf8, "\0"s},
        {unknown, "?"},
        {ascii, "\xE9"},
        {utf32, "\xFF\xFF\xFF\x7F"},
        {utf16, "a"}}},
      {"\xFF\xFE", {{utf8, "\xFF\xFE"}, {as_stored, "\xFF\xFE"}}},
      {"\xC3", {{utf8, "\xC3"}, {as_stored, "\xC3"}}},
      {"\xED\xA0\x80", {{utf8, "\xED\xA0\x80"}, {as_stored, "\xED\xA0\x80"}}},
      {"\xC0\x80", {{as_stored, "\xC0\x80"}, {utf8, "\xC0\x80"}}},
      {"\xF4\x90\x80\x80", {{utf8, "\xF4\x90\x80\x80"}, {as_stored, "\xF4\x90\x80\x80"}}},
      {"a\0b"s, {{utf8, "a\0b"s}, {utf16, wide(u"a\0b"s)}}},
      {"b\0\0"s, {{ascii, "b\0\0"s}, {utf32, wider(U"b\0\0"s)}}},
      {"\xC3\xA9", {{windows_latin1, "\xE9"}, {iso_latin1, "\xE9"}}},
      {"e\xCC\x81", {{utf8, "e\xCC\x81"}, {utf16, wide(u"e\u0301")}}},
      {"\xE2\x82\xAC", {{windows_latin1, "\x80"}, {utf32, wider(U"\u20AC")}}},
      {"\xC2\x80", {{iso_latin1, "\x80"}, {utf8, "\xC2\x80"}}},
      {"\x80", {{as_stored, "\x80"}, {utf8, "\x80"}}},
      {"\xF0\x9F\x98\x80", {{utf16, wide(u"\U0001F600")}, {utf8, "\xF0\x9F\x98\x80"}}},
      {"\xEF\xBF\xBD", {{utf16, wide(u"\uFFFD")}, {utf32, wider(U"\uFFFD")}}},
      {"\xEF\xBB\xBF", {{utf8, "\xEF\xBB\xBF"}, {utf16, wide(u"\uFEFF")}}},
      {"\xEF\xBF\xBF", {{utf8, "\xEF\xBF\xBF"}, {utf16, wide(u"\uFFFF")}}},
      {"\x01", {{ascii, "\x01"}, {utf8, "\x01"}}},
      {"\x7F", {{ascii, "\x7F"}, {as_stored, "\x7F"}}},
      {"K", {{ascii, "K"}, {utf16, wide(u"K")}}},
      {"k", {{iso_latin1, "k"}, {utf32, wider(U"k")}}},
      {"\xE2\x84\xAA", {{utf8, "\xE2\x84\xAA"}, {utf16, wide(u"\u212A")}}},
      {long_text, {{utf8, long_text}, {utf16, wide(long_units)}}},
      {long_text + "a", {{ascii, long_text + "a"}, {as_stored, long_text + "a"}}},
      {long_text + "b\0z"s, {{utf8, long_text + "b\0z"s}, {as_stored, long_text + "b\0z"s}}},
  };
  return texts;
}

int odd_real_count() {
  return 7;
}

const std::vector<OddVariant>& odd_variants() {
  static const std::vector<OddVariant> variants = {
      {.make = real<minus_infinity>},
      {.make = real<&Limits<double>::lowest>},
      {.make = real<minus_denormal>},
      {.make = zero},
      {.make = real<&Limits<double>::denorm_min>},
      {.make = real<&Limits<double>::max>},
      {.make = real<&Limits<double>::infinity>},

      {.make = real<&Limits<double>::quiet_NaN>,
       .has_identity = true,
       .is_nan = true,
       .is_unlike = true},
      {.make = single<&Limits<float>::quiet_NaN>,
       .has_identity = true,
       .is_nan = true,
       .is_unlike = true},
      {.make = single<minus_infinite_single>},
      {.make = single<&Limits<float>::denorm_min>},
      {.make = single_zero},
      {.make = int64<&Limits<std::int64_t>::min>},
      {.make = int64<&Limits<std::int64_t>::max>, .is_unlike = true},
      {.make = currency<&Limits<std::int64_t>::min>},
      {.make = currency<&Limits<std::int64_t>::max>, .is_unlike = true},
      {.make = integer<&Limits<std::int32_t>::min>, .is_unlike = true},
      {.make = integer<&Limits<std::int32_t>::max>},
      {.make = color<0>, .is_unlike = true},
      {.make = color<0xFFFFFF>},
      {.make = boolean<false>},
      {.make = boolean<true>, .is_unlike = true},
      {.make = nil},
      {.make = date, .has_identity = true, .is_unlike = true},
      {.make = date, .has_identity = true, .is_unlike = true},
      {.make = dictionary, .has_identity = true, .is_unlike = true},
  };
  return variants;
}

}  // namespace model
