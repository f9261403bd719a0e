// Words that were written nearly as they should be.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace merivane::inspect {

// Another word, from which this one differs by its blanks, by upper and lower case and by at most
// two characters (one in a short word).
bool IsNearMiss(std::string_view word, std::string_view meant);

// " Did you mean 'Shared Resource'?" for a word that nearly is one of these; empty for any other,
// and for one of them.
std::string Suggestion(std::string_view word, std::span<const std::string_view> known);

}  // namespace merivane::inspect
