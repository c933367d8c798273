// Library routines on strings, by characters.
#include <utf8.h>
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "language/caseless_pattern.h"
#include "language/letter_case.h"
#include "language/library.h"
#include "language/machine.h"
#include "language/text.h"
#include "language/text_encoding.h"
#include "runtime/arrays.h"
#include "runtime/encodings.h"
#include "runtime/exceptions.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

Value text(std::string_view part, REALstring of) {
  return Value::of_string(make_string(part, encoding(of)));
}

Value number(std::size_t value) {
  return Value::of_integer(static_cast<std::int32_t>(value));
}

std::size_t not_negative(std::int32_t value) {
  return static_cast<std::size_t>(std::max(value, 0));
}

Value len(const RoutineCall& call) {
  return number(call.machine.characters().length(call.string(0)));
}

Value left(const RoutineCall& call) {
  const REALstring source = call.string(0);
  return text(call.machine.characters().part(source, 0, not_negative(call.integer(1))), source);
}

Value right(const RoutineCall& call) {
  const REALstring source = call.string(0);
  const std::size_t length = call.machine.characters().length(source);
  const std::size_t wanted = std::min(not_negative(call.integer(1)), length);
  return text(call.machine.characters().part(source, length - wanted, wanted), source);
}

// From 1; what lies before the start counts as missing.
Value mid(const RoutineCall& call) {
  const REALstring source = call.string(0);
  const std::int64_t start = std::int64_t{call.integer(1)} - 1;
  std::int64_t length = call.has(2) ? call.integer(2) : std::int64_t{1} << 31U;
  if (start < 0) length += start;
  if (length <= 0) return text({}, source);
  const auto first = static_cast<std::size_t>(std::max<std::int64_t>(start, 0));
  return text(call.machine.characters().part(source, first, static_cast<std::size_t>(length)),
              source);
}

// The character, from 1, at which `part` is found from a character on; 0 if it is not there.
Value found_at(Machine& machine, REALstring source, REALstring part, std::int32_t start) {
  const SameEncoding same(source, part);
  const REALstring text = same.first();  // with the source's characters, if not its bytes
  const std::size_t from =
      machine.characters().offset(text, static_cast<std::size_t>(std::max(start, 1) - 1));
  const std::size_t offset = CaselessPattern(same).find(same.a(), from);
  if (offset == std::string_view::npos) return Value::of_integer(0);
  return number(machine.characters().characters_before(text, offset) + 1);
}

Value instr(const RoutineCall& call) {
  return found_at(call.machine, call.string(0), call.string(1), 1);
}
Value instr_from(const RoutineCall& call) {
  return found_at(call.machine, call.string(1), call.string(2), call.integer(0));
}
Value instr_method_from(const RoutineCall& call) {
  return found_at(call.machine, call.string(0), call.string(2), call.integer(1));
}

// What was made in a common encoding goes back into that of the source, unless a character is
// missing there.
Value in_encoding_of(REALstring source, std::string_view result, std::uint32_t common) {
  if (common != encoding(source) && encodings::is_known(common)) {
    if (const auto back = encodings::convert(result, common, encoding(source))) {
      return text(*back, source);
    }
  }
  return Value::of_string(make_string(result, common));
}

// Both texts are in one encoding; case does not matter. Nothing replaces the empty text.
Value replaced(REALstring source, REALstring old_part, REALstring new_part, bool all) {
  if (bytes(old_part).empty()) return Value::of_string(StringRef::share(source));
  const SameEncoding same(source, old_part);
  const StringRef target = make_string(same.a(), same.encoding());
  const SameEncoding with(target.get(), new_part);
  const std::string_view text = same.a();
  std::string result;
  std::size_t at = 0;
  const CaselessPattern pattern(same);
  for (std::size_t next = pattern.find(text); next != std::string_view::npos;
       next = pattern.find(text, at)) {
    result += text.substr(at, next - at);
    result += with.b();
    check_length(result.size());
    at = next + pattern.size();
    if (!all) break;
  }
  result += text.substr(at);
  return in_encoding_of(source, result, same.encoding());
}

