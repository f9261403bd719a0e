#include "plan_table.h"

#include <array>
#include <cstdio>
#include <utility>
#include <vector>

#include "runtime/conversions.h"
#include "runtime/csv.h"
#include "schedule/schedule.h"
#include "schedule/staffing.h"

namespace merivane::batch {

using namespace schedule;

namespace {

constexpr const char* kUtf8Mark = "\xEF\xBB\xBF";  // without it spreadsheets guess

std::string DateCell(const DateTime& date) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d", date.year, date.month,
                date.day, date.seconds / 3600, date.seconds / 60 % 60);
  return text.data();
}

class TableWriter {
 public:
  TableWriter(Connection& connection, std::int32_t project, const DateTime& today)
      : plan_(schedule::ReadPlan(connection, project, today)),
        staffing_(ReadStaffing(connection, project, plan_)) {}

  TableText Write(PlanTable table) {
    result_.text = kUtf8Mark;
    if (table == PlanTable::kTasks) {
      WriteTasks();
    } else if (table == PlanTable::kResources) {
      WriteResources();
    } else {
      WriteAssignments();
    }
    return std::move(result_);
  }

 private:
  void Head(const std::vector<std::string>& cells) { result_.text += CsvLine(cells); }
  void Row(const std::vector<std::string>& cells) {
    result_.text += CsvLine(cells);
    ++result_.rows;
  }
  std::string Days(double tenths) const {
    const auto day = static_cast<double>(plan_.settings.minutesPerDay * kTenthsOfMinute);
    return FixedTwo(tenths / day);
  }
  std::string DaysOfHours(double hours) const { return Days(hours * 60 * kTenthsOfMinute); }

  void WriteTasks() {
    const Schedule dates = MakeSchedule(plan_);
    const auto predecessors = PredecessorTexts(plan_);
    const auto names = staffing_.NamesByTask(plan_.tasks.size());
    Head({"ID", "Level", "Task", "Start", "Finish", "Days", "Predecessors", "Resources", "Summary",
          "Critical", "Slack in days"});
    for (std::size_t at = 0; at < plan_.tasks.size(); ++at) {
      const PlanTask& task = plan_.tasks[at];
      const TaskDates& moments = dates.tasks[at];
      const Tenths length = task.summary ? moments.earlyFinish - moments.earlyStart : task.duration;
      Row({std::to_string(task.id), std::to_string(task.level), task.name,
           DateCell(dates.StartOf(at)), DateCell(dates.FinishOf(at)),
           Days(static_cast<double>(length)), predecessors[at], names[at],
           task.summary ? "yes" : "no", moments.critical ? "yes" : "no",
           Days(static_cast<double>(moments.totalSlack))});
    }
  }

  void WriteResources() {
    Head({"ID", "Resource", "Units", "Days", "Cost"});
    for (std::size_t at = 0; at < staffing_.resources.size(); ++at) {
      const PlanResource& resource = staffing_.resources[at];
      const auto cost = staffing_.CostOf(at);
      Row({std::to_string(resource.id), resource.name, FixedTwo(resource.units),
           DaysOfHours(staffing_.HoursOf(at)), cost ? FixedTwo(*cost) : ""});
    }
  }

  void WriteAssignments() {
    Head({"Task ID", "Task", "Resource ID", "Resource", "Units", "Days"});
    for (const PlanAssignment& each : staffing_.assignments) {
      const PlanTask& task = plan_.tasks[each.task];
      const PlanResource& resource = staffing_.resources[each.resource];
      Row({std::to_string(task.id), task.name, std::to_string(resource.id), resource.name,
           FixedTwo(each.units), DaysOfHours(each.hours)});
    }
  }

  Plan plan_;
  Staffing staffing_;
  TableText result_;
};

}  // namespace

TableText PlanAsTable(Connection& connection, std::int32_t project, const DateTime& today,
                      PlanTable table) {
  const ReadScope reading(&connection);
  const Utf8Texts texts;
  return TableWriter(connection, project, today).Write(table);
}

}  // namespace merivane::batch
