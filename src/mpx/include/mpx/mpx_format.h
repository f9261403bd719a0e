// Fixed lines and record forms of the program's MPX dialect. Text only: no state, no database. A
// Null value gives an empty field.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/value.h"

namespace merivane::mpx {

using namespace runtime;

inline constexpr std::int32_t kJapaneseCodePage = 932;
inline constexpr std::int32_t kKoreanCodePage = 949;
inline constexpr std::int32_t kDefaultOemCodePage = 437;

// First line for a code page, and the lines of records 10, 11, 12, 20 and 25 behind it.
std::vector<std::string> MpxHead(std::int32_t codePage);
std::string MpxProjectHeader(std::string_view path, std::string_view date);  // record 30
extern const std::string_view kMpxResourceFields;                            // record 40
extern const std::string_view kMpxResourceFieldNumbers;                      // record 41
extern const std::string_view kMpxTaskFields;                                // record 60
extern const std::string_view kMpxTaskFieldNumbers;                          // record 61
extern const std::string_view kMpxResourceCalendar;                          // record 55

// Record 50: the name is also the initials, the rates are fixed; one unit where quantity is Null.
std::string MpxResource(const Value& pid, const Value& name, const Value& quantity);

// Record 70. A name with a comma is put in double quotes.
struct MpxTask {
  Value id;
  Value name;
  std::string duration;  // with its unit
  Value outlineLevel;
  std::string predecessors;  // the items, without quotes; empty: none
  Value text1;
};
// The Fixed field is "Yes", and empty on the Japanese code page.
std::string MpxTaskRecord(const MpxTask& task, std::int32_t codePage);

// Record 75: the work in hours, with two decimals.
std::string MpxAssignment(const Value& pid, std::string_view units, std::string_view hours);

// Records 51 and 71.
inline constexpr std::string_view kMpxResourceNote = "51";
inline constexpr std::string_view kMpxTaskNote = "71";
std::string MpxNote(std::string_view record, std::string_view glossary);

// The text of a note record: an opening double quote and the text with each carriage return, and
// whatever character stands behind it, as one character of code 127. The last character is never
// copied.
std::string MpxNoteText(std::string_view glossary);

}  // namespace merivane::mpx
