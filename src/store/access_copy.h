// Real Access files, known by their first bytes: loaded whole into a SQLite file by a process of
// its own, where a damaged one does no harm.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "runtime/file_names.h"
#include "store/work_listener.h"

namespace merivane::store {

// Runs CopyAccessTables with limits on its time and on the size of the copy. Gives the reason why
// it failed, in UTF-8; empty when it did not.
// What `work` throws ends the copying.
std::string CopyAccessTablesAside(const std::string& path, const std::string& sqlitePath,
                                  WorkListener& work);

// Both paths are UTF-8. Throws std::exception with the reason, in UTF-8. A damaged file can crash
// or hang the library that reads it, so this is called in a process that can be spared.
// `work` hears of each row.
void CopyAccessTables(const std::string& path, const std::string& sqlitePath, WorkListener& work);

// From here on this process may read `source` and the system's own files, and write in the folder
// of `copy`; it starts no program and no process, opens no connection and looks into no other
// process. Where the kernel knows no such limits (Landlock from 5.13 on, seccomp), the process goes
// on without.
void Confine(const std::string& source, const std::string& copy);

inline constexpr const char* kNoProcess = "no process can be started";
inline constexpr const char* kDamaged = "it is damaged";
inline constexpr const char* kEndless = "reading it never ends";
inline constexpr const char* kTooLarge = "reading it takes too much memory";

// Far above what whole files need: a slow machine loads several megabytes a second.
struct AccessLimits {
  std::chrono::seconds cpu;
  std::chrono::seconds wall;
  std::uintmax_t bytes;  // of the copy
  std::size_t memory = std::size_t{1} << 30U;
};

inline AccessLimits LimitsFor(const std::string& path) {
  std::error_code ignored;
  const std::uintmax_t size = std::filesystem::file_size(runtime::PathOf(path), ignored);
  const std::uintmax_t megabytes = ignored ? 0 : size >> 20U;
  return {.cpu = std::chrono::seconds(10 + megabytes),
          .wall = std::chrono::seconds(60 + 4 * megabytes),
          .bytes = (64 + 8 * megabytes) << 20U};
}

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
void LoadAccessFile(const std::string& path, const std::string& sqlitePath, WorkListener& work);

}  // namespace merivane::store
