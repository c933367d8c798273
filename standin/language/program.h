// A checked program.
#ifndef ZRB_STANDIN_LANGUAGE_PROGRAM_H
#define ZRB_STANDIN_LANGUAGE_PROGRAM_H

#include <cstddef>
#include <deque>

#include "language/code.h"

namespace standin::language {

struct Program {
  Function body;                   // slot 0 holds `args`; its result is the exit status
  std::deque<Function> functions;  // do not move
  std::size_t static_count = 0;
};

}  // namespace standin::language

#endif
