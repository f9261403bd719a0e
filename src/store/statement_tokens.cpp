#include "statement_tokens.h"

#include <algorithm>
#include <array>

namespace merivane::store {

namespace {

// The words that a statement may hold beside names.
constexpr auto kKeywords = std::to_array<std::string_view>(
    {"select", "from", "where", "order", "by", "and", "or", "not", "in", "like", "is", "null",
     "between", "as", "asc", "desc", "update", "set"});

TokenKind KindOfMark(char character) {
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

Token FirstToken(std::string_view rest) {
  const char first = rest.front();
  if (KindOf(first) == CharacterKind::kWord) {
    const auto* const end = std::find_if_not(rest.begin(), rest.end(), IsNamePart);
    return {TokenKind::kWord, {rest.begin(), end}};
  }
  if (first == '[') return {TokenKind::kBracketName, rest.substr(1, rest.find(']') - 1)};
  const std::string_view two = rest.substr(0, 2);
  const bool joined = two == "<>" || two == "<=" || two == ">=";
  return {KindOfMark(first), joined ? two : rest.substr(0, 1)};
}

}  // namespace

bool IsKeyword(const Token& token) {
  return std::any_of(kKeywords.begin(), kKeywords.end(),
                     [&](std::string_view keyword) { return token.Is(keyword); });
}

std::vector<Token> TokensOf(std::string_view shape) {
  std::vector<Token> tokens;
  for (;;) {
    while (!shape.empty() && KindOf(shape.front()) == CharacterKind::kBlank) shape.remove_prefix(1);
    if (shape.empty()) break;
    tokens.push_back(FirstToken(shape));
    const Token& token = tokens.back();
    shape.remove_prefix(token.text.size() + (token.kind == TokenKind::kBracketName ? 2 : 0));
  }
  tokens.push_back({TokenKind::kEnd, {}});
  return tokens;
}

std::string Described(const Token& token) {
  switch (token.kind) {
    case TokenKind::kEnd:
      return "The statement ends too early";
    case TokenKind::kWord:
    case TokenKind::kBracketName:
    case TokenKind::kSymbol:
      return "'" + std::string(token.text) + "' is not expected there";
    case TokenKind::kNumber:
      return "A number is not expected there";
    default:
      return "A text is not expected there";
  }
}

RunTimeError StatementError(const std::string& what, std::string_view sql) {
  constexpr std::size_t kShown = 300;
  std::string text(sql.substr(0, kShown));
  if (sql.size() > kShown) text += "...";
  return {kStatementError, "Syntax error. " + what + ": " + text};
}

}  // namespace merivane::store
