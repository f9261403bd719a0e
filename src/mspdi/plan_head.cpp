#include <map>
#include <optional>

#include "plan_parts.h"
#include "stored_fields.h"

namespace merivane::mspdi {

namespace {

using schedule::ProjectRows;

constexpr std::int64_t kEdition2007 = 12;
constexpr std::int64_t kCalendar = 1;
constexpr std::int64_t kMinutesOfDay = 480;
constexpr std::int64_t kHours = 2;  // of WorkFormat
constexpr std::size_t kLongestProjectName = 255;
constexpr std::size_t kLongestSymbol = 20;

std::string CurrencyCode(const std::string& symbol) {
  static const std::map<std::string, std::string> kCodes = {
      {"", "USD"}, {"$", "USD"}, {"\x80", "EUR"}, {"\xA3", "GBP"}, {"\xA5", "JPY"}};
  const auto code = kCodes.find(symbol);
  return code == kCodes.end() ? "XXX" : code->second;  // XXX: no currency that we know
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
    constexpr int kEightOClock = 8 * 3600;
    if (start.seconds == 0) start.seconds = kEightOClock;
    e.Date(name, start);
  }
  void Finish(Element& e, const char* name) { e.Date(name, paper_.dates.Finish()); }
  void Zero(Element& e, const char* name) { e.Integer(name, 0); }
  void Symbol(Element& e, const char* name) { e.Text(name, symbol_, kLongestSymbol); }
  void Currency(Element& e, const char* name) { e.Text(name, CurrencyCode(symbol_)); }
  void Calendar(Element& e, const char* name) { e.Integer(name, kCalendar); }
  void Morning(Element& e, const char* name) { e.Text(name, "08:00:00"); }
  void Evening(Element& e, const char* name) { e.Text(name, "17:00:00"); }
  void DayMinutes(Element& e, const char* name) { e.Integer(name, kMinutesOfDay); }
  void WeekMinutes(Element& e, const char* name) { e.Integer(name, 5 * kMinutesOfDay); }
  void MonthDays(Element& e, const char* name) { e.Integer(name, 20); }
  void Days(Element& e, const char* name) { e.Integer(name, schedule::kFormatDays); }
  void Hours(Element& e, const char* name) { e.Integer(name, kHours); }

  const PlanOnPaper& paper_;
  std::string symbol_;  // of the currency
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
    {"CriticalSlackLimit", nullptr, {}, &HeadWriter::Zero},
    {"CurrencyDigits", "PROJ_OPT_CURRENCY_DIGITS", Kind::kInteger, nullptr, 0, 2},
    {"CurrencySymbol", nullptr, {}, &HeadWriter::Symbol},
    {"CurrencyCode", nullptr, {}, &HeadWriter::Currency},
    {"CurrencySymbolPosition", "PROJ_OPT_CURRENCY_POSITION", Kind::kInteger, nullptr, 0, 3},
    {"CalendarUID", nullptr, {}, &HeadWriter::Calendar},
    {"DefaultStartTime", nullptr, {}, &HeadWriter::Morning},
    {"DefaultFinishTime", nullptr, {}, &HeadWriter::Evening},
    {"MinutesPerDay", nullptr, {}, &HeadWriter::DayMinutes},
    {"MinutesPerWeek", nullptr, {}, &HeadWriter::WeekMinutes},
    {"DaysPerMonth", nullptr, {}, &HeadWriter::MonthDays},
    {"DurationFormat", nullptr, {}, &HeadWriter::Days},
    {"WorkFormat", nullptr, {}, &HeadWriter::Hours},
    {"NewTasksEffortDriven", nullptr, {}, &HeadWriter::Zero},
    {"StatusDate", "PROJ_INFO_STATUS_DATE", Kind::kDate},
};

void HeadWriter::Write(Element& project) {
  std::vector<const char*> columns;
  AddColumns(kFields, columns);
  const std::size_t symbol = columns.size();
  columns.push_back("PROJ_OPT_CURRENCY_SYMBOL");
  ProjectRows rows(paper_.connection, {.name = "MSP_PROJECTS"}, paper_.project, columns);
  if (!rows.AtEnd()) symbol_ = rows.TextAt(symbol);
  WriteFields(kFields, *this, rows.AtEnd() ? nullptr : &rows, 0, project);
}

void WriteText1Declaration(Element& project) {
  Element field = project.Child("ExtendedAttributes").Child("ExtendedAttribute");
  field.Integer("FieldID", kText1Field);
  field.Text("FieldName", "Text1");
}

void WriteWorkingTime(Element& times, const char* from, const char* to) {
  Element time = times.Child("WorkingTime");
  time.Text("FromTime", from);
  time.Text("ToTime", to);
}

// Days count from Sunday, 1.
void WriteCalendar(Element& project) {
  Element calendar = project.Child("Calendars").Child("Calendar");
  calendar.Integer("UID", kCalendar);
  calendar.Text("Name", "Standard");
  calendar.Flag("IsBaseCalendar", true);
  calendar.Integer("BaseCalendarUID", -1);
  Element week = calendar.Child("WeekDays");
  for (int day = 1; day <= 7; ++day) {
    const bool working = day > 1 && day < 7;
    Element weekDay = week.Child("WeekDay");
    weekDay.Integer("DayType", day);
    weekDay.Flag("DayWorking", working);
    if (!working) continue;
    Element times = weekDay.Child("WorkingTimes");
    WriteWorkingTime(times, "08:00:00", "12:00:00");
    WriteWorkingTime(times, "13:00:00", "17:00:00");
  }
}

}  // namespace

void WriteHead(const PlanOnPaper& paper, Element& project) {
  HeadWriter(paper).Write(project);
  WriteText1Declaration(project);
  WriteCalendar(project);
}

}  // namespace merivane::mspdi