Value replace(const RoutineCall& call) {
  return replaced(call.string(0), call.string(1), call.string(2), false);
}
Value replace_all(const RoutineCall& call) {
  return replaced(call.string(0), call.string(1), call.string(2), true);
}

bool is_white(char c) {
  return static_cast<unsigned char>(c) <= 0x20;
}

Value trimmed(REALstring source, bool at_start, bool at_end) {
  // In wide encodings a blank is more than a byte: go through UTF-8.
  const std::uint32_t code = encoding(source);
  if (code == host_encoding::utf16 || code == host_encoding::utf32) {
    const StringRef narrow = convert(source, host_encoding::utf8);
    if (narrow) {
      const Value result = trimmed(narrow.get(), at_start, at_end);
      return Value::of_string(convert(result.as_string(), code));
    }
  }
  std::string_view part = bytes(source);
  while (at_start && !part.empty() && is_white(part.front())) part.remove_prefix(1);
  while (at_end && !part.empty() && is_white(part.back())) part.remove_suffix(1);
  return text(part, source);
}

Value trim(const RoutineCall& call) {
  return trimmed(call.string(0), true, true);
}
Value ltrim(const RoutineCall& call) {
  return trimmed(call.string(0), true, false);
}
Value rtrim(const RoutineCall& call) {
  return trimmed(call.string(0), false, true);
}

Value uppercase(const RoutineCall& call) {
  return Value::of_string(
      with_letters(call.string(0), [](char32_t letter, char32_t) { return upper_letter(letter); }));
}
Value lowercase(const RoutineCall& call) {
  return Value::of_string(
      with_letters(call.string(0), [](char32_t letter, char32_t) { return lower_letter(letter); }));
}

// Each word with a capital letter first and small ones behind it; a word begins where no letter,
// digit or apostrophe stands before.
char32_t title_letter(char32_t letter, char32_t before) {
  const bool is_ascii_word = (before >= U'0' && before <= U'9') ||
                             (before >= U'A' && before <= U'Z') ||
                             (before >= U'a' && before <= U'z') || before == U'\'';
  // Beyond ASCII, letters lie below the punctuation.
  const bool inside = is_ascii_word || (before >= 0xC0 && before < 0x2000);
  return inside ? lower_letter(letter) : upper_letter(letter);
}
Value titlecase(const RoutineCall& call) {
  return Value::of_string(with_letters(call.string(0), title_letter));
}

// The code point of the first character; its byte where there are no characters.
Value asc(const RoutineCall& call) {
  const REALstring source = call.string(0);
  const std::string_view first = call.machine.characters().part(source, 0, 1);
  if (first.empty()) return Value::of_integer(0);
  const auto converted = encodings::convert(first, encoding(source), host_encoding::utf32);
  if (!converted || converted->size() < 4) {
    return Value::of_integer(static_cast<unsigned char>(first.front()));
  }
  char32_t code = 0;
  std::copy_n(converted->data(), sizeof code, reinterpret_cast<char*>(&code));
  return Value::of_integer(static_cast<std::int32_t>(code));
}

Value chr(const RoutineCall& call) {
  const std::int32_t code = call.integer(0);
  if (code < 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
    raise("OutOfBoundsException", "there is no character " + std::to_string(code));
  }
  std::string bytes;
  utf8::append(static_cast<std::uint32_t>(code), std::back_inserter(bytes));
  return Value::of_string(make_string(bytes));
}

// The fields of the first text, which the second one separates; without separators there is one, in
// the empty text none.
std::vector<std::string_view> fields(const SameEncoding& same) {
  const std::string_view text = same.a();
  std::vector<std::string_view> found;
  if (text.empty()) return found;
  if (same.b().empty()) return {text};
  const CaselessPattern separator(same);
  std::size_t at = 0;
  for (std::size_t next = separator.find(text); next != std::string_view::npos;
       next = separator.find(text, at)) {
    found.push_back(text.substr(at, next - at));
    at = next + separator.size();
  }
  found.push_back(text.substr(at));
  return found;
}

