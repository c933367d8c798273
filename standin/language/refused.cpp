// What the real language has and this one leaves out, refused by name.
#include "language/refused.h"

#include <array>
#include <string_view>

#include "runtime/types.h"

namespace standin::language {
namespace {

struct Refused {
  std::string_view word;
  std::string_view reason;
};

constexpr std::string_view classes = "programs use classes, they do not define any";
constexpr std::string_view access = "a Sub or Function is written without access modifiers";
constexpr std::string_view events = "console programs handle no events";
constexpr std::string_view self = "a program's body and its routines belong to no object";

constexpr auto refused_words = std::to_array<Refused>({
    {"addhandler", events},
    {"addressof", "routines cannot be passed as values"},
    {"class", classes},
    {"declare", "programs call no system libraries"},
    {"delegate", "routines cannot be passed as values"},
    {"enum", "use Const for names of numbers"},
    {"event", events},
    {"exception", "use Try and Catch"},
    {"extends", "routines are called by their names"},
    {"global", access},
    {"goto", "use loops, Exit and Continue"},
    {"implements", classes},
    {"inherits", classes},
    {"inline68k", "there is no machine code"},
    {"interface", classes},
    {"lib", "programs call no system libraries"},
    {"me", self},
    {"module", "Sub and Function stand beside the program's body"},
    {"namespace", "Sub and Function stand beside the program's body"},
    {"paramarray", "pass an array"},
    {"private", access},
    {"property", classes},
    {"protected", access},
    {"public", access},
    {"raiseevent", events},
    {"removehandler", events},
    {"self", self},
    {"shared", access},
    {"soft", "programs call no system libraries"},
    {"structure", "use a class or arrays"},
    {"super", self},
    {"using", "names need no module"},
    {"weakaddressof", "routines cannot be passed as values"},
    {"with", "write the object's name before each member"},
});

// As they are usually written.
constexpr auto refused_routines = std::to_array<Refused>({
    {"App", "a program's body belongs to no object"},
    {"Beep", "a console program makes no sound"},
    {"CType", "assign to a variable of the type instead"},
    {"GetTypeInfo", "IsA tells whether an object is of a class"},
    {"IIf", "use If"},
    {"MsgBox", "Print shows a text"},
    {"VarPtr", "there are no pointers"},
});

std::string not_part(std::string_view word, std::string_view reason) {
  return "\"" + std::string(word) + "\" is not part of the language here: " + std::string(reason);
}

}  // namespace

std::string refusal(const Token& word) {
  if (word.kind != TokenKind::keyword) return {};
  for (const Refused& row : refused_words) {
    if (row.word != word.text) continue;
    return not_part(spelled(row.word), row.reason);
  }
  return {};
}

std::string statement_refusal(const Token& word, const Token& following) {
  if (word.is_keyword("end") && following.ends_statement()) {
    return not_part("End", "Quit ends the program; the end of a block names it, as in \"End If\"");
  }
  if (word.kind != TokenKind::name) return {};
  const std::string text = lower_name(word.text);
  if (text == "on" && following.kind == TokenKind::name && same_name(following.text, "Error")) {
    return not_part("On Error", "use Try and Catch");
  }
  for (const std::string_view block : {"If", "Select", "Try", "Sub", "Function"}) {
    if (following.ends_statement() && text == "end" + lower_name(block)) {
      return not_part("End" + std::string(block), "write \"End " + std::string(block) + "\"");
    }
  }
  return {};
}

std::string routine_refusal(std::string_view name) {
  for (const Refused& row : refused_routines) {
    if (same_name(row.word, name)) return not_part(row.word, row.reason);
  }
  return {};
}

}  // namespace standin::language
