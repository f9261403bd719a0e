#include "shell/run_result.h"

#include "runtime/run_time_error.h"
#include "store/recordset.h"

namespace merivane::shell {

namespace {

// What stands behind "from", up to the number of the project.
struct Tables {
  const char* project;  // the column of its number
  const char* tasks;
  const char* resources;
  const char* links;
  const char* assignments;
};

std::string CountsOf(Connection& connection, const Tables& tables, std::int32_t project) {
  const auto count = [&](const std::string& table) {
    try {
      return std::to_string(CountRows(connection, "select " + std::string(tables.project) +
                                                      " from " + table + tables.project + " = " +
                                                      std::to_string(project)));
    } catch (const RunTimeError&) {
      return std::string("no");
    }
  };
  return count(tables.tasks) + " tasks, " + count(tables.resources) + " resources, " +
         count(tables.links) + " links, " + count(tables.assignments) + " assignments";
}

}  // namespace

std::string WrittenNote(const std::vector<std::string>& files) {
  std::string note;
  for (const std::string& file : files) note += (note.empty() ? "; written: " : ", ") + file;
  return note;
}

std::string CountsOfPlan(Connection& connection, std::int32_t project) {
  return CountsOf(
      connection,
      {"Proj_ID", "MSP_TASKS where TASK_UID > 0 and ", "MSP_RESOURCES where RES_UID > 0 and ",
       "MSP_LINKS where ", "MSP_ASSIGNMENTS where "},
      project);
}

std::string CountsOfWork(Connection& connection, std::int32_t project) {
  return CountsOf(connection,
                  {"Msp_ProjID", "ProjectAct where Outline > 0 and ", "ProjectRes where ",
                   "Links_in_Scenario where ", "ProjectResReqts where "},
                  project);
}

long CountRows(Connection& connection, const std::string& sql) {
  Recordset rows;
  rows.OpenStatic(sql, &connection);
  return rows.RecordCount();
}

}  // namespace merivane::shell
