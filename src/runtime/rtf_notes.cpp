#include "runtime/rtf_notes.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <vector>

#include "runtime/code_page.h"

namespace merivane::runtime {

namespace {

struct Symbol {
  std::string_view word;
  char character;
};
constexpr Symbol kSymbols[] = {
    {"par", '\n'},         {"line", '\n'},     {"row", '\n'},      {"sect", '\n'},
    {"page", '\n'},        {"tab", '\t'},      {"cell", '\t'},     {"emdash", '\x97'},
    {"endash", '\x96'},    {"lquote", '\x91'}, {"rquote", '\x92'}, {"ldblquote", '\x93'},
    {"rdblquote", '\x94'}, {"bullet", '\x95'},
};
constexpr std::string_view kHiddenGroups[] = {"fonttbl",   "colortbl", "stylesheet", "info",
                                              "pict",      "header",   "footer",     "object",
                                              "listtable", "generator"};

class RtfScanner {
 public:
  explicit RtfScanner(std::string_view rtf) : rtf_(rtf) {}

  PlainText Scan() {
    while (position_ < rtf_.size()) Step();
    while (!text_.empty() && text_.back() == '\n') text_.pop_back();
    return {std::move(text_), rtf_.starts_with("{\\rtf") && groups_.size() > 1};
  }

 private:
  struct Group {
    bool hidden = false;
    int bytesOfUnicode = 1;  // that stand behind a Unicode character for older readers
  };

  void Step() {
    const char character = rtf_[position_++];
    if (character == '{') {
      groups_.push_back(groups_.back());
    } else if (character == '}') {
      if (groups_.size() > 1) groups_.pop_back();
    } else if (character == '\\') {
      Control();
    } else if (character != '\r' && character != '\n') {
      Put(character);
    }
  }

  void Control() {
    if (position_ == rtf_.size()) return;
    const char character = rtf_[position_];
    if (std::isalpha(static_cast<unsigned char>(character)) != 0) {
      Word();
      return;
    }
    ++position_;
    if (character == '\'') {
      HexCharacter();
    } else if (character == '*') {
      groups_.back().hidden = true;
    } else if (character == '~') {
      Put('\xA0');
    } else if (character == '_') {
      Put('-');
    } else if (character == '\n' || character == '\r') {
      Put('\n');
    } else if (character != '-') {
      Put(character);
    }
  }

  void Word() {
    const std::size_t from = position_;
    const auto isLetter = [](unsigned char c) { return std::isalpha(c) != 0; };
    while (position_ < rtf_.size() && isLetter(static_cast<unsigned char>(rtf_[position_]))) {
      ++position_;
    }
    const std::string_view word = rtf_.substr(from, position_ - from);
    int number = 0;
    const char* end = rtf_.data() + rtf_.size();
    const auto parsed = std::from_chars(rtf_.data() + position_, end, number);
    position_ = static_cast<std::size_t>(parsed.ptr - rtf_.data());
    if (position_ < rtf_.size() && rtf_[position_] == ' ') ++position_;
    Apply(word, number);
  }

  void Apply(std::string_view word, int number) {
    if (word == "uc") {
      groups_.back().bytesOfUnicode = number;
    } else if (word == "u") {
      PutUnicode(number < 0 ? number + 0x10000 : number);
    } else if (std::ranges::find(kHiddenGroups, word) != std::end(kHiddenGroups)) {
      groups_.back().hidden = true;
    } else {
      const auto* symbol = std::ranges::find(kSymbols, word, &Symbol::word);
      if (symbol != std::end(kSymbols)) Put(symbol->character);
    }
  }

  void HexCharacter() {
    unsigned code = 0;
    const std::string_view digits = rtf_.substr(position_, 2);
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
    position_ += static_cast<std::size_t>(parsed.ptr - digits.data());
    if (code != 0) Put(static_cast<char>(code));
  }

  // A character beyond the first 65,536 comes as two halves.
  void PutUnicode(int code) {
    const bool isFirstHalf = code >= 0xD800 && code < 0xDC00;
    const bool isSecondHalf = code >= 0xDC00 && code < 0xE000;
    std::string character;
    if (isSecondHalf && firstHalf_ != 0) {
      AppendUtf8(character,
                 static_cast<char32_t>(0x10000 + ((firstHalf_ - 0xD800) << 10) + (code - 0xDC00)));
    } else if (!isFirstHalf) {
      const bool isCharacter = code > 0 && code < 0x10000 && !isSecondHalf;
      AppendUtf8(character, isCharacter ? static_cast<char32_t>(code) : U'?');
    }
    Put(character);
    firstHalf_ = isFirstHalf ? code : 0;
    skipped_ = groups_.back().bytesOfUnicode;
  }

  void Put(char character) { Put(ToUtf8({&character, 1})); }

  void Put(const std::string& character) {
    if (groups_.back().hidden) return;
    if (skipped_ > 0) {
      --skipped_;
    } else {
      text_ += character;
    }
  }

  std::string_view rtf_;
  std::size_t position_ = 0;
  std::vector<Group> groups_{Group{}};
  int skipped_ = 0;
  int firstHalf_ = 0;
  std::string text_;
};

}  // namespace

std::string RtfNote(std::string_view text) {
  return std::string(kRtfNoteHead).append(text).append(kRtfNoteTail);
}

std::optional<std::string_view> TextOfOwnRtfNote(std::string_view rtf) {
  if (rtf.size() < kRtfNoteHead.size() + kRtfNoteTail.size()) return std::nullopt;
  if (!rtf.starts_with(kRtfNoteHead) || !rtf.ends_with(kRtfNoteTail)) return std::nullopt;
  return rtf.substr(kRtfNoteHead.size(), rtf.size() - kRtfNoteHead.size() - kRtfNoteTail.size());
}

PlainText TextOfRtf(std::string_view rtf) { return RtfScanner(rtf).Scan(); }

}  // namespace merivane::runtime
