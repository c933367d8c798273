// What the language does with strings: joining and comparing.
#include "language/text.h"

#include <algorithm>
#include <limits>
#include <string>

#include "runtime/encodings.h"
#include "runtime/exceptions.h"
#include "runtime/strings.h"

namespace standin::language {
namespace {

bool is_wide(std::uint32_t code) {
  return code == host_encoding::utf16 || code == host_encoding::utf32;
}

char lower_ascii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string joined_bytes(std::string_view a, std::string_view b) {
  check_length(a.size() + b.size());
  std::string joined;
  joined.reserve(a.size() + b.size());
  joined += a;
  joined += b;
  return joined;
}

}  // namespace

void check_length(std::uint64_t size) {
  constexpr auto longest = static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max());
  if (size > longest) {
    raise("OutOfMemoryException", "a string has at most " + std::to_string(longest) + " bytes");
  }
}

SameEncoding::SameEncoding(REALstring a, REALstring b)
    : a_(StringRef::share(a)), b_(StringRef::share(b)), encoding_(standin::encoding(a)) {
  const std::uint32_t other = standin::encoding(b);
  if (encoding_ == other && !is_wide(encoding_)) return;
  if (!encodings::is_known(encoding_) || !encodings::is_known(other)) {
    encoding_ = host_encoding::as_stored;
    return;
  }
  // ASCII is UTF-8 already.
  if (encoding_ == host_encoding::utf8 && other == host_encoding::ascii) return;
  StringRef converted_a = convert(a, host_encoding::utf8);
  StringRef converted_b = convert(b, host_encoding::utf8);
  encoding_ = host_encoding::utf8;
  if ((converted_a || bytes(a).empty()) && (converted_b || bytes(b).empty())) {
    a_ = std::move(converted_a);
    b_ = std::move(converted_b);
  } else {
    encoding_ = host_encoding::as_stored;  // ill-formed text is compared as it is
  }
}

std::string_view SameEncoding::a() const {
  return bytes(a_.get());
}
std::string_view SameEncoding::b() const {
  return bytes(b_.get());
}

StringRef join(REALstring a, REALstring b) {
  if (bytes(b).empty()) return StringRef::share(a);
  if (bytes(a).empty()) return StringRef::share(b);
  if (encoding(a) == encoding(b)) {
    return make_string(joined_bytes(bytes(a), bytes(b)), encoding(a));
  }
  const SameEncoding same(a, b);
  return make_string(joined_bytes(same.a(), same.b()), same.encoding());
}

int compare(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t at = 0; at < common; ++at) {
    if (a[at] == b[at]) continue;
    const auto left = static_cast<unsigned char>(lower_ascii(a[at]));
    const auto right = static_cast<unsigned char>(lower_ascii(b[at]));
    if (left != right) return left < right ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

int compare(REALstring a, REALstring b) {
  if (encoding(a) == encoding(b) && !is_wide(encoding(a))) return compare(bytes(a), bytes(b));
  const SameEncoding same(a, b);
  return compare(same.a(), same.b());
}

bool equal(REALstring a, REALstring b) {
  if (a == b) return true;
  if (encoding(a) == encoding(b) && bytes(a).size() != bytes(b).size()) return false;
  return compare(a, b) == 0;
}

int compare_with_case_ties(REALstring a, REALstring b) {
  const SameEncoding same(a, b);
  const int order = compare(same.a(), same.b());
  return order != 0 ? order : same.a().compare(same.b());
}

int compare_bytes(REALstring a, REALstring b) {
  const int order = bytes(a).compare(bytes(b));
  return order == 0 ? 0 : order < 0 ? -1 : 1;
}

}  // namespace standin::language
