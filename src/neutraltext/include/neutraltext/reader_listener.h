// Hears what the reader of a model text does while it does it, so that what it found can be told
// with its place in the text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "neutraltext/modGlobal.h"
#include "runtime/run_time_error.h"

namespace merivane::neutraltext {

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
