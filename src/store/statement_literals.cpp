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

std::size_t DigitsEnd(std::string_view sql, std::size_t at) {
  while (at < sql.size() && IsDigit(sql[at])) ++at;
  return at;
}

// An exponent counts only with digits: in "3END" the number is 3.
std::size_t ExponentEnd(std::string_view sql, std::size_t at) {
  if (at == sql.size() || (sql[at] != 'e' && sql[at] != 'E')) return at;
  std::size_t digits = at + 1;
  if (digits < sql.size() && (sql[digits] == '+' || sql[digits] == '-')) ++digits;
  if (digits == sql.size() || !IsDigit(sql[digits])) return at;
  return DigitsEnd(sql, digits);
}

// These two read the literal at `at`, which they move behind it, and give its mark.
char TakeNumber(std::string_view sql, std::size_t& at, std::vector<Literal>& literals) {
  const char* first = sql.data() + at;
  at = DigitsEnd(sql, at);
  if (at < sql.size() && sql[at] == '.') at = DigitsEnd(sql, at + 1);
  at = ExponentEnd(sql, at);
  const char* last = sql.data() + at;
  std::int64_t integer = 0;
  const auto whole = std::from_chars(first, last, integer);
  if (whole.ec == std::errc() && whole.ptr == last) {
    literals.emplace_back(integer);
  } else {
    double real = 0;
    if (std::from_chars(first, last, real).ec != std::errc()) {
      throw StatementError("A number is out of range", sql);
    }
    literals.emplace_back(real);
  }
  return kNumberMark;
}

// Behind the word Like, or not.
char TakeText(std::string_view sql, std::size_t& at, bool like, std::vector<Literal>& literals) {
  const char quote = sql[at];
  std::string text;
  for (++at;; ++at) {
    const std::size_t end = sql.find(quote, at);
    if (end == std::string_view::npos) {
      throw StatementError("A text has no closing quote", sql);
    }
    text += sql.substr(at, end - at);
    at = end + 1;
    if (at == sql.size() || sql[at] != quote) break;
    text += quote;
  }
  std::string utf8 = ToUtf8(text);
  if (!like || utf8.empty() || utf8.find('%') != utf8.size() - 1) {
    literals.emplace_back(std::move(utf8));
    return like ? kPatternMark : kTextMark;
  }
  utf8.pop_back();
  std::string end = PrefixEnd(utf8);
  literals.emplace_back(std::move(utf8));
  literals.emplace_back(std::move(end));
  return kPrefixMark;
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
        Text();
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
    like_ = word.size() == 4 && IsSameName(word, "like");
  }

  void Number() {
    CopyTo(at_);
    Replace(TakeNumber(sql_, at_, out_.literals));
  }

  void Text() {
    CopyTo(at_);
    Replace(TakeText(sql_, at_, like_, out_.literals));
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

ShapePieces::ShapePieces(std::string_view shape) : texts_(1) {
  for (const char character : shape) {
    if (character >= kNumberMark && character <= kPatternMark) {
      marks_ += character;
      texts_.emplace_back();
    } else {
      texts_.back() += character;
    }
  }
}

// A digit in the place of a digit, and a quote in that of a quote, begin a literal as those did.
bool ShapePieces::Fit(std::string_view sql, std::vector<Literal>& literals) const {
  if (!sql.ends_with(texts_.back())) return false;
  std::size_t at = 0;
  for (std::size_t i = 0; i < marks_.size(); ++i) {
    if (!sql.substr(at).starts_with(texts_[i])) return false;
    at += texts_[i].size();
    const CharacterKind kind = at < sql.size() ? KindOf(sql[at]) : CharacterKind::kWrong;
    if (marks_[i] == kNumberMark) {
      if (kind != CharacterKind::kDigit) return false;
      TakeNumber(sql, at, literals);
    } else {
      if (kind != CharacterKind::kQuote) return false;
      if (TakeText(sql, at, marks_[i] != kTextMark, literals) != marks_[i]) return false;
    }
  }
  return sql.substr(at) == texts_.back();
}

void SplitLiterals(std::string_view sql, SplitStatement& out) { Splitter(sql, out).Run(); }

}  // namespace merivane::store
