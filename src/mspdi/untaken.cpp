#include "mspdi/untaken.h"

namespace merivane::mspdi {

namespace {

struct Words {
  const char* key;
  const char* one;   // behind "1 "
  const char* many;  // behind the count
  const char* fate;
};

constexpr Words kWords[kUntakenKinds] = {
    {"inactiveTasks", "inactive task", "inactive tasks", "left out"},
    {"manualTasks", "task scheduled by hand", "tasks scheduled by hand",
     "the duration is taken, the dates aren't"},
    {"materialResources", "material resource", "material resources",
     "an object whose glossary tells the kind"},
    {"costResources", "cost resource", "cost resources", "an object whose glossary tells the kind"},
    {"lags", "lag of a link", "lags of links", "left out"},
    {"startToFinishLinks", "start-to-finish link", "start-to-finish links", "left out"},
    {"elapsedDurations", "duration that runs day and night", "durations that run day and night",
     "taken as working time"},
    {"subprojects", "inserted project", "inserted projects", "taken as a task"},
    {"outerLinks", "link to another project", "links to other projects", "left out"},
    {"constraints", "constraint of a task", "constraints of tasks", "left out"},
    {"progress", "task with progress", "tasks with progress", "the progress is left out"}};

}  // namespace

const char* KeyOf(Untaken kind) { return kWords[static_cast<std::size_t>(kind)].key; }

std::string UntakenRows::Text() const {
  std::string text;
  for (std::size_t kind = 0; kind < kUntakenKinds; ++kind) {
    const std::size_t count = rows_[kind].size();
    if (count == 0) continue;
    const Words& words = kWords[kind];
    text += (text.empty() ? "" : "\n") + std::to_string(count) + " " +
            (count == 1 ? words.one : words.many) + ": " + words.fate;
  }
  return text;
}

}  // namespace merivane::mspdi
