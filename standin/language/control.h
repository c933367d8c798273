// The code of statements that direct the flow.
#ifndef ZRB_STANDIN_LANGUAGE_CONTROL_H
#define ZRB_STANDIN_LANGUAGE_CONTROL_H

#include <memory>
#include <utility>
#include <vector>

#include "language/code.h"
#include "runtime/classes.h"

namespace standin::language {

using StatementCode = std::unique_ptr<Statement>;

// Loops have numbers of their own, by which Exit and Continue name them.

struct Branch {
  Code condition;  // Boolean
  Position position;
  Block body;
};
StatementCode make_if(std::vector<Branch> branches, Block otherwise, Position position);

// The variable and all the numbers are of one type: Integer, Int64, Single or Double.
StatementCode make_for(int loop, Code variable, Code first, Code last, Code step, bool downwards,
                       Block body, Position position);
// The variable is of the array's element type.
StatementCode make_for_each(int loop, Code variable, Code array, Block body, Position position);

struct LoopCondition {
  Code expression;  // Boolean; null for none
  bool until = false;
};
// `While` and `Do`.
StatementCode make_loop(int loop, LoopCondition before, Block body, LoopCondition after,
                        Position position);

struct CatchCode {
  const ClassInfo* class_info;
  int slot;  // of the variable; -1 for none
  Block body;
};
StatementCode make_try(Block body, std::vector<CatchCode> catches, Block finally, bool has_finally,
                       Position position);
StatementCode make_raise(Code exception, Position position);

// Exit and Continue.
StatementCode make_leave(Flow flow, int loop, Position position);
// The value may be null.
StatementCode make_return(Code value, Position position);
StatementCode make_call_statement(Code call, Position position);
// A block in a block: for variables that live no longer than one statement.
StatementCode make_block_statement(Block block, Position position);

}  // namespace standin::language

#endif
