// Where the running program is, for who cannot ask the machine: the handler of a signal.
#ifndef ZRB_STANDIN_LANGUAGE_RUNNING_POSITION_H
#define ZRB_STANDIN_LANGUAGE_RUNNING_POSITION_H

#include "language/code.h"

namespace standin::language {

// Of the statement at work, in the innermost activation that has come to one; line 0 while no
// program runs. May be called from a signal handler. Programs run one at a time.
Position running_position() noexcept;

// For activations alone, which nest: makes a frame the innermost one, and its caller again.
void enter_frame(Frame& frame) noexcept;
void leave_frame(const Frame& frame) noexcept;

}  // namespace standin::language

#endif
