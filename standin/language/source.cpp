// Program text, positions in it, and what is reported about them.
#include "language/source.h"

#include <utf8.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace standin::language {
namespace {

constexpr std::size_t longest_shown_line = 160;

// Where the character that begins here ends at the latest.
const char* character_end(const char* start, const char* end) {
  return start + std::min<std::ptrdiff_t>(end - start, 4);
}

bool is_control(std::uint32_t code) {
  return (code < 0x20 && code != '\t') || (code >= 0x7F && code < 0xA0);
}

// Control characters and ill-formed bytes would confuse a terminal; a text's own letters are kept.
std::string printable(std::string_view line) {
  std::string shown;
  const char* at = line.data();
  const char* const end = at + line.size();
  while (at != end) {
    const char* const start = at;
    std::uint32_t code = 0;
    const bool well_formed = utf8::find_invalid(start, character_end(start, end)) != start;
    if (well_formed) code = utf8::next(at, end);
    if (!well_formed) ++at;
    if (!well_formed || is_control(code)) {
      shown += '?';
    } else {
      shown.append(start, at);
    }
  }
  return shown;
}

bool is_continuation_byte(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

}  // namespace

SourceFile::SourceFile(std::string name, std::string text)
    : name_(std::move(name)), text_(std::move(text)) {
  std::string_view rest = text_;
  if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
    lines_.push_back(rest.substr(0, end));
    rest.remove_prefix(end);
    if (rest.starts_with("\r\n")) {
      rest.remove_prefix(2);
    } else if (!rest.empty()) {
      rest.remove_prefix(1);
    }
  }
}

std::string_view SourceFile::line(std::size_t number) const {
  return number >= 1 && number <= lines_.size() ? lines_[number - 1] : std::string_view();
}

std::string format(const SourceFile& source, const Diagnostic& diagnostic) {
  const Position position = diagnostic.position;
  std::string report = source.name();
  if (position.line == 0) return report + ": " + diagnostic.message + "\n";
  report += ":" + std::to_string(position.line) + ": " + diagnostic.message + "\n";

  std::string_view line = source.line(position.line);
  if (line.find_first_not_of(" \t") == std::string_view::npos) return report;
  std::size_t column = position.column == 0 ? 0 : position.column - 1;
  if (line.size() > longest_shown_line) {
    std::size_t start = column > longest_shown_line / 2 ? column - longest_shown_line / 2 : 0;
    while (start < line.size() && is_continuation_byte(line[start])) ++start;
    line = line.substr(std::min(start, line.size()), longest_shown_line);
    column -= std::min(start, column);
  }
  report += "    " + printable(line) + "\n";
  if (position.column == 0 || column > line.size()) return report;
  report += "    ";
  for (char c : printable(line.substr(0, column))) {
    if (!is_continuation_byte(c)) report += c == '\t' ? '\t' : ' ';
  }
  return report + "^\n";
}

}  // namespace standin::language
