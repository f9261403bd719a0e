// Files on the disk by their names: what stands there, how it is opened, made, moved and brought to
// the disk, and names for the files that a run makes for itself. Paths are UTF-8.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace merivane::runtime {

std::filesystem::path PathOf(const std::string& utf8);
std::string Utf8Of(const std::filesystem::path& path);

// The name of the file that stands, or would stand, behind `path`: every link is followed, one that
// leads nowhere yet too.
std::string Followed(const std::string& path);

// Whether the system takes two names of one folder for one.
bool IsSameFileName(const std::string& a, const std::string& b);

// False for a name that no file of the system can have: on Windows that of a device ("COM1.xml"),
// one on a drive without its folder ("C:plan.mdb"), one with a character like "*".
bool CanBeFileName(const std::string& path);

// The same file on the disk, whatever its names; false where either is not there.
bool IsSameFile(const std::string& a, const std::string& b);

// What tells the file that stands there from every other, one of the same bytes that took its name
// included. Empty where the system doesn't say.
std::string FileIdentity(const std::string& path);

// The same file, whatever its names; where neither is there, the same place on the disk.
bool WouldBeSameFile(const std::string& a, const std::string& b);

// A name for a file that its maker removes again: in the folder of temporary files (error 76 where
// there is none), in another, or beside `path` with its extension. What killed runs left behind
// under such names in that folder is removed once it is older than a day.
std::string TemporaryName();
std::string TemporaryNameIn(const std::filesystem::path& folder);
std::string TemporaryNameBeside(const std::string& path);

// Refuses a pipe or a device, which can't be read twice and may never end. Error: 75.
void RefuseDevice(const std::string& path);

// The names in a folder, without their places; none where it can't be listed.
std::vector<std::string> NamesIn(const std::filesystem::path& folder);

// What a file is opened for.
enum class FileUse { kRead, kWrite };

// A binary C stream of a UTF-8 path, or null with `errno` set; for writing the file is emptied or
// made. A folder is refused with EISDIR. Programs started later don't inherit the stream.
std::FILE* OpenStream(const std::string& path, FileUse use);

bool FolderExists(const std::string& path);  // the folder that holds `path`

// Makes an empty file; False where something stands there already. Errors: 61, 70, 75, 76.
bool MakeNewFile(const std::string& path);

// Whether the file may be written, and another one take its name, as things stand.
bool MayBeReplaced(const std::string& path);

// Gives the file `from` the name `to`, whose file goes; who has that one open keeps it. Nothing has
// changed where it fails.
std::error_code MoveInPlace(const std::filesystem::path& from, const std::filesystem::path& to);

// Waits until the disk holds what was written to the file. Error of the system (57, 61), or 70.
void SyncFile(const std::string& path);
// And until it holds the names in the folder of `path`, as far as the system can tell.
void SyncFolderOf(const std::string& path);

}  // namespace merivane::runtime
