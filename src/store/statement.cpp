#include "statement.h"

#include <optional>

#include "runtime/code_page.h"
#include "sqlite_handle.h"
#include "statement_tokens.h"

namespace merivane::store {

namespace {

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
    const std::size_t first = at_;
    for (; !ClauseEnds(); ++at_) {
      Note(first);
      Operand();
    }
    parts_.condition = text_.substr(start);
    constexpr std::size_t kTerm = 4;  // tokens of one, and the AND before the next
    parts_.isAllEqual = at_ - first + 1 == kTerm * parts_.equalColumns.size();
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
    if (comparison.IsSymbol("=")) {
      parts_.equalColumns.push_back(column);
      parts_.equalLiterals.push_back(parts_.parameters);
    }
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

StatementParts ReadSelect(sqlite3* database, std::string_view shape, std::string_view sql,
                          const FindTable& find) {
  return Reader(database, shape, sql, find).Select();
}

}  // namespace merivane::store
