// Fixed lines and record forms of the program's MPX dialect, and the field primitives of its
// reader. Text only: no state, no database.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace merivane {

// First line for a code page, and the lines of records 10, 11, 12, 20 and 25 behind it.
std::vector<std::string> MpxHead(std::int32_t codePage);
std::string MpxProjectHeader(std::string_view path, std::string_view date);  // record 30
extern const std::string_view kMpxResourceFields;        // record 40
extern const std::string_view kMpxResourceFieldNumbers;  // record 41
extern const std::string_view kMpxTaskFields;            // record 60
extern const std::string_view kMpxTaskFieldNumbers;      // record 61
extern const std::string_view kMpxResourceCalendar;      // record 55

// The text of a note record: an opening double quote and the text with each line break as one
// character of code 127. The last character is never copied.
std::string MpxNoteText(std::string_view glossary);

}  // namespace merivane
