#include "dialect.h"

#include <charconv>

#include "runtime/code_page.h"

namespace merivane {
namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

char Lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
}

// The least UTF-8 text above all that begin with `prefix`, in the order that ignores case: there,
// capital letters stand where the small ones do. Nothing is above an empty prefix but all texts.
std::string PrefixEnd(std::string prefix) {
  if (prefix.empty()) return "\xFF";
  const char last = Lower(prefix.back());
  prefix.back() = last == '@' ? '[' : static_cast<char>(last + 1);
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
      const char next = sql_[at_];
      if (IsNameStart(next)) {
        Word();
      } else if (IsDigit(next) ||
                 (next == '.' && at_ + 1 < sql_.size() && IsDigit(sql_[at_ + 1]))) {
        Number();
      } else if (next == '\'' || next == '"') {
        Text(next);
      } else if (next == '[') {
        Bracket();
      } else {
        Other(next);
      }
    }
  }

 private:
  void Word() {
    const std::size_t start = at_;
    while (at_ < sql_.size() && IsNamePart(sql_[at_])) ++at_;
    const std::string_view word = sql_.substr(start, at_ - start);
    out_.shape += word;
    like_ = word.size() == 4 && SameName(word, "like");
  }

  void Digits() {
    while (at_ < sql_.size() && IsDigit(sql_[at_])) ++at_;
  }

  // An exponent counts only with digits: in "3END" the number is 3.
  void Exponent() {
    if (at_ == sql_.size() || Lower(sql_[at_]) != 'e') return;
    std::size_t digits = at_ + 1;
    if (digits < sql_.size() && (sql_[digits] == '+' || sql_[digits] == '-')) ++digits;
    if (digits == sql_.size() || !IsDigit(sql_[digits])) return;
    at_ = digits;
    Digits();
  }

  void Number() {
    const std::size_t start = at_;
    Digits();
    if (at_ < sql_.size() && sql_[at_] == '.') {
      ++at_;
      Digits();
    }
    Exponent();
    const char* first = sql_.data() + start;
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
    out_.shape += kNumberMark;
    like_ = false;
  }

  void Text(char quote) {
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
    like_ = false;
  }

  void AddText(std::string utf8) {
    const bool prefix = like_ && !utf8.empty() && utf8.find('%') == utf8.size() - 1;
    out_.shape += prefix ? kPrefixMark : like_ ? kPatternMark : kTextMark;
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
    out_.shape += sql_.substr(at_, end + 1 - at_);
    at_ = end + 1;
    like_ = false;
  }

  void Other(char character) {
    constexpr std::string_view kBlanks = " \t\r\n";
    constexpr std::string_view kSymbols = "*,()=<>+-/&?;.";
    const bool blank = kBlanks.find(character) != std::string_view::npos;
    if (!blank && kSymbols.find(character) == std::string_view::npos) {
      throw StatementError("Unknown character in the statement", sql_);
    }
    if (!blank) like_ = false;
    out_.shape += character;
    ++at_;
  }

  std::string_view sql_;
  SplitStatement& out_;
  std::size_t at_ = 0;
  bool like_ = false;
};

}  // namespace

void SplitLiterals(std::string_view sql, SplitStatement& out) { Splitter(sql, out).Run(); }

RunTimeError StatementError(const std::string& what, std::string_view sql) {
  constexpr std::size_t kShown = 300;
  std::string text(sql.substr(0, kShown));
  if (sql.size() > kShown) text += "...";
  return {kStatementError, "Syntax error. " + what + ": " + text};
}

bool IsNameStart(char character) {
  return (Lower(character) >= 'a' && Lower(character) <= 'z') || character == '_' ||
         static_cast<unsigned char>(character) >= 0x80;
}

bool IsNamePart(char character) { return IsNameStart(character) || IsDigit(character); }

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
}

}  // namespace merivane
