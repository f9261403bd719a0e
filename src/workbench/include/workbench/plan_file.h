// Plans as the workbench shows them: databases, MPX files and planning XML.
#pragma once

#include <cstdint>
#include <string>

#include "inspect/differences.h"
#include "platform/desktop.h"
#include "store/connection.h"
#include "workbench/file_view.h"

namespace merivane::workbench {

using namespace inspect;
using namespace platform;

// By the ending. A database of Microsoft Project may bear any: what is none of the others is held
// for one, and opening it tells whether it is.
FileKind KindOfOpened(const std::string& path);

// One project of an open database, with the model where it holds one. What a table lacks or can't
// be read stays out, and a line tells why. Errors of the database come up only where it holds
// neither a model nor a plan that can be read.
FileView ViewDatabase(Connection& connection, std::int32_t project, const DateTime& today);

// An MPX file or planning XML, brought into a temporary database, which is gone on return. What the
// reader shows is told in lines. Progress is shown on `shown`, from where RunCancelled comes up.
// Errors: a file that can't be opened, or of which no task can be read; the description is what the
// reader shows then.
FileView ViewPlanFile(const std::string& path, Desktop& shown);

}  // namespace merivane::workbench
