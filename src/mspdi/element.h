// One element under construction: its children in order, each in the text form of its type.
#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "runtime/dates.h"
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

class Element {
 public:
  Element(pugi::xml_node node, Losses& losses) : node_(node), losses_(&losses) {}

  Element Child(const char* name) { return {node_.append_child(name), *losses_}; }
  Losses& LossesOfFile() { return *losses_; }

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
  void Seconds(const char* name, std::int64_t seconds);
  void Add(const char* name, const char* text) {
    node_.append_child(name).append_child(pugi::node_pcdata).set_value(text);
  }

  pugi::xml_node node_;
  Losses* losses_;
};

}  // namespace merivane::mspdi
