#include <map>
#include <optional>

#include "plan_parts.h"
#include "stored_fields.h"

namespace merivane::mspdi {

namespace {

using schedule::ProjectRows;

constexpr std::int64_t kEdition2007 = 12;
constexpr std::int64_t kHours = 2;  // of WorkFormat
constexpr int kEightOClock = 8 * 3600;
constexpr std::size_t kLongestProjectName = 255;
constexpr std::size_t kLongestSymbol = 20;

std::string CurrencyCode(const std::string& symbol) {
  static const std::map<std::string, std::string> kCodes = {
      {"", "USD"}, {"$", "USD"}, {"\xE2\x82\xAC", "EUR"}, {"\xC2\xA3", "GBP"}, {"\xC2\xA5", "JPY"}};
  const auto code = kCodes.find(symbol);
  return code == kCodes.end() ? "XXX" : code->second;  // XXX: no currency that we know
}

// Seconds; none for midnight, which a date without a time has too.
std::optional<int> TimeOfDay(const std::string& text) {
  const auto moment = ParseDate(text);
  return moment && moment->seconds > 0 ? std::optional(moment->seconds) : std::nullopt;
}

class HeadWriter {
 public:
  explicit HeadWriter(const PlanOnPaper& paper) : paper_(paper) {}
  void Write(Element& project);

 private:
  static const Field<HeadWriter> kFields[];

  void Version(Element& e, const char* name) { e.Integer(name, kEdition2007); }
  void Name(Element& e, const char* name) { e.Text(name, paper_.plan.name, kLongestProjectName); }
  void True(Element& e, const char* name) { e.Flag(name, true); }
  void Start(Element& e, const char* name) {
    DateTime start = paper_.plan.start;
    if (start.seconds == 0) start.seconds = morning_.value_or(kEightOClock);
    e.Date(name, start);
  }
  void Finish(Element& e, const char* name) { e.Date(name, paper_.dates.Finish()); }
  void Zero(Element& e, const char* name) { e.Integer(name, 0); }
  void Symbol(Element& e, const char* name) { e.Text(name, symbol_, kLongestSymbol); }
  void Currency(Element& e, const char* name) { e.Text(name, CurrencyCode(symbol_)); }
  void Calendar(Element& e, const char* name) {
    const std::int64_t calendar = paper_.plan.settings.calendar;
    e.Integer(name, calendar == schedule::kNoCalendar ? kOwnCalendar : calendar);
  }
  void Morning(Element& e, const char* name) { e.Time(name, morning_.value_or(kEightOClock)); }
  void Evening(Element& e, const char* name) {
    constexpr int kFiveOClock = 17 * 3600;
    e.Time(name, evening_.value_or(kFiveOClock));
  }
  void DayMinutes(Element& e, const char* name) {
    e.Integer(name, paper_.plan.settings.minutesPerDay);
  }
  void WeekMinutes(Element& e, const char* name) {
    e.Integer(name, paper_.plan.settings.minutesPerWeek);
  }
  void MonthDays(Element& e, const char* name) { e.Integer(name, 20); }
  void Days(Element& e, const char* name) { e.Integer(name, schedule::kFormatDays); }
  void Hours(Element& e, const char* name) { e.Integer(name, kHours); }

