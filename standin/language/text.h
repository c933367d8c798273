// What the language does with strings: joining and comparing.
#ifndef ZRB_STANDIN_LANGUAGE_TEXT_H
#define ZRB_STANDIN_LANGUAGE_TEXT_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "runtime/handles.h"

namespace standin::language {

// Two strings in one encoding: as they are when their encodings agree, or when one of them has no
// known encoding (then bytes are bytes); otherwise, and when the characters of that encoding are no
// bytes, both as UTF-8.
class SameEncoding {
 public:
  SameEncoding(REALstring a, REALstring b);
  std::string_view a() const;
  std::string_view b() const;
  // The first one, converted if need be.
  REALstring first() const { return a_.get(); }
  std::uint32_t encoding() const { return encoding_; }

 private:
  StringRef a_, b_;
  std::uint32_t encoding_;
};

// Raises OutOfMemoryException for a size that Len could not tell.
void check_length(std::uint64_t size);

// An empty operand leaves the other as it is.
StringRef join(REALstring a, REALstring b);

// Negative, 0, positive; ASCII letters are the same in both cases, and sort as lower-case letters.
int compare(REALstring a, REALstring b);
int compare(std::string_view a, std::string_view b);
bool equal(REALstring a, REALstring b);
// The same, but case decides between texts that are equal otherwise.
int compare_with_case_ties(REALstring a, REALstring b);
int compare_bytes(REALstring a, REALstring b);

}  // namespace standin::language

#endif
