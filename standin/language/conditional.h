// Conditional compilation: `#If condition`, `#ElseIf`, `#Else`, `#EndIf`.
#ifndef ZRB_STANDIN_LANGUAGE_CONDITIONAL_H
#define ZRB_STANDIN_LANGUAGE_CONDITIONAL_H

#include <span>
#include <vector>

#include "language/source.h"
#include "language/token.h"

namespace standin::language {

// What the conditions are asked about.
struct Conditions {
  double host_version = 2012.01;  // RBVersion
};

// Follows the directives of a program, line by line.
class ConditionalCompilation {
 public:
  explicit ConditionalCompilation(const Conditions& conditions) : conditions_(conditions) {}

  // A line that begins with "#", without it. Throws SourceError.
  void directive(std::span<const Token> tokens, Position position);
  // Whether the lines that follow are part of the program.
  bool active() const { return levels_.empty() || levels_.back().active; }
  // Throws SourceError if an `#If` is still open.
  void finish() const;

 private:
  struct Level {
    Position position;
    bool outer_active;
    bool active;
    bool decided;  // some branch was taken
    bool has_else;
  };
  Level& innermost(Position position, const char* directive);

  Conditions conditions_;
  std::vector<Level> levels_;
};

}  // namespace standin::language

#endif
