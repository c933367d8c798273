#include "keys/text_view.h"

#include <algorithm>
#include <cstring>

#include "host/services.h"
#include "host/start.h"
#include "host/unicode_strings.h"

namespace {

// A string object of hosts before 2012: two words, of which the second points to the byte before
// the text.
struct OldStringObject {
  void* reserved;
  const char* data;
};

}  // namespace

rbData::rbData(REALstring string) {
  const auto stored_length = static_cast<std::uint32_t>(std::max(LenB(string), 0));
  data_.fill(string, host_encoding::as_stored, stored_length);
}

void rbText::convert() {
  read_inline();
}

void rbText::convert_otherwise(std::uint32_t encoding) {
  REALstring string = string_;
  if (encoding == host_encoding::as_stored) {
    string = rebuild_from_bytes();
    if (string == nullptr) return;
  }
  host_gives_no_string_data ? convert_by_string_service(string) : read_data_of(string);
}

REALstring rbText::rebuild_from_bytes() {
  const rbData raw(string_);
  made_ =
      LockedString::adopt(REALBuildUnicodeString(raw.data(), raw.length(), host_encoding::utf8));
  return made_.get();
}

void rbText::convert_by_string_service(REALstring string) {
  made_ = LockedString::adopt(REALConvertString(string, host_encoding::utf8));
  if (made_.get() == nullptr) return;
  const char* data = reinterpret_cast<const OldStringObject*>(made_.get())->data;
  if (data == nullptr) return;
  utf8_ = data + 1;
  length_ = LenB.is_available() ? std::max(LenB(made_.get()), 0) : to_length(std::strlen(utf8_));
}