Value nth_field(const RoutineCall& call) {
  const SameEncoding same(call.string(0), call.string(1));
  const auto found = fields(same);
  const std::int32_t wanted = call.integer(2);
  if (wanted < 1 || static_cast<std::size_t>(wanted) > found.size())
    return text({}, call.string(0));
  return in_encoding_of(call.string(0), found[static_cast<std::size_t>(wanted) - 1],
                        same.encoding());
}

Value count_fields(const RoutineCall& call) {
  const SameEncoding same(call.string(0), call.string(1));
  return number(fields(same).size());
}

// Without a separator, every character is an element.
Value split(const RoutineCall& call) {
  ArrayRef array = make_array(Type::of(TypeKind::string), -1);
  const REALstring source = call.string(0);
  if (call.has(1) && bytes(call.string(1)).empty()) {
    const std::size_t length = call.machine.characters().length(source);
    for (std::size_t i = 0; i < length; ++i) {
      append(array.get(), text(call.machine.characters().part(source, i, 1), source));
    }
    return Value::of_array(std::move(array));
  }
  const StringRef blank = make_string(" ");
  const SameEncoding same(source, call.has(1) ? call.string(1) : blank.get());
  for (const std::string_view field : fields(same)) {
    append(array.get(), in_encoding_of(source, field, same.encoding()));
  }
  return Value::of_array(std::move(array));
}

Value join_elements(const RoutineCall& call) {
  const REALarray array = call.array(0);
  const std::int32_t last = upper_bound(array);
  const StringRef blank = make_string(" ");
  const REALstring separator = call.has(1) ? call.string(1) : blank.get();
  std::uint64_t size = std::uint64_t{bytes(separator).size()} * not_negative(last);
  for (std::int32_t i = 0; i <= last; ++i) {
    size += bytes(string_at(array, i)).size();
    check_length(size);
  }
  std::string result;
  std::uint32_t code = last >= 0 ? encoding(string_at(array, 0)) : host_encoding::utf8;
  bool uniform = true;
  for (std::int32_t i = 0; i <= last; ++i) {
    const REALstring element = string_at(array, i);
    uniform = uniform && (bytes(element).empty() || encoding(element) == code);
    if (i > 0) result += bytes(separator);
    result += bytes(element);
    check_length(result.size());
  }
  if (uniform && (bytes(separator).empty() || encoding(separator) == code)) {
    return Value::of_string(make_string(result, code));
  }
  // In several encodings: one by one.
  StringRef joined;
  for (std::int32_t i = 0; i <= last; ++i) {
    if (i > 0) joined = join(joined.get(), separator);
    joined = join(joined.get(), string_at(array, i));
  }
  return Value::of_string(std::move(joined));
}

Value str_comp(const RoutineCall& call) {
  const std::int32_t mode = call.integer(2);
  if (mode != 0 && mode != 1) {
    raise("UnsupportedFormatException", "StrComp knows the modes 0 and 1");
  }
  return Value::of_integer(
      mode == 0 ? compare_bytes(call.string(0), call.string(1))
                : std::clamp(compare_with_case_ties(call.string(0), call.string(1)), -1, 1));
}

Value define_encoding(const RoutineCall& call) {
  return Value::of_string(make_string(bytes(call.string(0)), encoding_code(call.object(1))));
}

