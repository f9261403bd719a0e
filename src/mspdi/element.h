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

class Element {
 public:
  // `cut` counts the texts that can't go as they are.
  Element(pugi::xml_node node, std::size_t& cut) : node_(node), cut_(&cut) {}

  Element Child(const char* name) { return {node_.append_child(name), *cut_}; }

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
  std::size_t* cut_;
};

}  // namespace merivane::mspdi
