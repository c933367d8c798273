// The parser of statements, blocks and definitions.
#include "language/statement_parser.h"

#include <algorithm>
#include <array>

#include "language/refused.h"
#include "runtime/types.h"

namespace standin::language {
namespace {

constexpr int deepest_blocks = 100;

// What ends the block that a statement begins with this keyword.
std::string closing(const std::string& opening) {
  if (opening == "for") return "Next";
  if (opening == "while") return "Wend";
  if (opening == "do") return "Loop";
  return "End " + spelled(opening);
}

// What begins the block that a word ends or divides.
struct Closing {
  std::string_view word, opening;
};
constexpr auto closings = std::to_array<Closing>({{"next", "for"},
                                                  {"wend", "while"},
                                                  {"loop", "do"},
                                                  {"else", "if"},
                                                  {"elseif", "if"},
                                                  {"case", "select"},
                                                  {"catch", "try"},
                                                  {"finally", "try"}});

}  // namespace

bool StatementParser::at_statement_end() const {
  return peek().ends_statement() || (one_line_ && at_keyword("else"));
}

void StatementParser::end_of_statement() {
  if (one_line_) {
    if (!at_statement_end()) fail_expecting("the end of the statement");
    return;
  }
  if (!peek().ends_statement()) fail_expecting("the end of the line");
  take();
}

void StatementParser::end_with(std::string_view keyword, const Token& opening) {
  if (!at_keyword("end") || !peek(1).is_keyword(keyword)) {
    if (at_keyword("end") && peek(1).ends_statement()) fail_at_stray_keyword(peek());
    fail(opening.position,
         "\"" + spelled(opening.text) + "\" has no \"End " + spelled(keyword) + "\"");
  }
  take();
  take();
}

BlockSyntax StatementParser::block(const Token& opening,
                                   std::initializer_list<std::string_view> terminators) {
  if (++block_depth_ > deepest_blocks) {
    fail(opening.position,
         "blocks are nested too deeply (more than " + std::to_string(deepest_blocks) + " levels)");
  }
  open_blocks_.push_back(&opening);
  BlockSyntax statements;
  const auto terminates = [&](std::string_view word) { return at_keyword(word); };
  while (std::none_of(terminators.begin(), terminators.end(), terminates)) {
    if (peek().kind == TokenKind::end_of_file) {
      fail(opening.position, "\"" + spelled(opening.text) +
                                 "\" is not closed before the program ends: \"" +
                                 closing(opening.text) + "\" is missing");
    }
    statements.push_back(statement());
  }
  open_blocks_.pop_back();
  --block_depth_;
  return statements;
}

StatementSyntax StatementParser::statement() {
  StatementSyntax statement = simple_statement();
  end_of_statement();
  return statement;
}

StatementSyntax StatementParser::simple_statement() {
  const Token& token = peek();
  const Position position = token.position;
  if (token.kind == TokenKind::name) {
    const std::string reason = statement_refusal(token, peek(1));
    if (!reason.empty()) fail(position, reason);
    std::size_t last_arguments = 0;
    ExpressionPointer target = chain(last_arguments);
    if (take_symbol("=")) {
      return {position, AssignSyntax{std::move(target), expression()}};
    }
    if (!at_statement_end()) {
      // Arguments without parentheses; what looked like enclosed arguments may be the start of the
      // first one, as in `Print (a) + b`.
      if (last_arguments != 0) {
        target = ExpressionPointer(std::move(std::get<CallSyntax>(target->form).callee));
        go_back_to(last_arguments);
      }
      target = call(std::move(target), expressions());
    }
    return {position, CallStatementSyntax{std::move(target), false}};
  }
  if (token.kind != TokenKind::keyword) fail_expecting("a statement");

  const std::string& word = token.text;
  if (word == "dim" || word == "static") return {position, dim()};
  if (word == "const") return {position, constant()};
  if (word == "redim") return {position, redim()};
  if (word == "if") return {position, if_()};
  if (word == "for") return for_();
  if (word == "while") return {position, while_()};
  if (word == "do") return {position, do_()};
  if (word == "select") return {position, select()};
  if (word == "try") return {position, try_()};
  if (word == "exit") {
    take();
    return {position, ExitSyntax{leave_target(true)}};
  }
  if (word == "continue") {
    take();
    return {position, ContinueSyntax{leave_target(false)}};
  }
  if (word == "raise") {
    take();
    return {position, RaiseSyntax{expression()}};
  }
  if (word == "return") {
    take();
    return {position, ReturnSyntax{at_statement_end() ? nullptr : expression()}};
  }
  if (word == "call") {
    take();
    std::size_t last_arguments = 0;
    return {position, CallStatementSyntax{chain(last_arguments), true}};
  }
  fail_at_stray_keyword(token);
}

void StatementParser::fail_at_stray_keyword(const Token& token) const {
  const std::string reason = refusal(token);
  if (!reason.empty()) fail(token.position, reason);
  if (token.text == "sub" || token.text == "function") {
    fail(token.position, "a Sub or Function can be defined only outside of blocks and routines");
  }
  if (token.text == "end") {
    const std::string alone = statement_refusal(token, peek(1));
    if (!alone.empty()) fail(token.position, alone);
    const Token& word = peek(1);
    if (word.kind != TokenKind::keyword) {
      fail(token.position, "\"End\" needs the word of the block that it closes");
    }
    fail_at_stray_end(token, "\"End " + spelled(word.text) + "\"", word.text);
  }
  for (const Closing& closing : closings) {
    if (token.text == closing.word) {
      fail_at_stray_end(token, "\"" + spelled(token.text) + "\"", closing.opening);
    }
  }
  fail_expecting("a statement");
}

void StatementParser::fail_at_stray_end(const Token& token, const std::string& written,
                                        std::string_view opening) const {
  const std::string alone = written + " without the statement that it belongs to";
  if (one_line_ || open_blocks_.empty()) fail(token.position, alone);
  const Token& open = *open_blocks_.back();
  const std::string open_block =
      "\"" + spelled(open.text) + "\" of line " + std::to_string(open.position.line);
  const std::string end = "\"" + closing(open.text) + "\"";
  const bool closes_another =
      std::any_of(open_blocks_.begin(), open_blocks_.end(),
                  [&](const Token* block) { return block->text == opening; });
  fail(token.position, closes_another
                           ? open_block + " needs " + end + " before this " + written
                           : alone + "; open is " + open_block + ", which " + end + " closes");
}

DimSyntax StatementParser::dim() {
  DimSyntax form;
  form.is_static = take().text == "static";
  do {
    form.groups.push_back(dim_group());
  } while (take_symbol(","));
  return form;
}

DimSyntax::Group StatementParser::dim_group() {
  DimSyntax::Group form;
  do {
    DimSyntax::Variable variable;
    variable.position = peek().position;
    variable.name = require_name("a variable");
    if (take_symbol("(")) {
      variable.is_array = true;
      if (!at_symbol(")")) variable.upper_bound = expression();
      if (at_symbol(",")) {
        fail(peek().position,
             "arrays of more than one dimension are not part of the language here");
      }
      require_symbol(")");
    }
    form.variables.push_back(std::move(variable));
  } while (take_symbol(","));
  require_keyword("as", "As");
  form.is_new = take_keyword("new");
  form.type = type();
  if (form.is_new && take_symbol("(")) form.arguments = enclosed_arguments();
  if (!form.is_new && take_symbol("=")) form.initial = expression();
  return form;
}

ConstSyntax StatementParser::constant() {
  take();
  ConstSyntax form;
  form.name = require_name("a constant");
  if (take_keyword("as")) type(false);  // the value tells its type
  require_symbol("=");
  form.value = expression();
  return form;
}

ReDimSyntax StatementParser::redim() {
  take();
  ReDimSyntax form;
  do {
    ReDimSyntax::Array array;
    const Position position = peek().position;
    array.array = make(position, NameSyntax{require_name("an array")}, 1);
    require_symbol("(");
    array.upper_bound = expression();
    if (at_symbol(",")) {
      fail(peek().position, "arrays of more than one dimension are not part of the language here");
    }
    require_symbol(")");
    form.arrays.push_back(std::move(array));
  } while (take_symbol(","));
  return form;
}

IfSyntax StatementParser::if_() {
  const Token& opening = take();
  IfSyntax form;
  IfSyntax::Branch first;
  first.condition = expression();
  require_keyword("then", "Then");
  if (!peek().ends_statement()) {
    form.branches.push_back(std::move(first));
    one_line_if(form);
    return form;
  }
  if (one_line_) fail_expecting("a statement");
  end_of_statement();
  first.body = block(opening, {"elseif", "else", "end"});
  form.branches.push_back(std::move(first));
  while (take_keyword("elseif")) {
    IfSyntax::Branch branch;
    branch.condition = expression();
    require_keyword("then", "Then");
    end_of_statement();
    branch.body = block(opening, {"elseif", "else", "end"});
    form.branches.push_back(std::move(branch));
  }
  if (take_keyword("else")) {
    if (at_keyword("if")) {
      fail(peek().position, "\"Else If\" is not part of the language here: write \"ElseIf\"");
    }
    end_of_statement();
    form.otherwise = block(opening, {"end"});
  }
  end_with("if", opening);
  return form;
}

void StatementParser::one_line_if(IfSyntax& form) {
  if (++block_depth_ > deepest_blocks) fail(peek().position, "If is nested too deeply");
  const bool outer = std::exchange(one_line_, true);
  const auto branch = [&] {
    const Token& token = peek();
    for (const std::string_view refused : {"for", "while", "do", "select", "try", "dim", "const"}) {
      if (token.is_keyword(refused)) {
        fail(token.position, "\"" + spelled(token.text) + "\" cannot stand in an If of one line");
      }
    }
    BlockSyntax body;
    body.push_back(simple_statement());
    return body;
  };
  form.branches.back().body = branch();
  if (take_keyword("else")) form.otherwise = branch();
  one_line_ = outer;
  --block_depth_;
}

void StatementParser::next(const std::string& variable) {
  take();
  if (peek().ends_statement()) return;
  const Position position = peek().position;
  const std::string name = require_name("a variable");
  if (!same_name(name, variable)) {
    fail(position,
         "this \"Next\" belongs to the loop over \"" + variable + "\", not \"" + name + "\"");
  }
}

StatementSyntax StatementParser::for_() {
  const Token& opening = take();
  if (take_keyword("each")) return {opening.position, for_each(opening)};
  return {opening.position, counting_for(opening)};
}

ForSyntax StatementParser::counting_for(const Token& opening) {
  ForSyntax form;
  form.variable_position = peek().position;
  form.variable = require_name("a variable");
  if (take_keyword("as")) form.declared_type = type(false);
  require_symbol("=");
  form.first = expression();
  form.downwards = take_keyword("downto");
  if (!form.downwards && !take_keyword("to")) fail_expecting("\"To\" or \"DownTo\"");
  form.last = expression();
  if (take_keyword("step")) form.step = expression();
  end_of_statement();
  form.body = block(opening, {"next"});
  next(form.variable);
  return form;
}

ForEachSyntax StatementParser::for_each(const Token& opening) {
  ForEachSyntax form;
  form.variable_position = peek().position;
  form.variable = require_name("a variable");
  if (take_keyword("as")) form.declared_type = type(false);
  require_keyword("in", "In");
  form.array = expression();
  end_of_statement();
  form.body = block(opening, {"next"});
  next(form.variable);
  return form;
}

WhileSyntax StatementParser::while_() {
  const Token& opening = take();
  WhileSyntax form;
  form.condition = expression();
  end_of_statement();
  form.body = block(opening, {"wend"});
  take();
  return form;
}

std::optional<DoSyntax::Condition> StatementParser::do_condition() {
  if (take_keyword("until")) return DoSyntax::Condition{true, expression()};
  if (take_keyword("while")) return DoSyntax::Condition{false, expression()};
  return std::nullopt;
}

DoSyntax StatementParser::do_() {
  const Token& opening = take();
  DoSyntax form;
  form.before = do_condition();
  end_of_statement();
  form.body = block(opening, {"loop"});
  take();
  form.after = do_condition();
  return form;
}

SelectSyntax::Test StatementParser::case_test() {
  SelectSyntax::Test test;
  if (take_keyword("is")) {
    static constexpr std::pair<std::string_view, BinaryOperator> operators[] = {
        {"=", BinaryOperator::equal},       {"<>", BinaryOperator::unequal},
        {"<", BinaryOperator::less},        {">", BinaryOperator::greater},
        {"<=", BinaryOperator::less_equal}, {">=", BinaryOperator::greater_equal}};
    const auto* row =
        std::find_if(std::begin(operators), std::end(operators),
                     [&](const auto& candidate) { return at_symbol(candidate.first); });
    if (row == std::end(operators)) fail_expecting("a comparison such as \">=\"");
    take();
    test.operation = row->second;
    test.low = expression();
    return test;
  }
  test.low = expression();
  if (take_keyword("to")) test.high = expression();
  return test;
}

SelectSyntax StatementParser::select() {
  const Token& opening = take();
  require_keyword("case", "Case");
  SelectSyntax form;
  form.selector = expression();
  end_of_statement();
  while (at_keyword("case") && !peek(1).is_keyword("else")) {
    take();
    SelectSyntax::Case branch;
    do {
      branch.tests.push_back(case_test());
    } while (take_symbol(","));
    end_of_statement();
    branch.body = block(opening, {"case", "else", "end"});
    form.cases.push_back(std::move(branch));
  }
  if (at_keyword("case") || at_keyword("else")) {
    take_keyword("case");
    take_keyword("else");
    end_of_statement();
    form.otherwise = block(opening, {"case", "else", "end"});
    if (!at_keyword("end")) fail_expecting("\"End Select\" after the Else of a Select Case");
  }
  if (!at_keyword("end") && peek().kind != TokenKind::end_of_file) {
    fail_expecting("\"Case\" or \"End Select\"");
  }
  end_with("select", opening);
  return form;
}

TrySyntax StatementParser::try_() {
  const Token& opening = take();
  TrySyntax form;
  end_of_statement();
  form.body = block(opening, {"catch", "finally", "end"});
  while (at_keyword("catch")) {
    TrySyntax::Catch handler;
    handler.position = take().position;
    if (!peek().ends_statement()) {
      handler.variable = require_name("a variable");
      if (take_keyword("as")) handler.type = type(false);
    }
    end_of_statement();
    handler.body = block(opening, {"catch", "finally", "end"});
    form.catches.push_back(std::move(handler));
  }
  if (take_keyword("finally")) {
    end_of_statement();
    form.finally = block(opening, {"catch", "end"});
    if (at_keyword("catch")) fail(peek().position, "\"Catch\" cannot follow \"Finally\"");
  } else if (form.catches.empty()) {
    fail(opening.position, "\"Try\" needs a \"Catch\" or a \"Finally\"");
  }
  end_with("try", opening);
  return form;
}

LeaveTarget StatementParser::leave_target(bool routines_allowed) {
  if (take_keyword("for")) return LeaveTarget::for_;
  if (take_keyword("while")) return LeaveTarget::while_;
  if (take_keyword("do")) return LeaveTarget::do_;
  if (routines_allowed && take_keyword("sub")) return LeaveTarget::sub;
  if (routines_allowed && take_keyword("function")) return LeaveTarget::function;
  if (!at_statement_end()) {
    fail_expecting(routines_allowed ? "\"For\", \"While\", \"Do\", \"Sub\", \"Function\" or nothing"
                                    : "\"For\", \"While\", \"Do\" or nothing");
  }
  return LeaveTarget::innermost;
}

}  // namespace standin::language
