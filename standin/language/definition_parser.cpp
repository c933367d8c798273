// The parser of Sub and Function, and of whole programs.
#include "language/lexer.h"
#include "language/parser.h"
#include "language/statement_parser.h"

namespace standin::language {

ProgramSyntax StatementParser::program() {
  ProgramSyntax program;
  while (peek().kind != TokenKind::end_of_file) {
    if (at_keyword("sub") || at_keyword("function")) {
      program.functions.push_back(function());
    } else {
      program.body.push_back(statement());
    }
  }
  return program;
}

ParameterSyntax StatementParser::parameter() {
  ParameterSyntax parameter;
  bool optional = false;
  while (true) {
    if (take_keyword("byref")) {
      parameter.by_ref = true;
    } else if (take_keyword("optional")) {
      optional = true;
    } else if (take_keyword("assigns")) {
      parameter.assigns = true;
    } else if (!take_keyword("byval")) {
      break;
    }
  }
  parameter.position = peek().position;
  parameter.name = require_name("a parameter");
  bool is_array = false;
  if (take_symbol("(")) {
    require_symbol(")");
    is_array = true;
  }
  require_keyword("as", "As");
  parameter.type = type(!is_array);
  parameter.type.is_array = parameter.type.is_array || is_array;
  if (take_symbol("=")) {
    if (!optional) {
      fail(parameter.position, "a parameter with a default value must be marked Optional");
    }
    parameter.default_value = expression();
  } else if (optional) {
    fail(parameter.position, "an Optional parameter needs a default value");
  }
  if (optional && (parameter.by_ref || parameter.assigns || parameter.type.is_array)) {
    fail(parameter.position, "an Optional parameter can be neither ByRef, Assigns nor an array");
  }
  return parameter;
}

FunctionSyntax StatementParser::function() {
  const Token& opening = take();
  const bool has_result = opening.text == "function";
  FunctionSyntax function;
  function.position = peek().position;
  function.name = require_name(has_result ? "a Function" : "a Sub");
  if (take_symbol("(") && !take_symbol(")")) {
    do {
      if (!function.parameters.empty() && function.parameters.back().assigns) {
        fail(peek().position, "the parameter marked Assigns must be the last one");
      }
      function.parameters.push_back(parameter());
      const std::size_t count = function.parameters.size();
      if (count > 1 && function.parameters[count - 2].default_value &&
          !function.parameters.back().default_value && !function.parameters.back().assigns) {
        fail(function.parameters.back().position,
             "a parameter after an Optional one must be Optional too");
      }
    } while (take_symbol(","));
    require_symbol(")");
  }
  if (has_result) {
    require_keyword("as", "As");
    function.result = type();
  } else if (at_keyword("as")) {
    fail(peek().position, "a Sub has no result: write Function");
  }
  end_of_statement();
  function.body = block(opening, {"end"});
  end_with(has_result ? "function" : "sub", opening);
  end_of_statement();
  return function;
}

ProgramSyntax parse_program(const std::vector<Token>& tokens) {
  return StatementParser(tokens).program();
}

ExpressionPointer parse_expression(std::string_view text) {
  std::vector<Token> tokens = tokenize_line(text, 0);
  tokens.emplace_back();
  ExpressionParser parser(tokens);
  ExpressionPointer expression = parser.expression();
  if (parser.peek().kind != TokenKind::end_of_file) parser.fail_expecting("nothing more");
  return expression;
}

}  // namespace standin::language
