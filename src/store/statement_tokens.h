// The characters and words of a statement, and the marks that stand for its literals in a shape.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/run_time_error.h"
#include "table_schema.h"

namespace merivane::store {

constexpr char kNumberMark = '\x01';
constexpr char kTextMark = '\x02';
constexpr char kPrefixMark = '\x03';
constexpr char kPatternMark = '\x04';  // behind Like: any text but a prefix

enum class CharacterKind : std::uint8_t {
  kWrong,
  kBlank,
  kSymbol,
  kWord,
  kDigit,
  kQuote,
  kBracket
};

constexpr std::array<CharacterKind, 256> MakeKinds() {
  std::array<CharacterKind, 256> kinds{};
  const auto set = [&](std::string_view characters, CharacterKind kind) {
    for (const char character : characters) kinds[static_cast<unsigned char>(character)] = kind;
  };
  set(" \t\r\n", CharacterKind::kBlank);
  set("*,()=<>+-/&?;.", CharacterKind::kSymbol);
  set("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_", CharacterKind::kWord);
  set("0123456789", CharacterKind::kDigit);
  set("'\"", CharacterKind::kQuote);
  set("[", CharacterKind::kBracket);
  for (std::size_t byte = 0x80; byte < kinds.size(); ++byte) kinds[byte] = CharacterKind::kWord;
  return kinds;
}
inline constexpr std::array<CharacterKind, 256> kKinds = MakeKinds();

inline CharacterKind KindOf(char character) {
  return kKinds[static_cast<unsigned char>(character)];
}
inline bool IsDigit(char character) { return KindOf(character) == CharacterKind::kDigit; }
inline bool IsNamePart(char character) {
  const CharacterKind kind = KindOf(character);
  return kind == CharacterKind::kWord || kind == CharacterKind::kDigit;
}

enum class TokenKind : std::uint8_t {
  kWord,
  kBracketName,
  kNumber,
  kText,
  kPrefix,
  kPattern,
  kSymbol,
  kEnd
};

struct Token {
  TokenKind kind;
  std::string_view text;  // of a name without its brackets

  bool Is(std::string_view keyword) const {
    return kind == TokenKind::kWord && IsSameName(text, keyword);
  }
  bool IsSymbol(std::string_view symbol) const {
    return kind == TokenKind::kSymbol && text == symbol;
  }
  bool IsLiteral() const { return kind >= TokenKind::kNumber && kind <= TokenKind::kPattern; }
};

// Whether it is a word that a statement may hold beside names.
bool IsKeyword(const Token& token);

// The tokens of a shape, with one of kEnd behind them. They point into it.
std::vector<Token> TokensOf(std::string_view shape);

// Why the token can't stand where it does.
std::string Described(const Token& token);

// What is wrong, and the text.
RunTimeError StatementError(const std::string& what, std::string_view sql);

}  // namespace merivane::store
