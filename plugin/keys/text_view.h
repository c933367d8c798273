// A host string read as UTF-8, for as long as one hash or comparison takes.
#ifndef ZRB_PLUGIN_KEYS_TEXT_VIEW_H
#define ZRB_PLUGIN_KEYS_TEXT_VIEW_H

#include <cstdint>

#include "host/binary_interface.h"
#include "host/locked_handle.h"

/// A string-data record that is disposed of with the object.
class StringDataHolder {
 public:
  StringDataHolder() = default;
  StringDataHolder(const StringDataHolder&) = delete;
  StringDataHolder& operator=(const StringDataHolder&) = delete;
  ~StringDataHolder() noexcept(false);

  /// Asks the host for the string's bytes; false when it gives none. Call it once at most.
  /// `expected_length`: byte count that the record announces to the service.
  bool fill(REALstring string, std::uint32_t encoding, std::uint32_t expected_length = 0);

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

/// The text of a host string. A nil string, and one that the host cannot convert, reads as empty.
/// Bytes without an encoding are taken as UTF-8. The host is asked when the text is first read, and
/// what the view makes or locks is released with it.
class rbText {
 public:
  /// How the string stays alive meanwhile.
  enum class Held { by_view, by_caller };

  /// `held`: whether the view takes a lock of its own, or the caller has one for the view's life.
  explicit rbText(REALstring string, Held held = Held::by_view);

  /// Makes an empty view, one of nil, that of a string which the caller holds.
  void view(REALstring held_string) {
    string_ = held_string;
    length_ = -1;
  }

  /// The text as UTF-8, NUL-terminated, valid as long as the view; converted at most once.
  const char* GetUTF8();
  /// Length of that text in bytes, up to its end, whatever zero bytes it contains.
  std::int32_t LengthUTF8();

 private:
  void convert();
  void convert_by_data_service(REALstring string);
  void convert_by_string_service(REALstring string);

  REALstring string_;
  LockedString lock_;       // on that string
  LockedString rebuilt_;    // the string that raw bytes are made into
  LockedString converted_;  // what a host before 2012 gives for it
  StringDataHolder data_;
  const char* utf8_;
  std::int32_t length_ = -1;  // not known yet
};

#endif
