#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

#include "inspect/finding.h"
#include "runtime/text.h"

namespace merivane::inspect {

using namespace runtime;

namespace {

bool IsBlankLetter(char letter) { return letter == ' ' || letter == '\t'; }

std::size_t LetterCount(std::string_view word) {
  return word.size() -
         static_cast<std::size_t>(std::count_if(word.begin(), word.end(), IsBlankLetter));
}

std::string Compared(std::string_view word) {
  std::string text = UpperCase(std::string(word));
  std::erase_if(text, IsBlankLetter);
  return text;
}

// Characters to change, put in or take out.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, changed});
    }
  }
  return row.back();
}

// How far apart two words are; as far as nothing in common where that is too far to be a slip.
constexpr std::size_t kApart = 100;

std::size_t Slips(std::string_view word, std::string_view meant) {
  constexpr std::size_t kShortWord = 7;
  const std::size_t most = meant.size() > kShortWord ? 2 : 1;
  const std::size_t letters = LetterCount(word);
  const std::size_t meantLetters = LetterCount(meant);
  if (std::max(letters, meantLetters) - std::min(letters, meantLetters) > most) return kApart;
  const std::size_t slips = Distance(Compared(word), Compared(meant));
  return slips <= most ? slips : kApart;
}

}  // namespace

bool IsNearMiss(std::string_view word, std::string_view meant) {
  return word != meant && Slips(word, meant) < kApart;
}

std::string Suggestion(std::string_view word, std::span<const std::string_view> known) {
  if (std::find(known.begin(), known.end(), word) != known.end()) return {};
  const auto nearest = std::min_element(
      known.begin(), known.end(),
      [&](std::string_view a, std::string_view b) { return Slips(word, a) < Slips(word, b); });
  if (nearest == known.end() || !IsNearMiss(word, *nearest)) return {};
  return " Did you mean '" + std::string(*nearest) + "'?";
}

}  // namespace merivane::inspect
