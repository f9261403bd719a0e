// The words of a statement's shape, one ahead.
#pragma once

#include <string>
#include <string_view>

namespace merivane {

enum class TokenKind { kWord, kBracketName, kNumber, kText, kPrefix, kPattern, kSymbol, kEnd };

class StatementTokens {
 public:
  // Both must live as long as the tokens do.
  StatementTokens(std::string_view shape, std::string_view sql);

  TokenKind Kind() const { return kind_; }
  std::string_view Text() const { return text_; }  // of a name without its brackets
  void Next();

  bool IsKeyword(std::string_view keyword) const;
  bool IsSymbol(std::string_view symbol) const {
    return kind_ == TokenKind::kSymbol && text_ == symbol;
  }
  bool TakeKeyword(std::string_view keyword);
  bool TakeSymbol(std::string_view symbol);
  void ExpectKeyword(std::string_view keyword);
  void ExpectSymbol(std::string_view symbol);
  std::string TakeName();  // a word that is no keyword, or a name in brackets
  void ExpectEnd();        // one ';' may stand before it

  // Throws kStatementError that names this token.
  [[noreturn]] void Fail() const;

 private:
  void ReadSymbol();

  std::string_view rest_;
  std::string_view sql_;
  TokenKind kind_ = TokenKind::kEnd;
  std::string_view text_;
};

}  // namespace merivane
