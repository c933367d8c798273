// The parser of statements, blocks and definitions.
#ifndef ZRB_STANDIN_LANGUAGE_STATEMENT_PARSER_H
#define ZRB_STANDIN_LANGUAGE_STATEMENT_PARSER_H

#include <initializer_list>
#include <string_view>

#include "language/expression_parser.h"
#include "language/syntax.h"

namespace standin::language {

class StatementParser : public ExpressionParser {
 public:
  using ExpressionParser::ExpressionParser;

  ProgramSyntax program();

 private:
  // Statements up to a line that begins with one of the words, which is left to the caller.
  // `opening` is the statement that the block belongs to, for the message when the end is missing.
  BlockSyntax block(const Token& opening, std::initializer_list<std::string_view> terminators);
  void end_of_statement();
  bool at_statement_end() const;
  void end_with(std::string_view keyword, const Token& opening);  // `End If` and the like

  StatementSyntax statement();
  StatementSyntax simple_statement();
  DimSyntax dim();
  DimSyntax::Group dim_group();
  ConstSyntax constant();
  ReDimSyntax redim();
  IfSyntax if_();
  void one_line_if(IfSyntax& form);
  StatementSyntax for_();
  ForSyntax counting_for(const Token& opening);
  ForEachSyntax for_each(const Token& opening);
  void next(const std::string& variable);
  WhileSyntax while_();
  DoSyntax do_();
  std::optional<DoSyntax::Condition> do_condition();
  SelectSyntax select();
  SelectSyntax::Test case_test();
  TrySyntax try_();
  LeaveTarget leave_target(bool routines_allowed);
  FunctionSyntax function();
  ParameterSyntax parameter();
  [[noreturn]] void fail_at_stray_keyword(const Token& token) const;
  // For a word that ends or divides a block, but not the one that it stands in.
  [[noreturn]] void fail_at_stray_end(const Token& token, const std::string& written,
                                      std::string_view opening) const;

  int block_depth_ = 0;
  std::vector<const Token*> open_blocks_;  // what they begin with, outermost first
  bool one_line_ = false;                  // inside a one-line If, where Else ends a statement
};

}  // namespace standin::language

#endif
