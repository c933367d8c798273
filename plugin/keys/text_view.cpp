#include "keys/text_view.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "host/services.h"
#include "host/start.h"
#include "host/unicode_strings.h"

namespace {

constexpr char empty_text[4] = {};  // shared by all empty views, which so allocate nothing
constexpr double first_version_with_data_service = 2012;

// A string object of hosts before 2012: two words, of which the second points to the byte before
// the text.
struct OldStringObject {
  void* reserved;
  const char* data;
};

std::int32_t to_length(std::size_t bytes) {
  constexpr std::size_t limit = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(bytes, limit));
}

}  // namespace

StringDataHolder::~StringDataHolder() noexcept(false) {
  if (filled_) release_in_destructor([this] { REALDisposeStringData(&record_); });
}

bool StringDataHolder::fill(REALstring string, std::uint32_t encoding,
                            std::uint32_t expected_length) {
  record_.length = expected_length;
  filled_ = REALGetStringData(string, encoding, &record_);
  if (!filled_ || record_.data == nullptr) record_.length = 0;
  return filled_;
}

rbData::rbData(REALstring string) {
  const auto stored_length = static_cast<std::uint32_t>(std::max(LenB(string), 0));
  data_.fill(string, host_encoding::as_stored, stored_length);
}

rbText::rbText(REALstring string, Held held) : string_(string), utf8_(empty_text) {
  if (held == Held::by_view) lock_ = LockedString(string);
}

const char* rbText::GetUTF8() {
  if (length_ < 0) convert();
  return utf8_;
}

std::int32_t rbText::LengthUTF8() {
  if (length_ < 0) convert();
  return length_;
}

void rbText::convert() {
  length_ = 0;
  REALstring string = string_;
  if (string == nullptr) return;
  if (REALGetStringEncoding(string) == host_encoding::as_stored) {
    const rbData raw(string);
    rebuilt_ =
        LockedString::adopt(REALBuildUnicodeString(raw.data(), raw.length(), host_encoding::utf8));
    string = rebuilt_.get();
    if (string == nullptr) return;
  }
  // A host that told no version is served like a new one: the data service has fallbacks.
  const bool old_host = host_version() != 0 && host_version() < first_version_with_data_service;
  if (old_host) {
    convert_by_string_service(string);
  } else {
    convert_by_data_service(string);
  }
}

void rbText::convert_by_data_service(REALstring string) {
  if (!data_.fill(string, host_encoding::utf8) || data_.data() == nullptr) return;
  utf8_ = data_.data();
  length_ = to_length(data_.length());
}

void rbText::convert_by_string_service(REALstring string) {
  converted_ = LockedString::adopt(REALConvertString(string, host_encoding::utf8));
  if (converted_.get() == nullptr) return;
  const char* data = reinterpret_cast<const OldStringObject*>(converted_.get())->data;
  if (data == nullptr) return;
  utf8_ = data + 1;
  length_ =
      LenB.is_available() ? std::max(LenB(converted_.get()), 0) : to_length(std::strlen(utf8_));
}
