// The sections of the Neutral Text reader, and the line primitives that each of them is made of.
// gLine is the line at which the next step goes on. Running past the end of the file is error 62.
#pragma once

#include <string>
#include <string_view>

#include "neutraltext/modGlobal.h"
#include "runtime/run_time_error.h"

namespace merivane::neutraltext {

void NextLine(ModelToProject& state);
void NextLines(ModelToProject& state, int count);

// Tells a listener what is searched for from the current line on, or which element begins there;
// `listEnd` is the line that ends the list of such elements.
void Search(ModelToProject& state, std::string_view keyword);
void BeginRecord(ModelToProject& state, ElementKind element, std::string_view listEnd = {});

// Stays where the current line already is the keyword. Keywords are whole lines.
void SkipTo(ModelToProject& state, std::string_view keyword);
void SkipToLineThatHolds(ModelToProject& state, std::string_view text);

// In front of a list's first record, or to its end: the keyword, and a line in front of a record.
void EnterList(ModelToProject& state, std::string_view opening, std::string_view closing);
// Over `count` lines behind a record, and the one in front of the next record if there is one.
void LeaveRecord(ModelToProject& state, int count, std::string_view closing);

// The lines from the current one up to the closing keyword, each with CR LF behind it.
std::string CollectTo(ModelToProject& state, std::string_view closing);
// The same from behind the opening keyword up to its end.
std::string ReadBlock(ModelToProject& state, std::string_view opening);

// A field of the current line, or of the next one.
std::string Field(const ModelToProject& state, std::size_t start, std::size_t length);
std::string NextField(ModelToProject& state, std::size_t start, std::size_t length);
// The number of an element, or its ID.
std::string NumberField(const ModelToProject& state, std::size_t start);
std::string NextNumberField(ModelToProject& state, std::size_t start);

// A number from a text of the current line: error 13 or 6 where it holds none that can be used, and
// no listener says what to go on with.
std::int16_t Integer(const ModelToProject& state, NumberUse use, const std::string& text);
double Number(const ModelToProject& state, const std::string& text);

// Assigns what isn't empty, so that an empty field leaves the variable to its earlier value.
void Keep(FieldVariable& variable, std::string text);
void KeepInteger(const ModelToProject& state, FieldVariable& variable, const std::string& text);

void KeepNextField(ModelToProject& state, FieldVariable& variable, std::size_t start,
                   std::size_t length);
void KeepBlock(ModelToProject& state, FieldVariable& variable, std::string_view opening);

// Takes the current line apart; a line without one of its marks is error 5, unless a listener wants
// to hear what is behind it.
template <typename Take>
void TakeApart(const ModelToProject& state, Take take) {
  try {
    take();
  } catch (const RunTimeError& error) {
    const bool goesOn = error.Number() == kInvalidProcedureCall && state.readerListener &&
                        state.readerListener->OnBadLine(error);
    if (!goesOn) throw;
  }
}

// Longest text that a pool, a referent list and an OSTN list may have.
inline constexpr std::size_t kTextLimit = 64000;

// Tells a listener that a text longer than `length` ends at the current line and what is lost: the
// rest of it, or all of it.
void Cut(ModelToProject& state, std::size_t length);

// The sections of the text in the order in which the reader walks them. Each starts at gLine and
// leaves there the line at which the next one goes on; failures come up to ReadModel.
void ReadSummary(ModelToProject& state);

void ReadProcessPool(ModelToProject& state);
void ReadObjectPool(ModelToProject& state);
void ReadStatePool(ModelToProject& state);
void ReadFactPool(ModelToProject& state);
void ReadPropertyPool(ModelToProject& state);
void ReadRemainingPools(ModelToProject& state);

void ReadScenarios(ModelToProject& state);
void ReadOccurrences(ModelToProject& state);
void ReadObjectOccurrences(ModelToProject& state);
void ReadJunctions(ModelToProject& state);
void ReadLinks(ModelToProject& state);

// The current line holds "OSTN List".
void ReadOstnList(ModelToProject& state);

// Column and row of an occurrence or junction, from the current line and, where that is a column
// line, the next one. A value that isn't numeric leaves the variable as it was.
void ReadPlacement(ModelToProject& state);

}  // namespace merivane::neutraltext