// What the target lacks, and what is ill-formed, becomes a question mark.
Value convert_encoding(const RoutineCall& call) {
  const REALstring source = call.string(0);
  const std::uint32_t target = encoding_code(call.object(1));
  if (bytes(source).empty()) return Value::of_string(make_string({}, target));
  if (StringRef converted = convert(source, target)) return Value::of_string(std::move(converted));
  std::string result;
  const std::string readable = utf8(source);
  for (auto at = readable.begin(); at != readable.end();) {
    const auto start = at;
    utf8::next(at, readable.end());
    const std::string_view character(&*start, static_cast<std::size_t>(at - start));
    auto part = encodings::convert(character, host_encoding::utf8, target);
    if (!part) part = encodings::convert("?", host_encoding::utf8, target);
    if (part) result += *part;
  }
  return Value::of_string(make_string(result, target));
}

Value encoding_object(Machine& machine, std::uint32_t code) {
  return Value::of_object(ObjectRef::share(machine.text_encoding(code)));
}

// Nil for text as stored.
Value encoding_of(const RoutineCall& call) {
  const std::uint32_t code = encoding(call.string(0));
  if (code == host_encoding::as_stored) return Value::of_object(nullptr);
  return encoding_object(call.machine, code);
}

template <std::uint32_t code>
Value encoding_constant(const RoutineCall& call) {
  return encoding_object(call.machine, code);
}

Value end_of_line(const RoutineCall&) {
  return Value::of_string(make_string("\n"));
}

}  // namespace

std::span<const RoutineRow> string_routines() {
  using enum RoutineForm;
  // clang-format off
  static constexpr auto rows = std::to_array<RoutineRow>({
      {"Len",             both,     "String",                   "Integer",      len},
      {"Left",            both,     "String, Integer",          "String",       left},
      {"Right",           both,     "String, Integer",          "String",       right},
      {"Mid",             both,     "String, Integer, [Integer]", "String",     mid},
      {"InStr",           both,     "String, String",           "Integer",      instr},
      {"InStr",           function, "Integer, String, String",  "Integer",      instr_from},
      {"InStr",           method,   "String, Integer, String",  "Integer",      instr_method_from},
      {"Replace",         both,     "String, String, String",   "String",       replace},
      {"ReplaceAll",      both,     "String, String, String",   "String",       replace_all},
      {"Trim",            both,     "String",                   "String",       trim},
      {"LTrim",           both,     "String",                   "String",       ltrim},
      {"RTrim",           both,     "String",                   "String",       rtrim},
      {"Uppercase",       both,     "String",                   "String",       uppercase},
      {"Lowercase",       both,     "String",                   "String",       lowercase},
      {"Titlecase",       both,     "String",                   "String",       titlecase},
      {"Asc",             both,     "String",                   "Integer",      asc},
      {"Chr",             function, "Integer",                  "String",       chr},
      {"NthField",        both,     "String, String, Integer",  "String",       nth_field},
      {"CountFields",     both,     "String, String",           "Integer",      count_fields},
      {"Split",           both,     "String, [String]",         "String()",     split},
      {"Join",            both,     "String(), [String]",       "String",       join_elements},
      {"StrComp",         both,     "String, String, Integer",  "Integer",      str_comp},
      {"DefineEncoding",  both,     "String, TextEncoding",     "String",       define_encoding},
      {"ConvertEncoding", both,     "String, TextEncoding",     "String",       convert_encoding},
      {"Encoding",        both,     "String",                   "TextEncoding", encoding_of},
      {"EndOfLine",       function, "",                         "String",       end_of_line},
      {"Encodings.UTF8",  function, "", "TextEncoding", encoding_constant<host_encoding::utf8>},
      {"Encodings.UTF16", function, "", "TextEncoding", encoding_constant<host_encoding::utf16>},
      {"Encodings.UTF32", function, "", "TextEncoding", encoding_constant<host_encoding::utf32>},
      {"Encodings.ASCII", function, "", "TextEncoding", encoding_constant<host_encoding::ascii>},
      {"Encodings.WindowsLatin1", function, "", "TextEncoding",
       encoding_constant<encodings::windows_latin1>},
      {"Encodings.ISOLatin1", function, "", "TextEncoding",
       encoding_constant<encodings::iso_latin1>},
  });
  // clang-format on
  return rows;
}

}  // namespace standin::language
