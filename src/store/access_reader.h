// The reader of real Access files: known by their first bytes, loaded whole into a SQLite file.
#pragma once

#include <string>

#include "store/work.h"

namespace merivane::store {

// True for a file that begins as an Access database does (any generation). Paths are UTF-8. A file
// that can't be read is none.
bool IsAccessFile(const std::string& path);

// Fills the SQLite file `sqlitePath` (not there yet, or empty) with all user tables of the Access
// file: their own names, columns, order and rows. Texts are UTF-8 and compare without case, dates
// are texts in the run time's form, yes/no is -1 and 0, memo and OLE columns come whole, Null and
// empty text stay apart. Declared types are those of the template. A table whose definition can't
// be read is left out.
//
// The work runs in a child process with limits on its time, so that a damaged file can neither
// crash nor hang the program. A file that can't be read, that has lost rows or long values, or that
// holds no table ends in a RunTimeError (kDatabaseError) with a description that names the file,
// and nothing is left at `sqlitePath`.
// `work` hears of the wait for that process, which ends with what `work` throws.
void LoadAccessFile(const std::string& path, const std::string& sqlitePath, Work& work);

}  // namespace merivane::store
