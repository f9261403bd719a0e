
#include <algorithm>
#include <iterator>

#include "mpx/mpx_format.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::mpx {

using namespace runtime;

namespace {

// Where a field lies: `begin` behind the comma in front of it, `end` at the comma behind it.
struct FieldPlace {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool quoted = false;
  bool refused = false;  // the way ends here, at a name that can't stand in the model
};

// The ways of the two look-ups differ in one field and the title of their box.
struct FieldWalk {
  std::string_view line;
  bool quotesInField8 = false;
  std::string_view title;

  // Nothing where the line holds no such field.
  [[nodiscard]] std::optional<FieldPlace> Find(int n) const {
    FieldPlace place;
    for (int field = 1;; ++field) {
      if (!FindEnd(field, place)) return std::nullopt;
      if (place.refused || field == n) return place;
      place.begin = place.end + 1;
    }
  }

  [[nodiscard]] NameRefusal Refusal() const {
    return {
        "Merivane requires that Task and Resource names do not have double quotes.  "
        "Please change '" +
            std::string(line) + "'.",
        std::string(title)};
  }

 private:
  bool FindEnd(int field, FieldPlace& place) const {
    const bool quotesCount = field == 3 || field == 4 || (field == 8 && quotesInField8);
    place.quoted = quotesCount && place.begin < line.size() && line[place.begin] == '"';
    if (!place.quoted) {
      place.end = line.find(',', place.begin);
      return place.end != std::string_view::npos;
    }
    const std::size_t closing = line.find('"', place.begin + 1);
    if (closing == std::string_view::npos) return false;
    place.end = closing + 1;
    const bool another = place.end < line.size() && line[place.end] == '"';
    place.refused = field != 8 && (another || closing == place.begin + 1);
    return place.refused || place.end < line.size();
  }
};

std::string_view Between(std::string_view line, std::size_t begin, std::size_t end) {
  return line.substr(begin, end - begin);
}

constexpr double kMinutesPerDay = 480;
constexpr double kHoursPerDay = 8;
constexpr double kDaysPerWeek = 5;
constexpr std::size_t kJapaneseDateLength = 8;

std::string Days(std::string_view number, char unit) {
  if (!IsNumericText(number)) return "1.00";
  const double count = ToDouble(number);
  switch (unit) {
    case 'm':
      return FixedTwo(count / kMinutesPerDay);
    case 'h':
      return FixedTwo(count / kHoursPerDay);
    case 'w':
      return FixedTwo(count * kDaysPerWeek);
    default:
      return FixedTwo(count);
  }
}

char LetterOf(std::int16_t defaultUnits) {
  switch (defaultUnits) {
    case 0:
      return 'm';
    case 1:
      return 'h';
    case 3:
      return 'w';
    default:
      return 'd';
  }
}

// The first of the letters that stands anywhere in the text.
char LetterIn(std::string_view text) {
  for (const char letter : {'m', 'h', 'w'}) {
    if (text.find(letter) != std::string_view::npos) return letter;
  }
  return 'd';
}

}  // namespace

std::int16_t RecordNumber(std::string_view line) {
  const std::size_t comma = line.find(',');
  if (comma == std::string_view::npos) return 0;
  const std::string_view number = line.substr(0, comma);
  return IsNumericText(number) ? ToInt16(number) : std::int16_t{0};
}

FoundField GetField(std::string_view line, int n) {
  const FieldWalk walk{
      .line = line, .quotesInField8 = true, .title = "Project to Celvar Translator"};
  const auto place = walk.Find(n);
  if (!place) return {};
  if (place->refused) return walk.Refusal();
  return std::string(Between(line, place->begin, place->quoted ? place->end - 1 : place->end));
}

FoundField GetPredecessorField(std::string_view line, int n) {
  const FieldWalk walk{
      .line = line, .quotesInField8 = false, .title = "Project to Celvar Translator."};
  const auto place = walk.Find(n);
  if (!place) return {};
  if (place->refused) return walk.Refusal();
  const std::string_view field = Between(line, place->begin, place->end);
  if (!Holds(field, "\"")) return std::string(field);
  const std::size_t closing = line.find('"', place->begin + 1);
  if (closing == std::string_view::npos) return {};
  return std::string(Between(line, place->begin + 1, closing));
}

std::string GetLastField(std::string_view line) {
  const std::size_t comma = line.rfind(',');
  return comma == std::string_view::npos ? std::string() : std::string(line.substr(comma + 1));
}

std::optional<NameRefusal> RefusalOfTaskName(const std::string& name) {
  if (!Holds(name, "\"")) return std::nullopt;
  return NameRefusal{
      "Merivane requires that Task names do not have commas.  Please change '" + name + "'.",
      "Project to Celvar Translator. "};
}

std::optional<NameRefusal> RefusalOfResourceName(const std::string& name) {
  if (!Holds(name, "\"") && !Holds(name, ",")) return std::nullopt;
  return NameRefusal{
      "Merivane requires that Resource names do not have commas or double quotes.  Please change "
      "'" +
          name + "'.",
      "Project to Celvar Translator."};
}

std::string ConvertDuration(std::string_view text, std::int16_t defaultUnits) {
  if (IsNumericText(text)) return Days(text, LetterOf(defaultUnits));
  return Days(Left(text, text.empty() ? 0 : std::ssize(text) - 1), LetterIn(text));
}

std::string ExtractStartDate(std::string_view text, std::int32_t codePage) {
  const std::size_t digit = text.find_first_of("0123456789");
  if (digit == std::string_view::npos || digit + 1 == text.size()) return {};
  std::string date(text.substr(digit));
  if (codePage == kJapaneseCodePage) date.resize(std::min(date.size(), kJapaneseDateLength));
  return date;
}

}  // namespace merivane::mpx
