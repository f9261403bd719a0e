// The reader's entry points, the helpers of its rules, and who listens to it. A Neutral Text file
// goes in, rows of the interim tables come out; modProjectToIDEF3.h is the way back.
//
//   Program program(desktop);
//   ModelToProject& state = program.modelToProject;
//   state.gMspProjId = 1;
//   state.gOverwriteDb = true;
//   OpenInterimDb(program.workspace, state.gMspConn, state.gOverwriteDb, "plan.mdb");
//   ReadNeutralText(state, "model.txt");
//
// Texts are Windows-1252, paths UTF-8. Numbers of elements have 16 bits, durations stay the text
// that the file has. The state owns the connection and the file; a listener is its maker's and
// outlives the reading. What fails is told in a box by the reader itself, and an end of the program
// comes as ProgramEnd; the rows that came before stay.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "program/program.h"
#include "runtime/run_time_error.h"

namespace merivane::neutraltext {

using namespace program;

// Up to `length` characters behind the first double blank at or behind position `start` of the
// line; empty without one. Nothing is trimmed.
std::string FieldAfterBlanks(std::string_view line, std::size_t start, std::size_t length);

// Puts zeros in front of a text of 0 to 4 characters up to five; any other stays.
void PadToFiveDigits(std::string& text);

// Name rules of the reader: a box and the end of the program for a name that breaks them, unless a
// listener takes it.
void ValidateUobName(ModelToProject& state, const std::string& name);
void ValidateObjectName(ModelToProject& state, const std::string& name);

// The name under which a further project comes into gMspConn, told apart from those of `projects`;
// "Project 1" for a blank one. Of an overwritten database the name stays.
std::string NameApartFromOthers(ModelToProject& state, Recordset& projects, std::string name);

// Loads a Neutral Text file into the interim tables of gMspConn under gMspProjId. A failure while
// reading is reported and leaves the rows so far and the file open; a file that can't be opened
// ends the program.
void ReadNeutralText(ModelToProject& state, const std::string& fileName);

// Opens the file as gTextFile and reads its first line. False, with a box, for a file of another
// kind; it is read all the same.
bool CheckNeutralTextHeader(ModelToProject& state, const std::string& fileName);
void ReadModel(ModelToProject& state);

// Whether the head of the file is in the written form: one blank behind the colons of the summary.
// False for a file that can't be read.
bool IsOwnText(const std::string& path);

// Gives back the input's file number, which stays taken from CheckNeutralTextHeader until the
// translation is over so that no other file gets it, and closes the file if a failed read left it
// open. For the driver's end on every path; nothing where no number is held.
void ReleaseNeutralTextFile(ModelToProject& state);

enum class ElementKind {
  kProcess,
  kObject,
  kFact,
  kScenario,
  kUnit,
  kObjectUse,
  kJunction,
  kJunctionFact,
  kLink,
};

// One column of a row.
struct Cell {
  std::string_view column;
  Value value;
  const FieldVariable* variable = nullptr;  // null: not from a field variable
};

enum class RowChange {
  kAdded,
  kChanged,  // the row that was added last
};

// What a number of the text is for.
enum class NumberUse {
  kOwn,        // what other elements know its element by
  kReference,  // what another element is known by
  kValue,      // an ID, a revision, a quantity
};

// Hears what the reader of a model text does while it does it, so that what it found can be told
// with its place in the text.
class ReaderListener {
 public:
  virtual ~ReaderListener() = default;

  // In front of OnLine, where a line isn't that of the file: the one, from 1, that it comes from.
  virtual void OnFileLine(std::size_t /*fileLine*/) {}
  // The next line of the file became the current one.
  virtual void OnLine(const std::string& line) = 0;
  // From the current line on, lines are passed over or collected up to a keyword.
  virtual void OnSearch(std::string_view keyword) = 0;
  // An element begins at the current line. `listEnd`: the line that would end their list.
  virtual void OnRecord(ElementKind element, std::string_view listEnd) = 0;
  // A field of the current line is taken; see FieldAfterBlanks.
  virtual void OnField(std::size_t start, std::size_t length) = 0;
  // The number that the reader took from a text of the current line.
  virtual void OnNumber(NumberUse use, const std::string& text, double value) = 0;
  // A text of the current line is no number that the reader can take. What it goes on with;
  // nothing: the reading ends with the error.
  virtual std::optional<std::int16_t> OnBadNumber(NumberUse use, const std::string& text,
                                                  const RunTimeError& error) = 0;
  // The current line lacks a mark that it is taken apart by. Whether the reader goes on, with
  // what an earlier line gave; otherwise the reading ends with the error.
  virtual bool OnBadLine(const RunTimeError& error) = 0;
  // A name breaks a rule, which is a sentence. Whether the reader takes it all the same; otherwise
  // the rule is shown and the program ends.
  virtual bool OnRefusedName(std::string_view rule) = 0;
  // A block that ends at the current line is longer than `length` and is cut or dropped.
  virtual void OnCut(std::size_t length) = 0;
  // Whether the row goes into the database as well; HeldRows can put it there later.
  virtual bool OnRow(RowChange change, std::string_view table, std::span<const Cell> cells) = 0;
};

}  // namespace merivane::neutraltext
