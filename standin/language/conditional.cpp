// Conditional compilation. Conditions are made of the constants below, numbers, comparisons, `Not`,
// `And`, `Or` and parentheses; a truth value is 1 or 0.
#include "language/conditional.h"

#include <optional>
#include <string>

#include "runtime/types.h"

namespace standin::language {
namespace {

constexpr int deepest_condition = 100;

class ConditionReader {
 public:
  ConditionReader(std::span<const Token> tokens, Position end, const Conditions& conditions)
      : tokens_(tokens), end_(end), conditions_(conditions) {}

  bool read() {
    if (at_keyword("then", tokens_.size() - 1)) tokens_ = tokens_.first(tokens_.size() - 1);
    const double value = disjunction();
    if (next_ != tokens_.size()) fail("the condition ends before " + describe(tokens_[next_]));
    return value != 0;
  }

 private:
  [[noreturn]] void fail(const std::string& message) const {
    throw SourceError(next_ < tokens_.size() ? tokens_[next_].position : end_, message);
  }
  bool at_keyword(std::string_view word, std::size_t index) const {
    return index < tokens_.size() && tokens_[index].is_keyword(word);
  }
  bool take_keyword(std::string_view word) {
    if (!at_keyword(word, next_)) return false;
    ++next_;
    return true;
  }
  bool take_symbol(std::string_view symbol) {
    if (next_ >= tokens_.size() || !tokens_[next_].is_symbol(symbol)) return false;
    ++next_;
    return true;
  }

  double disjunction() {
    double value = conjunction();
    while (take_keyword("or")) {
      const double other = conjunction();
      value = value != 0 || other != 0 ? 1 : 0;
    }
    return value;
  }
  double conjunction() {
    double value = comparison();
    while (take_keyword("and")) {
      const double other = comparison();
      value = value != 0 && other != 0 ? 1 : 0;
    }
    return value;
  }
  double comparison() {
    const double left = operand();
    if (take_symbol("=")) return left == operand() ? 1 : 0;
    if (take_symbol("<>")) return left != operand() ? 1 : 0;
    if (take_symbol("<=")) return left <= operand() ? 1 : 0;
    if (take_symbol(">=")) return left >= operand() ? 1 : 0;
    if (take_symbol("<")) return left < operand() ? 1 : 0;
    if (take_symbol(">")) return left > operand() ? 1 : 0;
    return left;
  }
  double operand() {
    if (++depth_ > deepest_condition) fail("the condition is nested too deeply");
    const double value = nested_operand();
    --depth_;
    return value;
  }
  double nested_operand() {
    if (take_keyword("not")) return operand() == 0 ? 1 : 0;
    if (take_symbol("(")) {
      const double value = disjunction();
      if (!take_symbol(")")) fail("\")\" is missing");
      return value;
    }
    if (next_ >= tokens_.size()) fail("a condition is expected here");
    const Token& token = tokens_[next_];
    const std::optional<double> value = constant(token);
    if (!value) fail(describe(token) + " is no constant that #If knows");
    ++next_;
    return *value;
  }

  std::optional<double> constant(const Token& token) const {
    if (token.kind == TokenKind::integer) {
      const auto value = static_cast<double>(token.integer);
      return token.needs_minus ? -value : value;
    }
    if (token.kind == TokenKind::real) return token.real;
    if (token.is_keyword("true")) return 1;
    if (token.is_keyword("false")) return 0;
    if (token.kind != TokenKind::name) return std::nullopt;
    const std::string word = lower_name(token.text);
    if (word == "rbversion") return conditions_.host_version;
    if (word == "targetlinux" || word == "targetx86" || word == "targetlittleendian") return 1;
    if (word == (sizeof(void*) == 8 ? "target64bit" : "target32bit")) return 1;
    for (const char* unset : {"debugbuild", "targetwin32", "targetwindows", "targetmacos",
                              "targetcocoa", "targetcarbon", "targetmacho", "targethasgui",
                              "targetbigendian", "targetpowerpc", "target64bit", "target32bit"}) {
      if (word == unset) return 0;
    }
    return std::nullopt;
  }

  std::span<const Token> tokens_;
  Position end_;
  const Conditions& conditions_;
  std::size_t next_ = 0;
  int depth_ = 0;
};

}  // namespace

ConditionalCompilation::Level& ConditionalCompilation::innermost(Position position,
                                                                 const char* directive) {
  if (levels_.empty()) {
    throw SourceError(position, std::string(directive) + " without #If");
  }
  return levels_.back();
}

void ConditionalCompilation::directive(std::span<const Token> tokens, Position position) {
  const bool has_word = !tokens.empty() && (tokens.front().kind == TokenKind::name ||
                                            tokens.front().kind == TokenKind::keyword);
  if (!has_word) throw SourceError(position, "\"#\" needs a directive, such as #If");
  const std::string word = lower_name(tokens.front().text);
  const std::span<const Token> rest = tokens.subspan(1);
  const auto condition = [&] { return ConditionReader(rest, position, conditions_).read(); };
  const auto require_end = [&](std::span<const Token> none) {
    if (!none.empty()) throw SourceError(none.front().position, "nothing may follow here");
  };

  if (word == "if") {
    const bool outer = active();
    const bool holds = outer && condition();
    levels_.push_back({position, outer, holds, holds, false});
  } else if (word == "elseif") {
    Level& level = innermost(position, "#ElseIf");
    if (level.has_else) throw SourceError(position, "#ElseIf after #Else");
    level.active = level.outer_active && !level.decided && condition();
    level.decided = level.decided || level.active;
  } else if (word == "else") {
    require_end(rest);
    Level& level = innermost(position, "#Else");
    if (level.has_else) throw SourceError(position, "a second #Else");
    level.has_else = true;
    level.active = level.outer_active && !level.decided;
  } else if (word == "endif" || (word == "end" && !rest.empty() && rest.front().is_keyword("if"))) {
    require_end(word == "endif" ? rest : rest.subspan(1));
    innermost(position, "#EndIf");
    levels_.pop_back();
  } else if (word != "pragma" && active()) {
    throw SourceError(position, "#" + tokens.front().text +
                                    " is not part of the language here; #If, #ElseIf, #Else, "
                                    "#EndIf and #Pragma are");
  }
}

void ConditionalCompilation::finish() const {
  if (!levels_.empty()) throw SourceError(levels_.back().position, "#If without #EndIf");
}

}  // namespace standin::language
