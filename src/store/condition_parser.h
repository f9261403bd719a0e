// Reads the condition of a statement, and the single values that stand in it.
#pragma once

#include <string>
#include <string_view>

#include "statement_parser.h"
#include "statement_tokens.h"

namespace merivane {

// Fills `used`, `equalColumns`, `prefixColumns` and `parameters` of the statement as it goes.
class ConditionParser {
 public:
  ConditionParser(StatementTokens& tokens, ParsedStatement& statement, std::string_view sql,
                  bool mayHaveParameter)
      : tokens_(tokens), statement_(statement), sql_(sql), mayHaveParameter_(mayHaveParameter) {}

  std::string Condition();  // the SQL of what stands behind WHERE
  std::string Sum();        // of one value

  // The table's column; an unknown one is kUnknownName.
  int FindColumn(std::string_view name) const;
  // The column as it is compared and ordered: texts without case.
  std::string ColumnSql(int column) const;

 private:
  std::string And();
  std::string Not();
  std::string Predicate();
  std::string Comparison(const std::string& left, int leftColumn);
  std::string Like(const std::string& left, int leftColumn);
  std::string In(const std::string& left);
  std::string Between(const std::string& left);
  std::string Product();
  std::string Unary();
  std::string Primary();
  std::string Parameter();
  void Enter();

  StatementTokens& tokens_;
  ParsedStatement& statement_;
  std::string_view sql_;
  bool mayHaveParameter_;
  bool alwaysHolds_ = true;  // what is read now is one of terms that are all joined by AND
  int lastColumn_ = -1;      // the value just read is this column alone
  bool lastIsLiteral_ = false;
  int depth_ = 0;
};

}  // namespace merivane
