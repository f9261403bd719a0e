#include "mspdi/untaken.h"

namespace merivane::mspdi {

namespace {

struct Words {
  const char* key;
  const char* one;   // behind "1 "
  const char* many;  // behind the count
  const char* fate;
  const char* sentence;
};

constexpr Words kWords[kUntakenKinds] = {
    {"inactiveTasks", "inactive task", "inactive tasks", "left out",
     "It is inactive; a model knows no such task, so that it is taken as any other."},
    {"manualTasks", "task scheduled by hand", "tasks scheduled by hand",
     "the duration is taken, the dates aren't",
     "It is scheduled by hand; its duration is taken, its dates aren't."},
    {"materialResources", "material resource", "material resources",
     "an object whose glossary tells the kind", ""},
    {"costResources", "cost resource", "cost resources", "an object whose glossary tells the kind",
     ""},
    {"lags", "lag of a link", "lags of links", "left out", ""},
    {"startToFinishLinks", "start-to-finish link", "start-to-finish links", "left out", ""},
    {"elapsedDurations", "duration that runs day and night", "durations that run day and night",
     "taken as working time", "Its duration runs day and night; it is taken as working time."},
    {"subprojects", "inserted project", "inserted projects", "taken as a task",
     "It is an inserted project; it is taken as a task."},
    {"outerLinks", "link to another project", "links to other projects", "left out",
     "Its link to another project is left out."},
    {"constraints", "constraint of a task", "constraints of tasks", "left out",
     "Its constraint is left out."},
    {"progress", "task with progress", "tasks with progress", "the progress is left out",
     "Its progress is left out."},
    {"namelessTasks", "", "", "", "It has no name; it is called by its number."},
    {"taskCalendars", "", "", "", "Its calendar is left out."},
    {"fixedCosts", "", "", "", "Its fixed cost is left out."},
    {"work", "", "", "",
     "The work of an assignment isn't its duration times the units; a model holds the units "
     "alone."},
    {"resourceCosts", "", "", "", "Its rates and its cost per use are left out."}};
constexpr std::size_t kCounted = static_cast<std::size_t>(Untaken::kProgress) + 1;

}  // namespace

const char* KeyOf(Untaken kind) { return kWords[static_cast<std::size_t>(kind)].key; }

const char* SentenceOf(Untaken kind) { return kWords[static_cast<std::size_t>(kind)].sentence; }

std::string UntakenRows::Text() const {
  std::string text;
  for (std::size_t kind = 0; kind < kCounted; ++kind) {
    const std::size_t count = rows_[kind].size();
    if (count == 0) continue;
    const Words& words = kWords[kind];
    text += (text.empty() ? "" : "\n") + std::to_string(count) + " " +
            (count == 1 ? words.one : words.many) + ": " + words.fate;
  }
  return text;
}

}  // namespace merivane::mspdi
