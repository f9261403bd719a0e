// What a merge asks of the database that holds the model, before it runs or is tried.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "session.h"

namespace merivane::batch {

// The project that `idOrName` names in the database. Nothing, behind a word, where there is none.
std::optional<std::int32_t> FindMergedProject(Session& session, const std::string& interim,
                                              const std::string& idOrName);

// Goes through the door of the merge, which asks the database for its projects; nothing is written.
// The exit status of a refusal, behind a word.
std::optional<int> RefusalOfMerge(Session& session, const std::string& interim,
                                  std::int32_t project);

}  // namespace merivane::batch
