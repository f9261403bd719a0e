#include "writer_lines.h"

#include "program/model_words.h"
#include "runtime/conversions.h"

namespace merivane::neutraltext {

namespace {

std::string Concat(std::string_view front, std::string_view back) {
  std::string text(front);
  text += back;
  return text;
}

}  // namespace

void LineWriter::EmptyLines(int count) {
  for (int i = 0; i < count; ++i) EmptyLine();
}

void LineWriter::Lines(std::initializer_list<std::string_view> lines) {
  for (std::string_view line : lines) Line(line);
}

void LineWriter::Keyword(std::string_view keyword, const Value& value) {
  Line(Concat(keyword, Joined(value)));
}

void LineWriter::Keyword(std::string_view keyword, const Value& value, std::string_view fallback) {
  Line(value.IsNull() ? Concat(keyword, fallback) : Concat(keyword, Joined(value)));
}

void LineWriter::KeywordUnlessNull(std::string_view keyword, const Value& value) {
  if (!value.IsNull()) Keyword(keyword, value);
}

void LineWriter::LineUnlessNull(const Value& value) {
  if (!value.IsNull()) Line(Joined(value));
}

void LineWriter::Block(std::string_view opening, Recordset& rows, std::string_view column,
                       NullBlock whenNull) {
  Line(opening);
  const Value text = rows.Field(column);
  if (whenNull == NullBlock::kEmptyLine || !text.IsNull()) Line(Joined(text));
  Closing(opening);
}

void LineWriter::EmptyBlock(std::string_view opening) {
  Line(opening);
  Closing(opening);
}

void LineWriter::Closing(std::string_view opening) { Line(EndOf(opening)); }

void LineWriter::Elaboration(std::string_view indent, Recordset& rows,
                             const ElaborationColumns& columns, NullBlock whenNull) {
  Line(Concat(indent, "Elaboration"));
  Block(Concat(indent, "  Object Occurrence List"), rows, columns.objects, whenNull);
  Block(Concat(indent, "  Fact List"), rows, columns.facts, whenNull);
  Block(Concat(indent, "  Constraint List"), rows, columns.constraints, whenNull);
  Line(Concat(indent, "End  Elaboration"));
}

void LineWriter::EmptyElaboration(std::string_view indent) {
  Line(Concat(indent, "Elaboration"));
  EmptyBlock(Concat(indent, "  Object Occurrence List"));
  EmptyBlock(Concat(indent, "  Fact List"));
  EmptyBlock(Concat(indent, "  Constraint List"));
  Line(Concat(indent, "End  Elaboration"));
}

bool AboveZero(const Value& value) { return !value.IsNull() && ToDouble(value) > 0; }

}  // namespace merivane::neutraltext
