#include "statement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "runtime/code_page.h"
#include "sqlite_handle.h"

namespace merivane::store {

namespace {

constexpr char kNumberMark = '\x01';
constexpr char kTextMark = '\x02';
constexpr char kPrefixMark = '\x03';
constexpr char kPatternMark = '\x04';  // behind Like: any text but a prefix

enum class Kind : std::uint8_t { kWrong, kBlank, kSymbol, kWord, kDigit, kQuote, kBracket };

constexpr std::array<Kind, 256> MakeKinds() {
  std::array<Kind, 256> kinds{};
  const auto set = [&](std::string_view characters, Kind kind) {
    for (const char character : characters) kinds[static_cast<unsigned char>(character)] = kind;
  };
  set(" \t\r\n", Kind::kBlank);
  set("*,()=<>+-/&?;.", Kind::kSymbol);
  set("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_", Kind::kWord);
  set("0123456789", Kind::kDigit);
  set("'\"", Kind::kQuote);
  set("[", Kind::kBracket);
  for (std::size_t byte = 0x80; byte < kinds.size(); ++byte) kinds[byte] = Kind::kWord;
  return kinds;
}
constexpr std::array<Kind, 256> kKinds = MakeKinds();

Kind KindOf(char character) { return kKinds[static_cast<unsigned char>(character)]; }
bool IsDigit(char character) { return KindOf(character) == Kind::kDigit; }
bool IsNamePart(char character) {
  return KindOf(character) == Kind::kWord || KindOf(character) == Kind::kDigit;
}

// What is wrong, and the text.
RunTimeError StatementError(const std::string& what, std::string_view sql) {
  constexpr std::size_t kShown = 300;
  std::string text(sql.substr(0, kShown));
  if (sql.size() > kShown) text += "...";
  return {kStatementError, "Syntax error. " + what + ": " + text};
}

// ---------------------------------------------------------------- literals

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
      const Kind kind = KindOf(sql_[at_]);
      if (kind == Kind::kBlank) {
        ++at_;
      } else if (kind == Kind::kWord) {
        Word();
      } else if (kind == Kind::kDigit || StartsFraction()) {
        Number();
      } else if (kind == Kind::kQuote) {
        Text(sql_[at_]);
      } else if (kind == Kind::kBracket) {
        Bracket();
      } else if (kind == Kind::kSymbol) {
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
    const std::size_t start = at_;
    while (at_ < sql_.size() && IsNamePart(sql_[at_])) ++at_;
    like_ = at_ - start == 4 && SameName(sql_.substr(start, 4), "like");
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

// ---------------------------------------------------------------- tokens

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
    return kind == TokenKind::kWord && SameName(text, keyword);
  }
  bool IsSymbol(std::string_view symbol) const {
    return kind == TokenKind::kSymbol && text == symbol;
  }
  bool IsLiteral() const { return kind >= TokenKind::kNumber && kind <= TokenKind::kPattern; }
};

// The words that a statement may hold beside names.
constexpr auto kKeywords = std::to_array<std::string_view>(
    {"select", "from", "where", "order", "by", "and", "or", "not", "in", "like", "is", "null",
     "between", "as", "asc", "desc", "update", "set"});

bool IsKeyword(const Token& token) {
  return std::any_of(kKeywords.begin(), kKeywords.end(),
                     [&](std::string_view keyword) { return token.Is(keyword); });
}

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
  if (KindOf(first) == Kind::kWord) {
    const auto* const end = std::find_if_not(rest.begin(), rest.end(), IsNamePart);
    return {TokenKind::kWord, {rest.begin(), end}};
  }
  if (first == '[') return {TokenKind::kBracketName, rest.substr(1, rest.find(']') - 1)};
  const std::string_view two = rest.substr(0, 2);
  const bool joined = two == "<>" || two == "<=" || two == ">=";
  return {KindOfMark(first), joined ? two : rest.substr(0, 1)};
}

