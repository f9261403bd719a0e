#include "element.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "runtime/file_names.h"

namespace merivane::mspdi {

namespace {

constexpr double kThousandthsOfSecond = 1000.0 / 60;  // of a minute

// By XML, of the characters of one byte.
bool Forbidden(char character) {
  return static_cast<unsigned char>(character) < ' ' && character != '\t' && character != '\n';
}

// Nor are these two, of three bytes, characters for XML.
constexpr std::string_view kNoCharacters[] = {"\xEF\xBF\xBE", "\xEF\xBF\xBF"};

// Sets `lost` where a character can't go.
std::string Allowed(std::string_view text, bool& lost) {
  std::string kept;
  kept.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r') {
      if (i + 1 == text.size() || text[i + 1] != '\n') kept += '\n';
    } else if (std::ranges::find(kNoCharacters, text.substr(i, 3)) != std::end(kNoCharacters)) {
      kept += '?';
      i += 2;
      lost = true;
    } else if (Forbidden(text[i])) {
      lost = true;
    } else {
      kept += text[i];
    }
  }
  return kept;
}

// Empty for a character that stands for itself.
std::string_view Escaped(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return {};
  }
}

// With zeros in front.
void PutDigits(char* to, int digits, int number) {
  for (; digits > 0; number /= 10) to[--digits] = static_cast<char>('0' + number % 10);
}

}  // namespace

WrittenXml::WrittenXml(const Output& output) : output_(output), file_(output) {
  text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
}

WrittenXml::~WrittenXml() {
  if (!file_) return;
  file_.reset();
  if (output_.path != output_.name) RemoveFile(PathOf(output_.path));
}

void WrittenXml::Flush() {
  file_->Write(text_);
  text_.clear();
}

void WrittenXml::Close() {
  Flush();
  file_->Close();
  file_.reset();
}

void WrittenXml::Indent(std::size_t depth) { text_.append(depth, ' '); }

Element::Element(WrittenXml& file, const char* name, std::string_view attributes)
    : file_(file), name_(name), depth_(0) {
  Begin(attributes);
}

Element::Element(Element& parent, const char* name)
    : file_(parent.file_), name_(name), depth_(parent.depth_ + 1) {
  parent.BeginContent();
  Begin("");
}

Element::~Element() {
  constexpr std::size_t kBlock = 1 << 16;
  if (hasContent_) {
    file_.Indent(depth_);
    file_.text_.append("</").append(name_).append(">\n");
  } else {
    file_.text_ += " />\n";
  }
  if (file_.text_.size() >= kBlock) file_.Flush();
}

void Element::Begin(std::string_view attributes) {
  file_.Indent(depth_);
  file_.text_.append("<").append(name_).append(attributes);
}

void Element::BeginContent() {
  if (!hasContent_) file_.text_ += ">\n";
  hasContent_ = true;
}

void Element::Add(const char* name, std::string_view text) {
  BeginContent();
  file_.Indent(depth_ + 1);
  std::string& to = file_.text_;
  const std::string_view tag(name);
  to.append(1, '<').append(tag).append(1, '>');
  std::size_t written = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view escaped = Escaped(text[at]);
    if (escaped.empty()) continue;
    to.append(text, written, at - written).append(escaped);
    written = at + 1;
  }
  to.append(text, written).append("</", 2).append(tag).append(">\n", 2);
}

void Element::Text(const char* name, std::string_view text, std::size_t most) {
  bool lost = false;
  const std::string allowed = Allowed(text, lost);
  const std::string written = WellFormedUtf8(allowed, most);
  if (lost || written != allowed) ++LossesOfFile().texts;
  if (!written.empty()) Add(name, written);
}

void Element::Integer(const char* name, std::int64_t number) {
  std::array<char, 24> text{};
  Add(name, {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr});
}

void Element::Decimal(const char* name, double number) {
  std::array<char, 400> text{};
  Add(name, {text.data(),
             std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed)
                 .ptr});
}

void Element::Date(const char* name, const DateTime& date) {
  char text[] = "0000-00-00T00:00:00";
  PutDigits(text, 4, date.year);
  PutDigits(text + 5, 2, date.month);
  PutDigits(text + 8, 2, date.day);
  PutDigits(text + 11, 2, date.seconds / 3600);
  PutDigits(text + 14, 2, date.seconds / 60 % 60);
  PutDigits(text + 17, 2, date.seconds % 60);
  Add(name, text);
}

void Element::Time(const char* name, int seconds) {
  char text[] = "00:00:00";
  PutDigits(text, 2, seconds / 3600 % 24);
  PutDigits(text + 3, 2, seconds / 60 % 60);
  PutDigits(text + 6, 2, seconds % 60);
  Add(name, text);
}

void Element::Duration(const char* name, schedule::Tenths duration) {
  Seconds(name, duration * kSecondsOfTenth);
}

void Element::Seconds(const char* name, std::int64_t seconds) {
  std::array<char, 64> text{'P', 'T'};
  char* at = text.data() + 2;
  const auto put = [&](std::int64_t number, char unit) {
    at = std::to_chars(at, text.data() + text.size() - 1, number).ptr;
    *at++ = unit;
  };
  put(seconds / 3600, 'H');
  put(seconds / 60 % 60, 'M');
  put(seconds % 60, 'S');
  Add(name, {text.data(), at});
}

bool Element::Stored(const char* name, Kind kind, const Value& value) {
  if (value.IsNull()) return false;
  if (kind == Kind::kNote) {
    Text(name, PlainNote(value, LossesOfFile().notes));
    return true;
  }
  if (value.IsBytes()) return false;
  if (kind == Kind::kText) {
    Text(name, Joined(value), kLongestText);
    return true;
  }
  if (kind == Kind::kDate) {
    const auto date = ParseDate(Joined(value));
    if (date) Date(name, *date);
    return date.has_value();
  }
  if (!IsNumeric(value)) return false;
  const double number = ToDouble(value);
  constexpr double kMost = 9e15;  // whole numbers up to here are exact
  if (!(std::abs(number) <= kMost)) return false;
  constexpr double kMostUnits = 2147483647;
  if (kind == Kind::kUnits && !(number >= 0 && number <= kMostUnits)) return false;
  if (kind == Kind::kDecimal || kind == Kind::kUnits) {
    Decimal(name, number);
    return true;
  }
  if (kind == Kind::kFlag) {
    Flag(name, number != 0);
    return true;
  }
  constexpr double kNoRateFormat = 6;
  if (kind == Kind::kRateFormat && number == kNoRateFormat) return false;
  if (kind == Kind::kInteger || kind == Kind::kRateFormat) {
    Integer(name, std::llround(number));
    return true;
  }
  if (number < 0) return false;
  Seconds(name, kind == Kind::kWork ? std::llround(number / kThousandthsOfSecond)
                                    : std::llround(number) * kSecondsOfTenth);
  return true;
}

}  // namespace merivane::mspdi
