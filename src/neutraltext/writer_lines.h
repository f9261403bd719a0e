// Lines of the written form, printed to gOutFile: keyword lines, blocks, the elaboration group.
#pragma once

#include <initializer_list>
#include <string_view>

#include "program/program.h"

namespace merivane::neutraltext {

using namespace program;

// What stands between the keywords of a block whose column is Null.
enum class NullBlock { kEmptyLine, kNoLine };

// Columns of the three lists of an elaboration.
struct ElaborationColumns {
  std::string_view objects = "Object_Occ_List";
  std::string_view facts = "Fact_List";
  std::string_view constraints = "Constraint_List";
};

// Each column is read when its line is due, so that a failure leaves exactly the lines before it.
// Errors of the file and of the record set go to the caller.
class LineWriter {
 public:
  explicit LineWriter(ProjectToModel& state) : files_(state.files), outFile_(state.gOutFile) {}

  void Line(std::string_view line) { files_.Print(outFile_, line); }
  void EmptyLine() { Line(""); }
  void EmptyLines(int count);
  void Lines(std::initializer_list<std::string_view> lines);

  // The keyword with the value behind it; Null leaves the keyword alone, or gives `fallback`.
  void Keyword(std::string_view keyword, const Value& value);
  void Keyword(std::string_view keyword, const Value& value, std::string_view fallback);
  // No line at all when Null.
  void KeywordUnlessNull(std::string_view keyword, const Value& value);
  // The value on a line of its own, none when Null.
  void LineUnlessNull(const Value& value);

  // `opening`, the stored text by one print, and the closing keyword, which is `opening` with
  // "End  " behind its indentation.
  void Block(std::string_view opening, Recordset& rows, std::string_view column,
             NullBlock whenNull);
  void EmptyBlock(std::string_view opening);
  void Closing(std::string_view opening);

  // "Elaboration" at the indentation, its three lists two columns further in.
  void Elaboration(std::string_view indent, Recordset& rows, const ElaborationColumns& columns,
                   NullBlock whenNull);
  void EmptyElaboration(std::string_view indent);

 private:
  TextFiles& files_;
  const std::int16_t& outFile_;
};

// False for Null; a text that is no number is error 13.
bool AboveZero(const Value& value);

}  // namespace merivane::neutraltext
