#include "condition_parser.h"

#include <array>

#include "dialect.h"

namespace merivane {
namespace {

constexpr int kGreatestDepth = 100;

constexpr auto kComparisons = std::to_array<std::string_view>({"=", "<>", "<=", ">=", "<", ">"});

}  // namespace

int ConditionParser::FindColumn(std::string_view name) const {
  const int column = statement_.table->Find(name);
  if (column < 0) {
    throw RunTimeError(kUnknownName, "No column '" + std::string(name) + "' of the table " +
                                         statement_.table->Name() +
                                         " for the statement: " + std::string(sql_.substr(0, 300)));
  }
  return column;
}

std::string ConditionParser::ColumnSql(int column) const {
  const Column& declared = statement_.table->Columns()[static_cast<std::size_t>(column)];
  const bool plain = declared.kind != ColumnKind::kText || declared.ignoresCase;
  return plain ? declared.quotedName : declared.quotedName + " collate nocase";
}

void ConditionParser::Enter() {
  if (++depth_ > kGreatestDepth) throw StatementError("The condition is nested too deeply", sql_);
}

std::string ConditionParser::Condition() {
  Enter();
  const bool outer = alwaysHolds_;
  const auto equal = statement_.equalColumns;
  const auto prefix = statement_.prefixColumns;
  std::string sql = And();
  while (tokens_.TakeKeyword("or")) {
    alwaysHolds_ = false;
    statement_.equalColumns = equal;
    statement_.prefixColumns = prefix;
    sql += " or ";
    sql += And();
  }
  alwaysHolds_ = outer;
  --depth_;
  return sql;
}

std::string ConditionParser::And() {
  std::string sql = Not();
  while (tokens_.TakeKeyword("and")) {
    sql += " and ";
    sql += Not();
  }
  return sql;
}

std::string ConditionParser::Not() {
  if (!tokens_.TakeKeyword("not")) return Predicate();
  Enter();
  const bool outer = alwaysHolds_;
  alwaysHolds_ = false;
  std::string sql = "not " + Not();
  alwaysHolds_ = outer;
  --depth_;
  return sql;
}

std::string ConditionParser::Predicate() {
  const std::string left = Sum();
  const int leftColumn = lastColumn_;
  if (tokens_.TakeKeyword("is")) {
    const bool negated = tokens_.TakeKeyword("not");
    tokens_.ExpectKeyword("null");
    return left + (negated ? " is not null" : " is null");
  }
  const bool outer = alwaysHolds_;
  const bool negated = tokens_.TakeKeyword("not");
  if (negated) alwaysHolds_ = false;
  std::string sql;
  if (tokens_.TakeKeyword("like")) {
    sql = Like(left, leftColumn);
  } else if (tokens_.TakeKeyword("in")) {
    sql = In(left);
  } else if (tokens_.TakeKeyword("between")) {
    sql = Between(left);
  } else if (negated) {
    tokens_.Fail();
  } else {
    sql = Comparison(left, leftColumn);
  }
  alwaysHolds_ = outer;
  return negated ? "not (" + sql + ")" : sql;
}

std::string ConditionParser::Comparison(const std::string& left, int leftColumn) {
  for (const std::string_view comparison : kComparisons) {
    if (!tokens_.TakeSymbol(comparison)) continue;
    const std::string right = Sum();
    if (comparison == "=" && alwaysHolds_ && leftColumn >= 0 && lastIsLiteral_) {
      statement_.equalColumns.push_back(leftColumn);
    }
    return left + " " + std::string(comparison) + " " + right;
  }
  return left;
}

// A text column is searched by range, so that an index serves it; another by its value's text.
std::string ConditionParser::Like(const std::string& left, int leftColumn) {
  const TokenKind kind = tokens_.Kind();
  if (kind != TokenKind::kPrefix && kind != TokenKind::kPattern) tokens_.Fail();
  tokens_.Next();
  const std::string first = "?" + std::to_string(++statement_.parameters);
  if (kind == TokenKind::kPattern) return left + " like " + first;
  const bool text =
      leftColumn >= 0 &&
      statement_.table->Columns()[static_cast<std::size_t>(leftColumn)].kind == ColumnKind::kText;
  if (text && alwaysHolds_) statement_.prefixColumns.push_back(leftColumn);
  const std::string value = text ? left : "cast(" + left + " as text) collate nocase";
  const std::string end = "?" + std::to_string(++statement_.parameters);
  return "(" + value + " >= " + first + " and " + value + " < " + end + ")";
}

std::string ConditionParser::In(const std::string& left) {
  tokens_.ExpectSymbol("(");
  std::string list = Sum();
  while (tokens_.TakeSymbol(",")) list.append(", ").append(Sum());
  tokens_.ExpectSymbol(")");
  return left + " in (" + list + ")";
}

std::string ConditionParser::Between(const std::string& left) {
  std::string sql = left + " between " + Sum();
  tokens_.ExpectKeyword("and");
  return sql + " and " + Sum();
}

std::string ConditionParser::Sum() {
  std::string sql = Product();
  while (tokens_.IsSymbol("+") || tokens_.IsSymbol("-") || tokens_.IsSymbol("&")) {
    const std::string symbol(tokens_.Text());
    tokens_.Next();
    sql += symbol == "&" ? " || " : " " + symbol + " ";
    sql += Product();
    lastColumn_ = -1;
    lastIsLiteral_ = false;
  }
  return sql;
}

std::string ConditionParser::Product() {
  std::string sql = Unary();
  while (tokens_.IsSymbol("*") || tokens_.IsSymbol("/")) {
    const std::string symbol(tokens_.Text());
    tokens_.Next();
    sql += " " + symbol + " ";
    sql += Unary();
    lastColumn_ = -1;
    lastIsLiteral_ = false;
  }
  return sql;
}

std::string ConditionParser::Unary() {
  const bool minus = tokens_.IsSymbol("-");
  if (!minus && !tokens_.IsSymbol("+")) return Primary();
  Enter();
  tokens_.Next();
  std::string sql = (minus ? "- " : "+ ") + Unary();
  lastColumn_ = -1;
  --depth_;
  return sql;
}

std::string ConditionParser::Primary() {
  lastColumn_ = -1;
  lastIsLiteral_ = false;
  if (tokens_.TakeSymbol("(")) {
    std::string sql = "(" + Condition() + ")";
    tokens_.ExpectSymbol(")");
    lastColumn_ = -1;
    lastIsLiteral_ = false;
    return sql;
  }
  if (tokens_.TakeKeyword("null")) return "null";
  if (tokens_.IsSymbol("?")) return Parameter();
  if (tokens_.Kind() == TokenKind::kNumber || tokens_.Kind() == TokenKind::kText) {
    tokens_.Next();
    lastIsLiteral_ = true;
    return "?" + std::to_string(++statement_.parameters);
  }
  const int column = FindColumn(tokens_.TakeName());
  statement_.used[static_cast<std::size_t>(column)] = true;
  lastColumn_ = column;
  return ColumnSql(column);
}

std::string ConditionParser::Parameter() {
  if (!mayHaveParameter_ || statement_.hasParameter) tokens_.Fail();
  statement_.hasParameter = true;
  tokens_.Next();
  return "?1";
}

}  // namespace merivane
