// Copying an Access file aside, where a damaged one does no harm.
#pragma once

#include <string>

#include "store/work.h"

namespace merivane::store {

// Runs CopyAccessTables with limits on its time and on the size of the copy. Gives the reason why
// it failed, in UTF-8; empty when it did not.
// What `work` throws ends the copying.
std::string CopyAccessTablesAside(const std::string& path, const std::string& sqlitePath,
                                  Work& work);

}  // namespace merivane::store
