#include "statement_tokens.h"

#include <algorithm>
#include <array>

#include "dialect.h"

namespace merivane {
namespace {

constexpr auto kKeywords = std::to_array<std::string_view>(
    {"select", "from", "where", "order", "by", "and", "or", "not", "in", "like", "is", "null",
     "between", "as", "asc", "desc", "update", "set"});

bool IsReserved(std::string_view word) {
  return std::any_of(kKeywords.begin(), kKeywords.end(),
                     [&](std::string_view keyword) { return SameName(keyword, word); });
}

TokenKind MarkKind(char character) {
  switch (character) {
    case kNumberMark:
      return TokenKind::kNumber;
    case kTextMark:
      return TokenKind::kText;
    case kPrefixMark:
      return TokenKind::kPrefix;
    case kPatternMark:
      return TokenKind::kPattern;
    default:
      return TokenKind::kSymbol;
  }
}

std::string Described(TokenKind kind, std::string_view text) {
  switch (kind) {
    case TokenKind::kEnd:
      return "The statement ends too early";
    case TokenKind::kWord:
    case TokenKind::kBracketName:
    case TokenKind::kSymbol:
      return "'" + std::string(text) + "' is not expected there";
    case TokenKind::kNumber:
      return "A number is not expected there";
    default:
      return "A text is not expected there";
  }
}

}  // namespace

StatementTokens::StatementTokens(std::string_view shape, std::string_view sql)
    : rest_(shape), sql_(sql) {
  Next();
}

void StatementTokens::Next() {
  const std::size_t start = rest_.find_first_not_of(" \t\r\n");
  rest_.remove_prefix(std::min(start, rest_.size()));
  std::size_t size = 0;
  if (rest_.empty()) {
    kind_ = TokenKind::kEnd;
    text_ = {};
  } else if (IsNameStart(rest_.front())) {
    while (size < rest_.size() && IsNamePart(rest_[size])) ++size;
    kind_ = TokenKind::kWord;
    text_ = rest_.substr(0, size);
  } else if (rest_.front() == '[') {
    size = rest_.find(']') + 1;
    kind_ = TokenKind::kBracketName;
    text_ = rest_.substr(1, size - 2);
  } else {
    kind_ = MarkKind(rest_.front());
    ReadSymbol();
    size = text_.size();
  }
  rest_.remove_prefix(size);
}

void StatementTokens::ReadSymbol() {
  const std::string_view two = rest_.substr(0, 2);
  text_ = two == "<>" || two == "<=" || two == ">=" ? two : rest_.substr(0, 1);
}

bool StatementTokens::IsKeyword(std::string_view keyword) const {
  return kind_ == TokenKind::kWord && SameName(text_, keyword);
}

bool StatementTokens::TakeKeyword(std::string_view keyword) {
  if (!IsKeyword(keyword)) return false;
  Next();
  return true;
}

bool StatementTokens::TakeSymbol(std::string_view symbol) {
  if (!IsSymbol(symbol)) return false;
  Next();
  return true;
}

void StatementTokens::ExpectKeyword(std::string_view keyword) {
  if (!TakeKeyword(keyword)) Fail();
}

void StatementTokens::ExpectSymbol(std::string_view symbol) {
  if (!TakeSymbol(symbol)) Fail();
}

std::string StatementTokens::TakeName() {
  const bool word = kind_ == TokenKind::kWord && !IsReserved(text_);
  if (!word && (kind_ != TokenKind::kBracketName || text_.empty())) Fail();
  std::string name(text_);
  Next();
  return name;
}

void StatementTokens::ExpectEnd() {
  TakeSymbol(";");
  if (kind_ != TokenKind::kEnd) Fail();
}

void StatementTokens::Fail() const { throw StatementError(Described(kind_, text_), sql_); }

}  // namespace merivane
