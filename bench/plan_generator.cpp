#include "plan_generator.h"

#include <algorithm>

namespace merivane::bench {
namespace {

std::string HeadOf(const std::string& mpx) {
  const std::size_t fields = mpx.find("\r\n61,");
  return mpx.substr(0, mpx.find("\r\n", fields + 2) + 2);
}

std::string TaskRecord(int number, int level, const std::string& predecessors) {
  constexpr int kFieldsBehind = 34;
  const std::string id = std::to_string(number);
  const std::string list = predecessors.empty() ? "" : "\"" + predecessors + "\"";
  return "70," + id + "," + id + ",Task " + id + ",1.00d,Yes," + std::to_string(level) + ",," +
         list + std::string(kFieldsBehind, ',') + "\r\n";
}

}  // namespace

std::string DeepPlan(const std::string& head, int tasks) {
  std::string plan = HeadOf(head);
  for (int task = 1; task <= tasks; ++task) {
    plan += TaskRecord(task, std::min(task, tasks + 1 - task), "");
  }
  return plan;
}

std::string MeshPlan(const std::string& head, int tasks) {
  constexpr int kRow = 2;
  std::string plan = HeadOf(head);
  for (int task = 1; task <= tasks; ++task) {
    const int rowStart = (task - 1) / kRow * kRow + 1;
    std::string predecessors;
    for (int before = std::max(1, rowStart - kRow); before < rowStart; ++before) {
      predecessors += (predecessors.empty() ? "" : ",") + std::to_string(before);
    }
    plan += TaskRecord(task, 1, predecessors);
  }
  return plan;
}

std::string ManyProjects(int projects) {
  return "insert into MSP_PROJECTS (PROJ_ID, PROJ_NAME)"
         " with recursive n(i) as (select 1 union all select i + 1 from n where i < " +
         std::to_string(projects) +
         ") select i, 'Project ' || i from n;"
         "insert into MSP_TASKS (PROJ_ID, TASK_UID, TASK_ID, TASK_NAME, TASK_OUTLINE_LEVEL,"
         " TASK_OUTLINE_NUM, KV7_PROCOCC_P_ORDER)"
         " with recursive n(i) as (select 0 union all select i + 1 from n where i < " +
         std::to_string(projects * 100 - 1) +
         ") select i / 100 + 1, i % 100 + 1, i % 100 + 1, 'Task ' || i, 1, i + 1,"
         " printf('%05d', i) from n";
}

}  // namespace merivane::bench
