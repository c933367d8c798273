// The syntax tree: what a program says, before anything in it has a meaning.
#ifndef ZRB_STANDIN_LANGUAGE_SYNTAX_H
#define ZRB_STANDIN_LANGUAGE_SYNTAX_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "language/source.h"

namespace standin::language {

// A type as it is written: a name, with "()" for an array.
struct TypeSyntax {
  Position position;
  std::string name;
  bool is_array = false;
};

struct ExpressionSyntax;
using ExpressionPointer = std::unique_ptr<ExpressionSyntax>;

enum class UnaryOperator : std::uint8_t { minus, not_ };

// clang-format off
enum class BinaryOperator : std::uint8_t {
  add, subtract, multiply, divide, integer_divide, modulo, power,
  equal, unequal, less, greater, less_equal, greater_equal,
  and_, or_, xor_, is,
};
// clang-format on

// As a program writes it.
const char* symbol(BinaryOperator operation);
const char* symbol(UnaryOperator operation);

struct NilSyntax {};
struct ColorSyntax {
  std::uint32_t rgb;
};
// Int64 where an Integer would not do.
struct LiteralSyntax {
  std::variant<NilSyntax, bool, std::int32_t, std::int64_t, double, std::string, ColorSyntax> value;
};
struct NameSyntax {
  std::string name;
};
struct MemberSyntax {
  ExpressionPointer object;
  std::string name;
};
// A call, an array element or a cast: the callee tells.
struct CallSyntax {
  ExpressionPointer callee;
  std::vector<ExpressionPointer> arguments;
};
struct UnarySyntax {
  UnaryOperator operation;
  ExpressionPointer operand;
};
struct BinarySyntax {
  BinaryOperator operation;
  ExpressionPointer left, right;
};
struct IsASyntax {
  ExpressionPointer operand;
  TypeSyntax type;
};
struct NewSyntax {
  TypeSyntax type;
  std::vector<ExpressionPointer> arguments;
};

struct ExpressionSyntax {
  Position position;
  int depth;  // how many nodes lie on the longest way down
  std::variant<LiteralSyntax, NameSyntax, MemberSyntax, CallSyntax, UnarySyntax, BinarySyntax,
               IsASyntax, NewSyntax>
      form;
};

struct StatementSyntax;
using BlockSyntax = std::vector<StatementSyntax>;

struct DimSyntax {
  struct Variable {
    Position position;
    std::string name;
    bool is_array = false;
    ExpressionPointer upper_bound;  // null: an empty array
  };
  // Names that share a type and a first value: `a, b As Integer = 1`.
  struct Group {
    std::vector<Variable> variables;
    TypeSyntax type;
    bool is_new = false;
    std::vector<ExpressionPointer> arguments;  // of the constructor
    ExpressionPointer initial;                 // or null
  };
  bool is_static = false;
  std::vector<Group> groups;
};
struct ConstSyntax {
  std::string name;
  ExpressionPointer value;
};
struct ReDimSyntax {
  struct Array {
    ExpressionPointer array;
    ExpressionPointer upper_bound;
  };
  std::vector<Array> arrays;
};
struct AssignSyntax {
  ExpressionPointer target;
  ExpressionPointer value;
};
struct CallStatementSyntax {
  ExpressionPointer call;
  bool drops_result = false;  // written with `Call`
};
struct IfSyntax {
  struct Branch {
    ExpressionPointer condition;
    BlockSyntax body;
  };
  std::vector<Branch> branches;
  BlockSyntax otherwise;
};
struct ForSyntax {
  std::string variable;
  Position variable_position;
  std::optional<TypeSyntax> declared_type;
  ExpressionPointer first, last;
  ExpressionPointer step;  // or null
  bool downwards = false;
  BlockSyntax body;
};
struct ForEachSyntax {
  std::string variable;
  Position variable_position;
  std::optional<TypeSyntax> declared_type;
  ExpressionPointer array;
  BlockSyntax body;
};
struct WhileSyntax {
  ExpressionPointer condition;
  BlockSyntax body;
};
struct DoSyntax {
  struct Condition {
    bool until;
    ExpressionPointer expression;
  };
  std::optional<Condition> before, after;
  BlockSyntax body;
};
struct SelectSyntax {
  // `low`, `low To high`, or `Is operation low`.
  struct Test {
    BinaryOperator operation = BinaryOperator::equal;
    ExpressionPointer low;
    ExpressionPointer high;  // or null
  };
  struct Case {
    std::vector<Test> tests;
    BlockSyntax body;
  };
  ExpressionPointer selector;
  std::vector<Case> cases;
  BlockSyntax otherwise;
};
enum class LeaveTarget : std::uint8_t { innermost, for_, while_, do_, sub, function };
struct ExitSyntax {
  LeaveTarget target;
};
struct ContinueSyntax {
  LeaveTarget target;
};
struct TrySyntax {
  struct Catch {
    Position position;
    std::string variable;            // or ""
    std::optional<TypeSyntax> type;  // RuntimeException if not given
    BlockSyntax body;
  };
  BlockSyntax body;
  std::vector<Catch> catches;
  BlockSyntax finally;
};
struct RaiseSyntax {
  ExpressionPointer exception;
};
struct ReturnSyntax {
  ExpressionPointer value;  // or null
};

struct StatementSyntax {
  Position position;
  std::variant<DimSyntax, ConstSyntax, ReDimSyntax, AssignSyntax, CallStatementSyntax, IfSyntax,
               ForSyntax, ForEachSyntax, WhileSyntax, DoSyntax, SelectSyntax, ExitSyntax,
               ContinueSyntax, TrySyntax, RaiseSyntax, ReturnSyntax>
      form;
};

struct ParameterSyntax {
  Position position;
  std::string name;
  TypeSyntax type;
  bool by_ref = false;
  bool assigns = false;
  ExpressionPointer default_value;  // of an optional one
};

struct FunctionSyntax {
  Position position;
  std::string name;
  std::vector<ParameterSyntax> parameters;
  std::optional<TypeSyntax> result;  // of a Function
  BlockSyntax body;
};

struct ProgramSyntax {
  BlockSyntax body;
  std::vector<FunctionSyntax> functions;
};

}  // namespace standin::language

#endif
