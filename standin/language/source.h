// Program text, positions in it, and what is reported about them.
#ifndef ZRB_STANDIN_LANGUAGE_SOURCE_H
#define ZRB_STANDIN_LANGUAGE_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace standin::language {

// Line and column (in bytes), both from 1. Line 0: no place in particular.
struct Position {
  std::uint32_t line = 0;
  std::uint32_t column = 0;
};

// A program's text with its name, cut into lines. Line ends may be of any platform.
class SourceFile {
 public:
  SourceFile(std::string name, std::string text);

  const std::string& name() const { return name_; }
  std::size_t line_count() const { return lines_.size(); }
  // From 1, without its end; "" beyond the last.
  std::string_view line(std::size_t number) const;

 private:
  std::string name_;
  std::string text_;
  std::vector<std::string_view> lines_;
};

// Something that is wrong with a program.
struct Diagnostic {
  Position position;
  std::string message;
};

// More are not reported at once.
inline constexpr std::size_t most_diagnostics = 20;

// "file:line: message", then the source line and a mark under the column. Bytes that a terminal
// could not show are replaced, long lines are cut.
std::string format(const SourceFile& source, const Diagnostic& diagnostic);

// What the reader of a program throws at the first thing that it cannot read, and the checker for
// the statement at hand.
class SourceError : public std::runtime_error {
 public:
  SourceError(Position position, const std::string& message)
      : std::runtime_error(message), position_(position) {}
  Position position() const { return position_; }
  Diagnostic diagnostic() const { return {position_, what()}; }

 private:
  Position position_;
};

}  // namespace standin::language

#endif
