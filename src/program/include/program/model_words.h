// Words of the model's tables and texts that more than one part compares or writes.
#pragma once

#include <string>
#include <string_view>

namespace merivane::program {

// Kinds of a link's ends.
inline constexpr std::string_view kProcessOccurrence = "Process-Occurrence";
inline constexpr std::string_view kJunction = "Junction";

// Cardinality of a junction.
inline constexpr std::string_view kFanIn = "Fan In";
inline constexpr std::string_view kFanOut = "Fan Out";

// Type of a junction. The writer of a plan's text says "Sync. And", and names that word itself.
inline constexpr std::string_view kSyncAnd = "Sync. AND";
inline constexpr std::string_view kAsyncAnd = "Async. AND";
inline constexpr std::string_view kSyncOr = "Sync. OR";
inline constexpr std::string_view kAsyncOr = "Async. OR";
inline constexpr std::string_view kXor = "XOR";

// Types of an object that goes to the plan.
inline constexpr std::string_view kSharedResource = "Shared Resource";
inline constexpr std::string_view kDedicatedResource = "Dedicated Resource";
inline constexpr std::string_view kTransport = "Transport";

// The closing keyword of a list or block: "End  " goes in behind the indentation.
inline std::string EndOf(std::string_view opening) {
  const std::size_t indent = opening.find_first_not_of(' ');
  std::string closing(opening.substr(0, indent));
  closing += "End  ";
  closing += opening.substr(indent);
  return closing;
}

}  // namespace merivane::program
