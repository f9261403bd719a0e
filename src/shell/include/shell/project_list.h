// The projects of a database for a combo box.
#pragma once

#include "shell/form.h"
#include "store/connection.h"

namespace merivane::shell {

using namespace store;

// Fills the combo with PROJ_NAME and PROJ_ID of each project. True when the database has a project
// and the first task's outline number isn't Null; otherwise a box tells why, and a database error
// yields False without a word.
bool LoadProjectList(Desktop& desktop, Connection* connection, ComboBox& combo);

}  // namespace merivane::shell
