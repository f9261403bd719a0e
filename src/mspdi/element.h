// The file as it is written, element by element, each value in the text form of its type. What is
// written leaves memory at once, so that a plan of any size takes a block of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "runtime/dates.h"
#include "runtime/new_file.h"
#include "runtime/value.h"
#include "schedule/working_time.h"

namespace merivane::mspdi {

using namespace runtime;
using namespace schedule;

// What a column of the tables holds, and so how its value is written.
enum class Kind {
  kText,        // without characters that XML forbids; line breaks are LF
  kInteger,     //
  kRateFormat,  // a whole number; 1 to 5 are minutes to months, 7 years, 8 material
  kFlag,        // not 0: true
  kDecimal,     // never with an exponent
  kUnits,       // the same, from 0 to what a file may hold
  kDate,        // text of a date
  kDuration,    // tenths of a minute
  kWork,        // thousandths of a minute
  kNote,        // rich text as bytes
};

inline constexpr std::size_t kLongestText = 512;  // of the schema, for texts of one line
inline constexpr std::size_t kLongestName = 255;  // that Project takes, of a task or a resource

// What can't go into a file as the tables have it, counted.
struct Losses {
  std::size_t texts = 0;      // longer than the schema takes, or with characters that it refuses
  std::size_t notes = 0;      // rich text that breaks off; what there is of it is written
  std::size_t baselines = 0;  // of a number beyond 10
  std::size_t rates = 0;      // of a resource that has more than the schema takes
  std::size_t periods =
      0;  // rows of work spread over time without a beginning, or of no known kind
};

class WrittenXml {
 public:
  // Error of the system, or 70, where the file can't be made.
  explicit WrittenXml(const Output& output);
  ~WrittenXml();  // half a file takes no place, unless it was written where it stands
  WrittenXml(const WrittenXml&) = delete;
  WrittenXml& operator=(const WrittenXml&) = delete;

  // Error of the system, or 57, where not all of it was written.
  void Close();

  Losses losses;

 private:
  friend class Element;
  void Flush();
  void Indent(std::size_t depth);

  const Output output_;
  std::optional<OutputFile> file_;  // until it is closed
  std::string text_;                // that isn't in the file yet
};

// Open as long as it lives: a child is gone before the next one begins.
class Element {
 public:
  Element(WrittenXml& file, const char* name, std::string_view attributes = "");
  ~Element();
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

  Element Child(const char* name) { return {*this, name}; }
  Losses& LossesOfFile() { return file_.losses; }

  // UTF-8. At most `most` characters; nothing for an empty text.
  void Text(const char* name, std::string_view text, std::size_t most = std::string_view::npos);
  void Integer(const char* name, std::int64_t number);
  void Flag(const char* name, bool flag) { Integer(name, flag ? 1 : 0); }
  void Decimal(const char* name, double number);
  void Date(const char* name, const DateTime& date);
  void Time(const char* name, int seconds);  // of the day; midnight at its end is 00:00:00
  void Duration(const char* name, schedule::Tenths duration);

  // False, and nothing written, for Null and for what isn't of the kind.
  bool Stored(const char* name, Kind kind, const Value& value);

 private:
  Element(Element& parent, const char* name);
  void Begin(std::string_view attributes);
  void BeginContent();
  void Seconds(const char* name, std::int64_t seconds);
  void Add(const char* name, std::string_view text);

  WrittenXml& file_;
  const char* name_;
  std::size_t depth_;
  bool hasContent_ = false;
};

// The readable text of a column of rich text; empty for Null.
std::string PlainNote(const Value& rtf, std::size_t& brokenOff);

}  // namespace merivane::mspdi
