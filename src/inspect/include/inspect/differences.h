// Two files of any kind that the program reads, held against each other.
//
//   const Differences told = CompareFiles({"model.txt"}, {"plan.mdb", 1}, templatePath);
//   if (told.changes.empty()) ...  // the same
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inspect/model_snapshot.h"
#include "platform/desktop.h"

namespace merivane::inspect {

using namespace platform;

enum class FileKind { kText, kDatabase, kMpx, kXml };

// By the ending of the name; nothing for another one.
std::optional<FileKind> KindOfFile(const std::string& path);

struct ComparedFile {
  std::string path;                          // UTF-8
  std::optional<std::int32_t> project = {};  // of a database
};

struct Differences {
  bool ofModels = false;             // otherwise of plans
  std::vector<MergeChange> changes;  // from the first to the second, by kind of element
};

// Models are compared where both files hold one (a text in either form, a database with a scenario)
// and one of them is a text. Otherwise plans are: what a text gives is its translation. Creators,
// dates, places in drawings, constraints and progress are not compared. Nothing is written.
// Progress is shown on `shown`, unless it is null, where the user may cancel: RunCancelled comes up
// then.
//
// Errors: a RunTimeError whose description names the file, for one that can't be read or
// translated, or whose translation asks something.
Differences CompareFiles(const ComparedFile& before, const ComparedFile& after,
                         const std::string& templatePath, Desktop* shown = nullptr);

}  // namespace merivane::inspect
