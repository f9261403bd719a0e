// The projects of a database, the one that a command line names, and the door of a merge with it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "session.h"
#include "store/connection.h"

namespace merivane::batch {

using namespace store;

struct ProjectRow {
  std::optional<std::int32_t> id;  // nothing: Null in the table
  std::string name;                // Windows-1252
  long tasks = 0;                  // without the template's row
};

// Errors of the database come up as RunTimeErrors.
std::vector<ProjectRow> ListProjects(Workspace& workspace, const std::string& path);

// The project that `idOrName` (UTF-8) names: an id first, then a name. Nothing, with the reason,
// for an unknown or ambiguous one.
std::optional<std::int32_t> FindProject(const std::vector<ProjectRow>& projects,
                                        const std::string& idOrName, std::string& reason);

// The project that `idOrName` names in the database. Nothing, behind a word, where there is none.
std::optional<std::int32_t> FindMergedProject(Session& session, const std::string& interim,
                                              const std::string& idOrName);

// Goes through the door of the merge, which asks the database for its projects; nothing is written.
// The exit status of a refusal, behind a word.
std::optional<int> RefusalOfMerge(Session& session, const std::string& interim,
                                  std::int32_t project);

}  // namespace merivane::batch
