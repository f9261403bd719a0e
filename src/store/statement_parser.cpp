#include "statement_parser.h"

#include <array>

#include "condition_parser.h"
#include "dialect.h"
#include "statement_tokens.h"

namespace merivane {
namespace {

constexpr auto kAggregates = std::to_array<std::string_view>({"max", "min", "count", "sum", "avg"});

// An item of a SELECT list as it stands; its column is looked up when the table is known.
struct ListItem {
  std::string aggregate;  // empty for a plain column
  std::string column;     // empty for '*'
  std::string alias;
};

class Parser {
 public:
  Parser(std::string_view shape, std::string_view sql, const FindTable& find, bool mayHaveParameter)
      : sql_(sql),
        find_(find),
        tokens_(shape, sql),
        conditions_(tokens_, statement_, sql, mayHaveParameter) {}

  ParsedStatement Select() {
    tokens_.ExpectKeyword("select");
    std::vector<ListItem> list;
    do {
      list.push_back(Item());
    } while (tokens_.TakeSymbol(","));
    tokens_.ExpectKeyword("from");
    Table();
    for (const ListItem& item : list) AddField(item);
    CheckList();
    Where();
    if (tokens_.TakeKeyword("order")) OrderBy();
    tokens_.ExpectEnd();
    return std::move(statement_);
  }

  ParsedStatement Update() {
    statement_.parameters = 1;
    tokens_.ExpectKeyword("update");
    Table();
    tokens_.ExpectKeyword("set");
    do {
      const int column = conditions_.FindColumn(tokens_.TakeName());
      tokens_.ExpectSymbol("=");
      if (!statement_.assigned.empty()) statement_.assignments += ", ";
      statement_.assigned.push_back(column);
      statement_.assignments += ColumnOf(column).quotedName + " = " + conditions_.Sum();
    } while (tokens_.TakeSymbol(","));
    Where();
    tokens_.ExpectEnd();
    return std::move(statement_);
  }

 private:
  ListItem Item() {
    if (tokens_.TakeSymbol("*")) return {};
    ListItem item{"", tokens_.TakeName(), ""};
    if (tokens_.TakeSymbol("(")) {
      item.aggregate = std::move(item.column);
      item.column.clear();
      if (!tokens_.TakeSymbol("*")) item.column = tokens_.TakeName();
      tokens_.ExpectSymbol(")");
    }
    if (tokens_.TakeKeyword("as")) item.alias = tokens_.TakeName();
    return item;
  }

  void Table() {
    statement_.table = &find_(tokens_.TakeName());
    statement_.used.assign(statement_.table->Columns().size(), false);
  }

  const Column& ColumnOf(int column) const {
    return statement_.table->Columns()[static_cast<std::size_t>(column)];
  }

  void AddField(const ListItem& item) {
    if (!item.aggregate.empty()) return AddAggregate(item);
    if (item.column.empty()) {
      for (std::size_t i = 0; i < statement_.table->Columns().size(); ++i) {
        const Column& column = statement_.table->Columns()[i];
        statement_.fields.push_back({column.name, column.quotedName, static_cast<int>(i)});
      }
      return;
    }
    const int index = conditions_.FindColumn(item.column);
    const Column& column = ColumnOf(index);
    statement_.fields.push_back(
        {item.alias.empty() ? column.name : item.alias, column.quotedName, index});
  }

  void AddAggregate(const ListItem& item) {
    bool known = false;
    for (const std::string_view name : kAggregates) known = known || SameName(name, item.aggregate);
    if (!known) throw StatementError("Unknown function '" + item.aggregate + "'", sql_);
    const bool all = item.column.empty();
    if (all && !SameName(item.aggregate, "count")) {
      throw StatementError("'" + item.aggregate + "' needs a column", sql_);
    }
    const std::string inside =
        all ? "*" : conditions_.ColumnSql(conditions_.FindColumn(item.column));
    std::string name = item.alias;
    if (name.empty()) name = "Expr" + std::to_string(1000 + statement_.fields.size());
    statement_.fields.push_back({name, item.aggregate + "(" + inside + ")", -1});
    statement_.aggregate = true;
  }

  void CheckList() {
    if (!statement_.aggregate) return;
    for (const OutputField& field : statement_.fields) {
      if (field.column >= 0) {
        throw StatementError("'" + field.name + "' is no part of an aggregate", sql_);
      }
    }
  }

  void Where() {
    if (tokens_.TakeKeyword("where")) statement_.condition = conditions_.Condition();
  }

  void OrderBy() {
    tokens_.ExpectKeyword("by");
    do {
      const int column = conditions_.FindColumn(tokens_.TakeName());
      statement_.used[static_cast<std::size_t>(column)] = true;
      const bool falling = tokens_.TakeKeyword("desc");
      if (!falling) tokens_.TakeKeyword("asc");
      if (!statement_.order.empty()) {
        statement_.order += ", ";
        statement_.reversedOrder += ", ";
      }
      statement_.order += conditions_.ColumnSql(column) + (falling ? " desc" : "");
      statement_.reversedOrder += conditions_.ColumnSql(column) + (falling ? "" : " desc");
    } while (tokens_.TakeSymbol(","));
  }

  std::string_view sql_;
  const FindTable& find_;
  StatementTokens tokens_;
  ParsedStatement statement_;
  ConditionParser conditions_;
};

}  // namespace

ParsedStatement ParseSelect(std::string_view shape, std::string_view sql, const FindTable& find) {
  return Parser(shape, sql, find, false).Select();
}

ParsedStatement ParseUpdate(std::string_view shape, std::string_view sql, const FindTable& find) {
  return Parser(shape, sql, find, true).Update();
}

}  // namespace merivane
