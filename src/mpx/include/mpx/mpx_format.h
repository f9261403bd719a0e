// The program's MPX dialect: fixed lines and record forms as they are written, and the fields of
// one line as the reader takes them. Text only: no state, no database.
//
//   std::vector<std::string> lines = MpxHead(kDefaultOemCodePage);
//   lines.emplace_back(kMpxTaskFields);
//   lines.push_back(MpxTaskRecord({4, "Dig, fill", "0.40d", 2, "3,5", 17}, kDefaultOemCodePage));
//   RecordNumber(lines.back());                        // 70
//   std::get<std::string>(GetField(lines.back(), 2));  // "4"
//
// Lines are Windows-1252, without their ends. A Null value gives an empty field. Nothing fails but
// a number beyond 16 bits (error 6); what a line doesn't hold comes empty, and a name that can't
// stand in the model as a NameRefusal. Results own their text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
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

// Fields of one line, and the durations and dates in them. They are numbered from 1, and field 1 is
// the record number.

// A name that can't stand in the model, as a box tells it.
struct NameRefusal {
  std::string text;
  std::string title;
};

// The number ahead of the first comma; 0 where there is no comma or no number. Error 6 beyond 16
// bits.
std::int16_t RecordNumber(std::string_view line);

using FoundField = std::variant<std::string, NameRefusal>;

// Field `n`; empty where no comma follows it, so the last field of a line is never found here.
// Commas inside double quotes belong to the field in fields 3, 4 and 8 only; such a field comes
// with its opening quote and without its closing one. A quote that is never closed ends the search.
// A quote inside the quotes of field 3 or 4, and an empty pair there, is a name that is refused.
FoundField GetField(std::string_view line, int n);

// The same for the list of predecessors: quotes count in fields 3 and 4 on the way there, and a
// quoted list comes whole and without its quotes, commas included; empty where it isn't closed.
FoundField GetPredecessorField(std::string_view line, int n);

// The text behind the last comma; empty without a comma.
std::string GetLastField(std::string_view line);

// Refused are a task name with a double quote (a name with a comma comes with its opening quote),
// and a resource name with a comma or a double quote.
std::optional<NameRefusal> RefusalOfTaskName(const std::string& name);
std::optional<NameRefusal> RefusalOfResourceName(const std::string& name);

// Days of 8 hours, five to a week, as text with two decimals. A number alone counts in
// `defaultUnits` (0 minutes, 1 hours, 2 or any other days, 3 weeks); otherwise the text ends with
// the small letter of its unit. What isn't understood (elapsed times among it) is "1.00".
std::string ConvertDuration(std::string_view text, std::int16_t defaultUnits);

// The text from its first digit on, empty where no digit stands before the last character. With
// code page 932 no more than eight characters.
std::string ExtractStartDate(std::string_view text, std::int32_t codePage);

}  // namespace merivane::mpx
