// A host string read as UTF-8, for as long as one hash or comparison takes.
#ifndef ZRB_PLUGIN_KEYS_TEXT_VIEW_H
#define ZRB_PLUGIN_KEYS_TEXT_VIEW_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "host/binary_interface.h"
#include "host/locked_handle.h"
#include "host/services.h"
#include "host/start.h"
#include "keys/hints.h"

/// A string-data record that is disposed of with the object.
class StringDataHolder {
 public:
  StringDataHolder() = default;
  StringDataHolder(const StringDataHolder&) = delete;
  StringDataHolder& operator=(const StringDataHolder&) = delete;
  /// See `release_in_destructor`.
  ~StringDataHolder() noexcept(false) {
    if (filled_) release_in_destructor([this] { REALDisposeStringData(&record_); });
  }

  /// Asks the host for the string's bytes; false when it gives none. Call it once at most.
  /// `expected_length`: byte count that the record announces to the service.
  bool fill(REALstring string, std::uint32_t encoding, std::uint32_t expected_length = 0) {
    record_.length = expected_length;
    filled_ = REALGetStringData(string, encoding, &record_);
    if (!filled_ || record_.data == nullptr) [[unlikely]]
      record_.length = 0;
    return filled_;
  }

  const char* data() const { return static_cast<const char*>(record_.data); }
  std::uint32_t length() const { return record_.length; }

 private:
  REALstringData record_{};
  bool filled_ = false;
};

/// The bytes of a string as they are stored, whatever they mean.
class rbData {
 public:
  explicit rbData(REALstring string);

  const char* data() const { return data_.data(); }
  std::uint32_t length() const { return data_.length(); }

 private:
  StringDataHolder data_;
};

/// The text of a host string, which the caller holds as long as the view. A nil string, and one
/// that the host cannot convert, reads as empty. Bytes without an encoding are taken as UTF-8. The
/// host is asked when the text is first read, and what the view makes is released with it.
class rbText {
 public:
  explicit rbText(REALstring held_string) : string_(held_string) {}

  /// Makes a view of nil, which nobody has read, that of another string.
  void view(REALstring held_string) { string_ = held_string; }

  /// Asks the host for the text, of a view that was not read yet. Inline for hashes and
  /// comparisons, where a call more counts; elsewhere a view reads by itself.
  ZRB_ALWAYS_INLINE void read_inline() {
    length_ = 0;
    if (string_ == nullptr) return;
    const std::uint32_t encoding = REALGetStringEncoding(string_);
    if (encoding == host_encoding::as_stored || host_gives_no_string_data) [[unlikely]]
      return convert_otherwise(encoding);
    read_data_of(string_);
  }

  /// The text as UTF-8, NUL-terminated, valid as long as the view; converted at most once.
  const char* GetUTF8() {
    read();
    return utf8_;
  }
  /// Length of that text in bytes, up to its end, whatever zero bytes it contains.
  std::int32_t LengthUTF8() {
    read();
    return length_;
  }

 private:
  void read() {
    if (length_ < 0) convert();
  }
  void convert();
  void convert_otherwise(std::uint32_t encoding);
  void read_data_of(REALstring string) {
    if (!data_.fill(string, host_encoding::utf8) || data_.data() == nullptr) [[unlikely]]
      return;
    utf8_ = data_.data();
    length_ = to_length(data_.length());
  }
  static std::int32_t to_length(std::size_t bytes) {
    constexpr std::size_t longest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(bytes, longest));
  }
  REALstring rebuild_from_bytes();
  void convert_by_string_service(REALstring string);

  static constexpr char empty_text[4] = {};  // shared by all empty views, which so allocate nothing

  REALstring string_;
  const char* utf8_ = empty_text;
  std::int32_t length_ = -1;  // not known yet
  LockedString made_;  // what raw bytes are made into, and what a host before 2012 gives for it
  StringDataHolder data_;
};

#endif
