// The projects of a database for a combo box.
#pragma once

#include <optional>

#include "runtime/run_time_error.h"
#include "shell/form.h"
#include "store/connection.h"

namespace merivane::shell {

using namespace store;

// Fills the combo with PROJ_NAME and PROJ_ID of each project. True when the database has a project
// and the first task's outline number isn't Null; otherwise a box tells why. A database error
// yields False without a box, and is kept in `failure`.
bool LoadProjectList(Desktop& desktop, Connection* connection, ComboBox& combo,
                     std::optional<RunTimeError>& failure);

}  // namespace merivane::shell
