#include <charconv>

#include "runtime/code_page.h"
#include "statement.h"
#include "statement_tokens.h"

namespace merivane::store {

namespace {

// The least UTF-8 text above all that begin with `prefix`, in the order that ignores case: there,
// capital letters stand where the small ones do. Nothing is above an empty prefix but all texts.
std::string PrefixEnd(std::string prefix) {
  if (prefix.empty()) return "\xFF";
  const char last = prefix.back();
  if (last == '@') {
    prefix.back() = '[';
  } else {
    prefix.back() = static_cast<char>((last >= 'A' && last <= 'Z' ? last | 0x20 : last) + 1);
  }
  return prefix;
}

class Splitter {
 public:
  Splitter(std::string_view sql, SplitStatement& out) : sql_(sql), out_(out) {
    out_.shape.clear();
    out_.literals.clear();
  }

  void Run() {
    while (at_ < sql_.size()) {
      const CharacterKind kind = KindOf(sql_[at_]);
      if (kind == CharacterKind::kWord) {
        Word();
      } else if (kind == CharacterKind::kBlank) {
        ++at_;
      } else if (kind == CharacterKind::kDigit || StartsFraction()) {
        Number();
      } else if (kind == CharacterKind::kQuote) {
        Text(sql_[at_]);
      } else if (kind == CharacterKind::kBracket) {
        Bracket();
      } else if (kind == CharacterKind::kSymbol) {
        ++at_;
        like_ = false;
      } else {
        throw StatementError("Unknown character in the statement", sql_);
      }
    }
    CopyTo(at_);
  }

 private:
  bool StartsFraction() const {
    return sql_[at_] == '.' && at_ + 1 < sql_.size() && IsDigit(sql_[at_ + 1]);
  }

  // What lies before a literal goes into the shape in one piece.
  void CopyTo(std::size_t end) {
    out_.shape += sql_.substr(copied_, end - copied_);
    copied_ = end;
  }
  void Replace(char mark) {
    out_.shape += mark;
    copied_ = at_;
    like_ = false;
  }

  void Word() {
    const char* const start = sql_.data() + at_;
    const char* const end = sql_.data() + sql_.size();
    const char* at = start;
    while (at != end && IsNamePart(*at)) ++at;
    const std::string_view word(start, static_cast<std::size_t>(at - start));
    at_ += word.size();
    like_ = word.size() == 4 && SameName(word, "like");
  }

  void Digits() {
    while (at_ < sql_.size() && IsDigit(sql_[at_])) ++at_;
  }

  // An exponent counts only with digits: in "3END" the number is 3.
  void Exponent() {
    if (at_ == sql_.size() || (sql_[at_] != 'e' && sql_[at_] != 'E')) return;
    std::size_t digits = at_ + 1;
    if (digits < sql_.size() && (sql_[digits] == '+' || sql_[digits] == '-')) ++digits;
    if (digits == sql_.size() || !IsDigit(sql_[digits])) return;
    at_ = digits;
    Digits();
  }

  void Number() {
    CopyTo(at_);
    Digits();
    if (at_ < sql_.size() && sql_[at_] == '.') {
      ++at_;
      Digits();
    }
    Exponent();
    const char* first = sql_.data() + copied_;
    const char* last = sql_.data() + at_;
    std::int64_t integer = 0;
    const auto whole = std::from_chars(first, last, integer);
    if (whole.ec == std::errc() && whole.ptr == last) {
      out_.literals.emplace_back(integer);
    } else {
      double real = 0;
      if (std::from_chars(first, last, real).ec != std::errc()) {
        throw StatementError("A number is out of range", sql_);
      }
      out_.literals.emplace_back(real);
    }
    Replace(kNumberMark);
  }

  void Text(char quote) {
    CopyTo(at_);
    std::string text;
    for (++at_;; ++at_) {
      const std::size_t end = sql_.find(quote, at_);
      if (end == std::string_view::npos) {
        throw StatementError("A text has no closing quote", sql_);
      }
      text += sql_.substr(at_, end - at_);
      at_ = end + 1;
      if (at_ == sql_.size() || sql_[at_] != quote) break;
      text += quote;
    }
    AddText(ToUtf8(text));
  }

  void AddText(std::string utf8) {
    const bool prefix = like_ && !utf8.empty() && utf8.find('%') == utf8.size() - 1;
    Replace(prefix ? kPrefixMark : like_ ? kPatternMark : kTextMark);
    if (prefix) {
      utf8.pop_back();
      std::string end = PrefixEnd(utf8);
      out_.literals.emplace_back(std::move(utf8));
      out_.literals.emplace_back(std::move(end));
    } else {
      out_.literals.emplace_back(std::move(utf8));
    }
  }

  void Bracket() {
    const std::size_t end = sql_.find(']', at_);
    if (end == std::string_view::npos) {
      throw StatementError("A name has no closing bracket", sql_);
    }
    at_ = end + 1;
    like_ = false;
  }

  std::string_view sql_;
  SplitStatement& out_;
  std::size_t at_ = 0;
  std::size_t copied_ = 0;
  bool like_ = false;  // the word Like stands last
};

}  // namespace

void SplitLiterals(std::string_view sql, SplitStatement& out) { Splitter(sql, out).Run(); }

}  // namespace merivane::store