  const PlanOnPaper& paper_;
  std::string symbol_;          // of the currency
  std::optional<int> morning_;  // seconds of the day at which work begins and ends by default
  std::optional<int> evening_;
};

const Field<HeadWriter> HeadWriter::kFields[] = {
    {"SaveVersion", nullptr, {}, &HeadWriter::Version},
    {"Name", nullptr, {}, &HeadWriter::Name},
    {"Title", "PROJ_PROP_TITLE", Kind::kText, &HeadWriter::Name},
    {"Subject", "PROJ_PROP_SUBJECT", Kind::kText},
    {"Category", "PROJ_PROP_CATEGORY", Kind::kText},
    {"Company", "PROJ_PROP_COMPANY", Kind::kText},
    {"Manager", "PROJ_PROP_MANAGER", Kind::kText},
    {"Author", "PROJ_PROP_AUTHOR", Kind::kText},
    {"CreationDate", "PROJ_CREATION_DATE", Kind::kDate},
    {"LastSaved", "PROJ_LAST_SAVED", Kind::kDate},
    {"ScheduleFromStart", "PROJ_INFO_SCHED_FROM", Kind::kFlag, &HeadWriter::True},
    {"StartDate", nullptr, {}, &HeadWriter::Start},
    {"FinishDate", "PROJ_INFO_FINISH_DATE", Kind::kDate, &HeadWriter::Finish},
    {"CriticalSlackLimit", "PROJ_OPT_CRITICAL_SLACK_LIMIT", Kind::kInteger, &HeadWriter::Zero},
    {"CurrencyDigits", "PROJ_OPT_CURRENCY_DIGITS", Kind::kInteger, nullptr, 0, 2},
    {"CurrencySymbol", nullptr, {}, &HeadWriter::Symbol},
    {"CurrencyCode", nullptr, {}, &HeadWriter::Currency},
    {"CurrencySymbolPosition", "PROJ_OPT_CURRENCY_POSITION", Kind::kInteger, nullptr, 0, 3},
    {"CalendarUID", nullptr, {}, &HeadWriter::Calendar},
    {"DefaultStartTime", nullptr, {}, &HeadWriter::Morning},
    {"DefaultFinishTime", nullptr, {}, &HeadWriter::Evening},
    {"MinutesPerDay", nullptr, {}, &HeadWriter::DayMinutes},
    {"MinutesPerWeek", nullptr, {}, &HeadWriter::WeekMinutes},
    {"DaysPerMonth", "PROJ_OPT_DAYS_PER_MONTH", Kind::kInteger, &HeadWriter::MonthDays, 1, 31},
    {"DefaultTaskType", "PROJ_OPT_DEF_TASK_TYPE", Kind::kInteger, nullptr, 0, 2},
    {"DefaultFixedCostAccrual", "PROJ_OPT_DEF_FIX_COST_ACCRUAL", Kind::kInteger, nullptr, 1, 3},
    {"DefaultStandardRate", "PROJ_OPT_DEF_STD_RATE", Kind::kDecimal},
    {"DefaultOvertimeRate", "PROJ_OPT_DEF_OVT_RATE", Kind::kDecimal},
    {"DurationFormat", "PROJ_OPT_DUR_ENTRY_FMT", Kind::kInteger, &HeadWriter::Days, 3, 12},
    {"WorkFormat", nullptr, {}, &HeadWriter::Hours},
    {"HonorConstraints", "PROJ_OPT_HONOR_CONSTRAINTS", Kind::kFlag},
    {"InsertedProjectsLikeSummary", "PROJ_OPT_CALC_SUB_AS_SUMMARY", Kind::kFlag},
    {"MultipleCriticalPaths", "PROJ_OPT_MULT_CRITICAL_PATHS", Kind::kFlag},
    {"NewTasksEffortDriven", "PROJ_OPT_NEW_ARE_EFFORT_DRIVEN", Kind::kFlag, &HeadWriter::Zero},
    {"NewTasksEstimated", "PROJ_OPT_NEW_TASK_EST", Kind::kFlag},
    {"SplitsInProgressTasks", "PROJ_OPT_SPLIT_IN_PROGRESS", Kind::kFlag},
    {"SpreadActualCost", "PROJ_OPT_SPREAD_ACT_COSTS", Kind::kFlag},
    {"SpreadPercentComplete", "PROJ_OPT_SPREAD_PCT_COMP", Kind::kFlag},
    {"TaskUpdatesResource", "PROJ_OPT_TASK_UPDATES_RES", Kind::kFlag},
    {"FiscalYearStart", "PROJ_OPT_FY_USE_START_YR", Kind::kFlag},
    {"WeekStartDay", "PROJ_OPT_WEEK_START_DAY", Kind::kInteger, nullptr, 0, 6},
    {"StatusDate", "PROJ_INFO_STATUS_DATE", Kind::kDate},
    {"CurrentDate", "PROJ_INFO_CURRENT_DATE", Kind::kDate},
};

void HeadWriter::Write(Element& project) {
  std::vector<const char*> columns;
  AddColumns(kFields, columns);
  const std::size_t symbol = columns.size();
  columns.insert(columns.end(), {"PROJ_OPT_CURRENCY_SYMBOL", "PROJ_OPT_DEF_START_TIME",
                                 "PROJ_OPT_DEF_FINISH_TIME"});
  ProjectRows rows(paper_.connection, {.name = "MSP_PROJECTS"}, paper_.project, columns);
  if (!rows.AtEnd()) {
    symbol_ = rows.TextAt(symbol);
    morning_ = TimeOfDay(rows.TextAt(symbol + 1));
    evening_ = TimeOfDay(rows.TextAt(symbol + 2));
  }
  WriteFields(kFields, *this, rows.AtEnd() ? nullptr : &rows, 0, project);
}

}  // namespace

void WriteHead(const PlanOnPaper& paper, Element& project) {
  HeadWriter(paper).Write(project);
  paper.fields.WriteOutlineCodes(project);
  paper.fields.WriteDeclarations(project);
  WriteCalendars(paper, project);
}

}  // namespace merivane::mspdi
