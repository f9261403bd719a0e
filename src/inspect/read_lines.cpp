#include "read_lines.h"

#include <functional>
#include <limits>
#include <new>

namespace merivane::inspect {

namespace {

constexpr unsigned kBits = 7;
constexpr std::size_t kMore = std::size_t{1} << kBits;

}  // namespace

// What is reserved takes no memory before it is used.
ReadLines::ReadLines(std::size_t textSize) : recent_(kRecent) {
  constexpr std::size_t kShortLine = 16;
  text_.reserve(textSize);
  places_.reserve(textSize / kShortLine);
  text_.push_back('\0');  // the empty line, which all places of `recent_` are at first
}

std::string_view ReadLines::LineAt(std::uint32_t place) const {
  std::size_t length = 0;
  for (unsigned shift = 0;; shift += kBits) {
    const auto byte = static_cast<unsigned char>(text_[place++]);
    length |= (byte % kMore) << shift;
    if (byte < kMore) return std::string_view(text_).substr(place, length);
  }
}

void ReadLines::Add(std::string_view line) {
  ++size_;
  std::uint32_t& recent = recent_[std::hash<std::string_view>()(line) % kRecent];
  if (LineAt(recent) != line) {
    if (text_.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    recent = static_cast<std::uint32_t>(text_.size());
    std::size_t length = line.size();
    for (; length >= kMore; length >>= kBits) {
      text_.push_back(static_cast<char>(length % kMore + kMore));
    }
    text_.push_back(static_cast<char>(length));
    text_ += line;
  }
  places_.push_back(recent);
}

void ReadLines::Forget() {
  text_ = {};
  places_ = {};
  recent_ = {};
}

}  // namespace merivane::inspect
