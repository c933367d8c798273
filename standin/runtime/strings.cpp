// A string is one block: the header, a length byte, the text, four zero bytes.
#include "runtime/strings.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <optional>

#include "runtime/blocks.h"
#include "runtime/encodings.h"
#include "runtime/ledger.h"

namespace standin {
namespace {

// The length byte sits right before the text, and the text on a multiple of four, so that it can be
// read as UTF-16 or UTF-32 units.
constexpr std::size_t text_offset = (sizeof(REALstringStruct) + 1 + 3) / 4 * 4;
constexpr std::size_t terminator = 4;

}  // namespace

StringRef make_string(std::string_view bytes, std::uint32_t encoding) {
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    throw std::bad_alloc();
  }
  auto* string = static_cast<REALstring>(blocks::allocate(text_offset + bytes.size() + terminator));
  string->magic = magic::string;
  string->data = reinterpret_cast<char*>(string) + text_offset - 1;
  string->locks = 1;
  string->encoding = encoding;
  string->length = static_cast<std::uint32_t>(bytes.size());
  string->serial = blocks::next_serial();
  *string->data = static_cast<char>(std::min<std::size_t>(bytes.size(), 255));
  if (!bytes.empty()) std::memcpy(string->data + 1, bytes.data(), bytes.size());
  if (Ledger* ledger = Ledger::active_one()) ledger->created(string, HandleKind::string);
  return StringRef::adopt(string);
}

StringRef convert(REALstring string, std::uint32_t encoding) {
  if (string == nullptr) return {};
  const std::optional<std::string> converted =
      encodings::convert(bytes(string), string->encoding, encoding);
  return converted ? make_string(*converted, encoding) : StringRef();
}

void set_encoding(REALstring string, std::uint32_t encoding) {
  if (string != nullptr) string->encoding = encoding;
}

std::string utf8(REALstring string) {
  return encodings::to_utf8_lossy(bytes(string), encoding(string));
}

}  // namespace standin
