// The lines of a text that was read. A model repeats most of its lines: one that stood shortly
// before is held once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace merivane::inspect {

class ReadLines {
 public:
  // `textSize`: of all lines together, about; in bytes.
  explicit ReadLines(std::size_t textSize);

  void Add(std::string_view line);
  std::size_t Size() const { return size_; }
  // REQUIRES: `number` from 1 to Size(), and Forget() not called.
  std::string_view At(std::size_t number) const { return LineAt(places_[number - 1]); }

  // The number of lines stays.
  void Forget();

 private:
  static constexpr std::size_t kRecent = 1 << 14;

  std::string_view LineAt(std::uint32_t place) const;

  std::string text_;                   // of each line its length, seven bits a byte, and the line
  std::vector<std::uint32_t> places_;  // of each line in text_
  std::vector<std::uint32_t> recent_;  // by their hash, places of lines
  std::size_t size_ = 0;
};

}  // namespace merivane::inspect