std::vector<Token> TokensOf(std::string_view shape) {
  std::vector<Token> tokens;
  for (;;) {
    while (!shape.empty() && KindOf(shape.front()) == Kind::kBlank) shape.remove_prefix(1);
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

// ---------------------------------------------------------------- parts

class Reader {
 public:
  Reader(sqlite3* database, std::string_view shape, std::string_view sql, const FindTable& find)
      : database_(database), sql_(sql), find_(find), tokens_(TokensOf(shape)) {}

  StatementParts Select() {
    Expect("select");
    const std::size_t list = at_;
    while (!Now().Is("from") && Now().kind != TokenKind::kEnd) ++at_;
    const std::size_t end = at_;
    Expect("from");
    Table();
    at_ = list;
    text_ = "select";
    List(end);
    Add("from");
    text_ += " " + parts_.table->QuotedName();
    at_ = end + 2;
    Where();
    if (Take("order")) OrderBy();
    return Proved();
  }

 private:
  const Token& Now() const { return tokens_[at_]; }
  bool Take(std::string_view keyword) {
    if (!Now().Is(keyword)) return false;
    ++at_;
    return true;
  }
  void Expect(std::string_view keyword) {
    if (!Take(keyword)) Refuse(Now());
  }
  [[noreturn]] void Refuse(const Token& token) const {
    throw StatementError(Described(token), sql_);
  }

  void Table() {
    const bool word = Now().kind == TokenKind::kWord && !IsKeyword(Now());
    if (!word && Now().kind != TokenKind::kBracketName) Refuse(Now());
    parts_.table = &find_(Now().text);
    parts_.used.assign(parts_.table->Columns().size(), false);
    ++at_;
  }

  // -1 for what is no column of the table.
  int ColumnOf(const Token& token) const {
    const bool name = token.kind == TokenKind::kBracketName ||
                      (token.kind == TokenKind::kWord && !IsKeyword(token));
    return name ? parts_.table->Find(token.text) : -1;
  }
  const Column& Declared(int column) const {
    return parts_.table->Columns()[static_cast<std::size_t>(column)];
  }
  // The column as it is compared and ordered: texts without case.
  std::string ColumnSql(int column) const {
    const Column& declared = Declared(column);
    const bool plain = declared.kind != ColumnKind::kText || declared.ignoresCase;
    return plain ? declared.quotedName : declared.quotedName + " collate nocase";
  }

  void Add(std::string_view sql) {
    text_ += ' ';
    places_.push_back({text_.size(), at_});
    text_ += sql;
  }

  void List(std::size_t end) {
    for (std::size_t i = at_; i <= end; i += 2) {
      const bool separated = i == end - 1 || (i < end && tokens_[i + 1].IsSymbol(","));
      const int column = separated ? ColumnOf(tokens_[i]) : -1;
      if (separated && tokens_[i].IsSymbol("*")) {
        for (std::size_t all = 0; all < parts_.used.size(); ++all) {
          parts_.columns.push_back(static_cast<int>(all));
        }
      } else if (column >= 0) {
        parts_.columns.push_back(column);
      } else {
        parts_.columns.clear();
        break;
      }
    }
    const std::size_t start = text_.size();
    for (; at_ < end; ++at_) ListToken();
    if (parts_.columns.empty()) parts_.list = text_.substr(start);
  }

  void ListToken() {
    const bool alias = tokens_[at_ - 1].Is("as");
    const bool function = tokens_[at_ + 1].IsSymbol("(");
    if (alias || (function && Now().kind == TokenKind::kWord)) {
      Add(Quoted(ToUtf8(Now().text)));
    } else {
      Operand();
    }
  }

  bool ClauseEnds() const {
    return Now().kind == TokenKind::kEnd || Now().IsSymbol(";") || Now().Is("where") ||
           Now().Is("order");
  }

  void Where() {
    if (!Now().Is("where")) return;
    Add("where");
    ++at_;
    const std::size_t start = text_.size();
    for (const std::size_t first = at_; !ClauseEnds(); ++at_) {
      Note(first);
      Operand();
    }
    parts_.condition = text_.substr(start);
    if (hasAlternative_) {
      parts_.equalColumns.clear();
      parts_.prefixColumns.clear();
    }
  }

  // What index serves the condition: its terms outside of parentheses, while only AND joins them.
  void Note(std::size_t first) {
    if (Now().IsSymbol("(")) ++depth_;
    if (Now().IsSymbol(")")) --depth_;
    if (depth_ == 0 && (Now().Is("or") || Now().Is("between"))) hasAlternative_ = true;
    const int column = ColumnOf(Now());
    if (column < 0) return;
    parts_.used[static_cast<std::size_t>(column)] = true;
    if (depth_ > 0 || (at_ != first && !tokens_[at_ - 1].Is("and"))) return;
    const Token& comparison = tokens_[at_ + 1];
    if (comparison.kind == TokenKind::kEnd || !tokens_[at_ + 2].IsLiteral()) return;
    const Token& behind = tokens_[at_ + 3];
    if (behind.kind == TokenKind::kSymbol && !behind.IsSymbol(";")) return;
    if (comparison.IsSymbol("=")) parts_.equalColumns.push_back(column);
    if (comparison.Is("like") && tokens_[at_ + 2].kind == TokenKind::kPrefix &&
        Declared(column).kind == ColumnKind::kText) {
      parts_.prefixColumns.push_back(column);
    }
  }

  void Operand() {
    const Token& token = Now();
    if (token.IsLiteral()) return Add(NextParameter());
    if (token.IsSymbol("?")) Refuse(token);
    if (token.kind == TokenKind::kSymbol || IsKeyword(token)) return Add(token.text);
    const int column = ColumnOf(token);
    if (column < 0 && !unknown_) unknown_ = at_;
    if (column >= 0 && tokens_[at_ + 1].Is("like") && tokens_[at_ + 2].kind == TokenKind::kPrefix) {
      Range(column);
      at_ += 2;
    } else {
      Add(column < 0 ? Quoted(ToUtf8(token.text)) : ColumnSql(column));
    }
  }

  std::string NextParameter() { return "?" + std::to_string(++parts_.parameters); }

  // A text column is searched by range, so that an index serves it; another by its value's text.
  void Range(int column) {
    const std::string value = Declared(column).kind == ColumnKind::kText
                                  ? ColumnSql(column)
                                  : "cast(" + ColumnSql(column) + " as text) collate nocase";
    const std::string first = NextParameter();
    Add("(" + value + " >= " + first + " and " + value + " < " + NextParameter() + ")");
  }

  void OrderBy() {
    Expect("by");
    text_ += " order by ";
    const std::size_t start = text_.size();
    for (;; ++at_) {
      const int column = ColumnOf(Now());
      if (column < 0) {
        if (Now().kind != TokenKind::kWord || IsKeyword(Now())) Refuse(Now());
        throw UnknownName(Now());
      }
      parts_.used[static_cast<std::size_t>(column)] = true;
      ++at_;
      const bool falling = Take("desc");
      if (!falling) Take("asc");
      const std::string comma = parts_.order.empty() ? "" : ", ";
      parts_.order += comma + ColumnSql(column) + (falling ? " desc" : "");
      parts_.reversedOrder += comma + ColumnSql(column) + (falling ? "" : " desc");
      if (!Now().IsSymbol(",")) break;
    }
    text_.replace(start, std::string::npos, parts_.order);
  }

  RunTimeError UnknownName(const Token& token) const {
    return {kUnknownName, "No column '" + std::string(token.text) + "' of the table " +
                              parts_.table->Name() +
                              " for the statement: " + std::string(sql_.substr(0, 300))};
  }

  // SQLite's judgement, in the words of the statement as it was written.
  StatementParts Proved() {
    if (Now().IsSymbol(";")) ++at_;
    const bool ended = Now().kind == TokenKind::kEnd;
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(database_, text_.c_str(), -1, &statement, nullptr);
    sqlite3_finalize(statement);
    if (result != SQLITE_OK && (result & 0xFF) != SQLITE_ERROR) {
      throw DatabaseError(database_, sqlite3_db_filename(database_, "main"));
    }
    if (result == SQLITE_OK && ended && !unknown_) return std::move(parts_);
    const std::optional<std::size_t> refused = result != SQLITE_OK ? Refused()
                                               : ended             ? std::nullopt
                                                                   : std::optional(at_);
    if (unknown_ && (!refused || *unknown_ < *refused)) throw UnknownName(tokens_[*unknown_]);
    if (refused) Refuse(tokens_[*refused]);
    throw StatementError(FromUtf8(sqlite3_errmsg(database_)), sql_);
  }

  // The token that SQLite's grammar stumbled over; none where something else is wrong.
  std::optional<std::size_t> Refused() const {
    const std::string_view message = sqlite3_errmsg(database_);
    if (message == "incomplete input") return at_;
    if (!message.ends_with("syntax error")) return std::nullopt;
    const auto offset = static_cast<std::size_t>(sqlite3_error_offset(database_));
    for (const TokenOffset& place : places_) {
      if (place.offset >= offset) return place.token;
    }
    return at_;
  }

  struct TokenOffset {
    std::size_t offset;
    std::size_t token;
  };

  sqlite3* database_;
  std::string_view sql_;
  const FindTable& find_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  StatementParts parts_;
  std::string text_;                 // the whole statement in SQLite's words
  std::vector<TokenOffset> places_;  // where the tokens stand in it
  std::optional<std::size_t> unknown_;
  bool hasAlternative_ = false;
  int depth_ = 0;
};

}  // namespace

void SplitLiterals(std::string_view sql, SplitStatement& out) { Splitter(sql, out).Run(); }

StatementParts ReadSelect(sqlite3* database, std::string_view shape, std::string_view sql,
                          const FindTable& find) {
  return Reader(database, shape, sql, find).Select();
}

}  // namespace merivane::store
