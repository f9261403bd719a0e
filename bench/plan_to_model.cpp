#include <algorithm>
#include <cstdio>

#include "bench_support.h"
#include "neutraltext/modProjectToIDEF3.h"
#include "platform/scripted_desktop.h"

namespace merivane::bench {

using namespace neutraltext;

namespace {

struct Shape {
  const char* name;
  // Outline number of task `uid` (from 1); the level is its count of parts.
  std::string (*outline)(int uid);
};

constexpr int kDeepLevels = 40;
constexpr int kWideChildren = 50;

std::string FlatOutline(int uid) { return std::to_string(uid); }

// Chains of forty levels, one task a level.
std::string DeepOutline(int uid) {
  std::string outline = std::to_string((uid - 1) / kDeepLevels + 1);
  for (int level = 0; level < (uid - 1) % kDeepLevels; ++level) outline += ".1";
  return outline;
}

// Summary tasks of fifty children each.
std::string WideOutline(int uid) {
  const int group = (uid - 1) / (kWideChildren + 1) + 1;
  const int child = (uid - 1) % (kWideChildren + 1);
  return child == 0 ? std::to_string(group) : std::to_string(group) + "." + std::to_string(child);
}

constexpr Shape kShapes[] = {
    {"one level", FlatOutline}, {"deep", DeepOutline}, {"wide", WideOutline}};

void MakePlan(const std::string& database, const Shape& shape, int size) {
  std::string sql = "begin; insert into MSP_PROJECTS (PROJ_ID, PROJ_NAME) values (1, 'Bench');";
  for (int uid = 1; uid <= size; ++uid) {
    const std::string outline = shape.outline(uid);
    const auto level = std::count(outline.begin(), outline.end(), '.') + 1;
    const std::string number = std::to_string(uid);
    sql +=
        "insert into MSP_TASKS (PROJ_ID, TASK_UID, TASK_ID, TASK_NAME, TASK_OUTLINE_LEVEL, "
        "TASK_OUTLINE_NUM) values (1, " +
        number + ", " + number + ", 'Task " + number + "', " + std::to_string(level) + ", '" +
        outline + "');";
    if (uid % 10 == 0 || uid == size) continue;
    const std::string next = std::to_string(uid + (uid % 10 == 5 && uid + 2 <= size ? 2 : 1));
    sql +=
        "insert into MSP_LINKS (PROJ_ID, LINK_UID, LINK_PRED_UID, LINK_SUCC_UID, LINK_TYPE) "
        "values (1, " +
        number + ", " + number + ", " + next + ", 1);";
  }
  Execute(database, sql + "commit;");
}

double Translate(const std::string& database, const std::string& text) {
  ScriptedDesktop desktop;
  Program program(desktop);
  ProjectToModel& state = program.projectToModel;
  const double seconds = Seconds([&] {
    state.gProjectConn = std::make_unique<Connection>(program.workspace);
    state.gProjectConn->Open(ConnectionText(database), OpenMode::kReadOnly);
    state.gInterimProjId = 1;
    state.gOutFile = program.files.FreeFile();
    program.files.OpenForOutput(state.gOutFile, text);
    GenerateTextFromProject(state);
  });
  if (!desktop.shown.empty()) {
    std::printf("(%zu boxes: %s)\n", desktop.shown.size(), desktop.MessageTexts().front().c_str());
  }
  return seconds;
}

}  // namespace

void MeasurePlanToModel() {
  std::printf("From a plan database to a model (seconds)\n");
  std::printf("%10s %8s %9s %9s %7s %9s\n", "shape", "tasks", "whole", "floor", "ratio",
              "x before");
  for (const Shape& shape : kShapes) {
    double before = 0;
    for (const int size : kSizes) {
      const TemporaryFolder folder;
      const std::string database = folder.TemplateCopy("plan.mdb");
      MakePlan(database, shape, size);
      const std::string text = folder.File("model.txt");
      double whole = 1e9;
      double floor = 1e9;
      for (int run = 0; run < kRuns; ++run) whole = std::min(whole, Translate(database, text));
      for (int run = 0; run < kRuns; ++run) {
        floor = std::min(floor, SelectAndPrintFloor(database, text, folder.File("copy.txt")));
      }
      std::printf("%10s %8d %9.3f %9.3f %7.2f %9.2f\n", shape.name, size, whole, floor,
                  whole / floor, before > 0 ? whole / before : 0.0);
      before = whole;
    }
  }
  std::printf("\n");
}

}  // namespace merivane::bench
