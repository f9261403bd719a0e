#include "planning_xml.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <pugixml.hpp>

#include "bench_support.h"
#include "floors.h"
#include "mspdi/plan_reader.h"
#include "mspdi/plan_writer.h"
#include "runtime/rtf_notes.h"
#include "schedule/schedule.h"

namespace merivane::bench {

using namespace runtime;
using namespace store;
using namespace mspdi;

namespace {

constexpr int kRuns = 3;  // the fastest is quoted
constexpr int kPlanSizes[] = {1000, 2000, 4000, 8000, 16000};
constexpr DateTime kToday{2026, 1, 5, 0};

// Summary tasks of nine children each, which follow one another; a note and an assignment a task.
void MakePlan(const std::string& database, int size) {
  std::string sql = "begin; insert into MSP_PROJECTS (PROJ_ID, PROJ_NAME) values (1, 'Bench');";
  for (int uid = 1; uid <= 20; ++uid) {
    const std::string number = std::to_string(uid);
    sql +=
        "insert into MSP_RESOURCES (PROJ_ID, RES_UID, RES_ID, RES_NAME, RES_TYPE, "
        "RES_MAX_UNITS) values (1, " +
        number + ", " + number + ", 'Crew " + number + "', -1, 1);";
  }
  for (int uid = 1; uid <= size; ++uid) {
    const std::string number = std::to_string(uid);
    const bool summary = uid % 10 == 1;
    sql +=
        "insert into MSP_TASKS (PROJ_ID, TASK_UID, TASK_ID, TASK_NAME, TASK_DUR, TASK_DUR_FMT, "
        "TASK_OUTLINE_LEVEL, KV7_PROCOCC_HEX, KV7_PROCOCC_DURATION, TASK_RTF_NOTES) values (1, " +
        number + ", " + number + ", 'Task " + number + "', 9600, 7, " + (summary ? "1" : "2") +
        ", " + number + ", '1.75', cast('" + RtfNote("What is done in step " + number) +
        "' as blob));";
    if (summary) continue;
    sql +=
        "insert into MSP_ASSIGNMENTS (PROJ_ID, ASSN_UID, TASK_UID, RES_UID, ASSN_UNITS, "
        "ASSN_WORK) values (1, " +
        number + ", " + number + ", " + std::to_string(uid % 20 + 1) + ", '1', 840000);";
    if (uid % 10 == 0) continue;
    sql +=
        "insert into MSP_LINKS (PROJ_ID, LINK_UID, LINK_PRED_UID, LINK_SUCC_UID, LINK_TYPE) "
        "values (1, " +
        number + ", " + number + ", " + std::to_string(uid + 1) + ", 1);";
  }
  Execute(database, sql + "commit;");
}

void Write(const std::string& database, const std::string& xml) {
  Workspace workspace;
  Connection connection(workspace);
  connection.Open(ConnectionText(database), OpenMode::kReadOnly);
  mspdi::WritePlan(connection, 1, kToday, xml);
}

// Builds the children of `from` anew below `to`.
void Build(const pugi::xml_node& from, pugi::xml_node to) {
  for (const pugi::xml_node& child : from.children()) {
    if (child.type() != pugi::node_element) continue;
    pugi::xml_node built = to.append_child(child.name());
    if (*child.child_value() != '\0') built.text().set(child.child_value());
    Build(child, built);
  }
}

double BuildAndSaveFloor(const std::string& xml, const std::string& copy) {
  pugi::xml_document whole;
  whole.load_file(xml.c_str());
  return Seconds([&] {
    pugi::xml_document built;
    Build(whole, built);
    built.save_file(copy.c_str(), " ");
  });
}

double Best(const std::function<double()>& measure) {
  double best = 1e9;
  for (int run = 0; run < kRuns; ++run) {
    malloc_trim(0);  // every run takes its memory from the system anew
    best = std::min(best, measure());
  }
  return best;
}

double ScheduleSeconds(const std::string& database) {
  Workspace workspace;
  Connection connection(workspace);
  connection.Open(ConnectionText(database), OpenMode::kReadOnly);
  const schedule::Plan plan = schedule::ReadPlan(connection, 1, kToday);
  return Seconds([&] { schedule::MakeSchedule(plan); });
}

}  // namespace

void MeasurePlanningXml() {
  std::printf("Planning XML (seconds; peaks in times the file)\n");
  std::printf("%6s %7s | %8s %8s %6s %6s %6s | %8s %8s %6s %6s %6s | %8s\n", "tasks", "MiB",
              "writing", "floor", "ratio", "growth", "peak", "reading", "floor", "ratio", "growth",
              "peak", "dates");
  double writtenBefore = 0;
  double readBefore = 0;
  for (const int size : kPlanSizes) {
    const TemporaryFolder folder;
    const std::string database = folder.File("plan.mdb");
    std::filesystem::copy_file(MERIVANE_BIN "/MerivaneTemplate.mdb", database);
    const std::string xml = folder.File("plan.xml");
    MakePlan(database, size);
    const double idle = PeakMemory([] {});
    const double writePeak = PeakMemory([&] { Write(database, xml); }) - idle;
    const double written = Best([&] { return Seconds([&] { Write(database, xml); }); });
    const double writeFloor = Best([&] { return BuildAndSaveFloor(xml, folder.File("copy.xml")); });
    const double readPeak = PeakMemory([&] { mspdi::ReadPlanFile(xml); }) - idle;
    const double read = Best([&] { return Seconds([&] { mspdi::ReadPlanFile(xml); }); });
    const double readFloor = Best([&] {
      return Seconds([&] {
        pugi::xml_document document;
        document.load_file(xml.c_str());
      });
    });
    const double dates = Best([&] { return ScheduleSeconds(database); });
    const double mebibytes = static_cast<double>(std::filesystem::file_size(xml)) / 1048576.0;
    std::printf(
        "%6d %7.1f | %8.3f %8.3f %6.2f %6.2f %6.1f | %8.3f %8.3f %6.2f %6.2f %6.1f | %8.4f\n", size,
        mebibytes, written, writeFloor, written / writeFloor,
        writtenBefore > 0 ? written / writtenBefore : 0.0, writePeak / mebibytes, read, readFloor,
        read / readFloor, readBefore > 0 ? read / readBefore : 0.0, readPeak / mebibytes, dates);
    writtenBefore = written;
    readBefore = read;
  }
  std::printf("\n");
}

}  // namespace merivane::bench
