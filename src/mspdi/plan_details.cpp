#include "plan_details.h"

#include <algorithm>
#include <cmath>

#include "runtime/conversions.h"
#include "schedule/working_time.h"
#include "stored_fields.h"

namespace merivane::mspdi {

namespace {

constexpr std::int64_t kLastBaseline = 10;
constexpr std::size_t kMostRates = 25;  // of the schema

// Each table begins with the owner and the number.
struct BaselineTable {
  const char* name;
  std::vector<const char*> columns;
};

BaselineTable TableOf(Owner owner) {
  switch (owner) {
    case Owner::kTask:
      return {"MSP_TASK_BASELINES",
              {"TASK_UID", "TB_BASE_NUM", "TB_BASE_START", "TB_BASE_FINISH", "TB_BASE_DUR",
               "TB_BASE_DUR_FMT", "TB_BASE_WORK", "TB_BASE_COST"}};
    case Owner::kResource:
      return {"MSP_RESOURCE_BASELINES", {"RES_UID", "RB_BASE_NUM", "RB_BASE_WORK", "RB_BASE_COST"}};
    case Owner::kAssignment:
    case Owner::kLink:
      break;
  }
  return {"MSP_ASSIGNMENT_BASELINES",
          {"ASSN_UID", "AB_BASE_NUM", "AB_BASE_START", "AB_BASE_FINISH", "AB_BASE_WORK",
           "AB_BASE_COST"}};
}

constexpr RowField kOfTask[] = {{"Number", 1, Kind::kInteger},
                                {"Start", 2, Kind::kDate},
                                {"Finish", 3, Kind::kDate},
                                {"Duration", 4, Kind::kDuration},
                                {"DurationFormat", 5, Kind::kInteger, 3, 12},
                                {"Work", 6, Kind::kWork},
                                {"Cost", 7, Kind::kDecimal}};
constexpr RowField kOfResource[] = {
    {"Number", 1, Kind::kInteger}, {"Work", 2, Kind::kWork}, {"Cost", 3, Kind::kDecimal}};
constexpr RowField kOfAssignment[] = {{"Number", 1, Kind::kInteger},
                                      {"Start", 2, Kind::kDate},
                                      {"Finish", 3, Kind::kDate},
                                      {"Work", 4, Kind::kWork},
                                      {"Cost", 5, Kind::kDecimal}};

std::span<const RowField> FieldsOf(Owner owner) {
  if (owner == Owner::kTask) return kOfTask;
  if (owner == Owner::kResource) return kOfResource;
  return kOfAssignment;
}

std::int64_t NumberIn(const Value& value, std::int64_t otherwise) {
  return IsNumeric(value) ? std::llround(ToDouble(value)) : otherwise;
}

// Of TD_UNITS: minutes, hours, days, weeks, months of 30 days, years.
schedule::Tenths PeriodOf(std::int64_t units) {
  constexpr schedule::Tenths kDay = schedule::kTenthsOfCalendarDay;
  switch (units) {
    case 0:
      return schedule::kTenthsOfMinute;
    case 1:
      return kDay / 24;
    case 2:
      return kDay;
    case 3:
      return 7 * kDay;
    case 5:
      return 30 * kDay;
    case 8:
      return 365 * kDay;
    default:
      return 0;
  }
}

constexpr std::int64_t kPercentComplete = 11;  // of TD_FIELD_ID

bool IsWork(std::int64_t kind) {
  return (kind >= 1 && kind <= 4) || kind == 7 || kind == 9;  // the others are costs
}

}  // namespace

Baselines::Baselines(Connection& connection, std::int32_t project, Owner owner)
    : owner_(owner), rows_(connection, project, TableOf(owner).name, TableOf(owner).columns) {}

void Baselines::Write(std::int64_t uid, Element& element, const char* name) const {
  for (const Row& row : rows_.Of(uid)) {
    const std::int64_t number = NumberIn(row[1], -1);
    if (number < 1 || number > kLastBaseline) {
      if (number != 0) ++element.LossesOfFile().baselines;
      continue;
    }
    Element baseline = element.Child(name);
    WriteRow(FieldsOf(owner_), row, baseline);
  }
}

namespace {

enum TimephasedColumn { kRef, kCategory, kField, kStart, kFinish, kUnits, kFirstValue };

}  // namespace

TimephasedData::TimephasedData(Connection& connection, std::int32_t project)
    : rows_(connection, project, "MSP_TIMEPHASED_DATA",
            {"TD_REF_UID", "TD_CATEGORY", "TD_FIELD_ID", "TD_START", "TD_FINISH", "TD_UNITS",
             "TD_VALUE1", "TD_VALUE2", "TD_VALUE3", "TD_VALUE4", "TD_VALUE5", "TD_VALUE6",
             "TD_VALUE7"}) {}

void TimephasedData::Write(Owner owner, std::int64_t uid, std::int64_t written, Element& element,
                           const char* name) const {
  for (const Row& row : rows_.Of(uid)) {
    if (NumberIn(row[kCategory], -1) != static_cast<std::int64_t>(owner)) continue;
    WritePeriods(row, written, element, name);
  }
}

void TimephasedData::WritePeriods(const Row& row, std::int64_t uid, Element& element,
                                  const char* name) const {
  const auto start = ParseDate(Joined(row[kStart]));
  const auto finish = ParseDate(Joined(row[kFinish]));
  const std::int64_t kind = NumberIn(row[kField], 0);
  const std::int64_t units = NumberIn(row[kUnits], -1);
  const schedule::Tenths period = PeriodOf(units);
  if (!start || period == 0 || kind < 1 || kind > kPercentComplete) {
    ++element.LossesOfFile().periods;
    return;
  }
  schedule::Tenths from = schedule::ClockOf(*start);
  const schedule::Tenths end = finish ? schedule::ClockOf(*finish) : from + 7 * period;
  for (std::size_t column = kFirstValue; column < row.size() && from < end; ++column) {
    const schedule::Tenths to = std::min(from + period, end);
    if (IsNumeric(row[column]) && ToDouble(row[column]) > 0) {
      Element data = element.Child(name);
      data.Integer("Type", kind);
      data.Integer("UID", uid);
      data.Date("Start", schedule::MomentOf(from));
      data.Date("Finish", schedule::MomentOf(to));
      data.Integer("Unit", units);
      data.Stored("Value", IsWork(kind) ? Kind::kWork : Kind::kDecimal, row[column]);
    }
    from = to;
  }
}

RatesOfResources::RatesOfResources(Connection& connection, std::int32_t project)
    : availability_(connection, project, "MSP_AVAILABILITY",
                    {"RES_UID", "AVAIL_FROM", "AVAIL_TO", "AVAIL_UNITS"}),
      rates_(connection, project, "MSP_RESOURCE_RATES",
             {"RES_UID", "RR_FROM_DATE", "RR_TO_DATE", "RR_RATE_TABLE", "RR_STD_RATE",
              "RR_STD_RATE_FMT", "RR_OVT_RATE", "RR_OVT_RATE_FMT", "RR_PER_USE_COST"}) {}

void RatesOfResources::WriteAvailability(std::int64_t uid, Element& element,
                                         const char* name) const {
  static constexpr RowField kFields[] = {{"AvailableFrom", 1, Kind::kDate},
                                         {"AvailableTo", 2, Kind::kDate},
                                         {"AvailableUnits", 3, Kind::kDecimal}};
  const auto rows = availability_.Of(uid);
  if (rows.empty()) return;
  Element periods = element.Child(name);
  for (const Row& row : rows) {
    Element period = periods.Child("AvailabilityPeriod");
    WriteRow(kFields, row, period);
  }
}

void RatesOfResources::WriteRates(std::int64_t uid, Element& element, const char* name) const {
  static constexpr RowField kFields[] = {{"RateTable", 3, Kind::kInteger, 0, 4},
                                         {"StandardRate", 4, Kind::kDecimal},
                                         {"StandardRateFormat", 5, Kind::kRateFormat, 1, 7},
                                         {"OvertimeRate", 6, Kind::kDecimal},
                                         {"OvertimeRateFormat", 7, Kind::kRateFormat, 1, 7},
                                         {"CostPerUse", 8, Kind::kDecimal}};
  const auto rows = rates_.Of(uid);
  if (rows.empty()) return;
  if (rows.size() > kMostRates) element.LossesOfFile().rates += rows.size() - kMostRates;
  Element rates = element.Child(name);
  for (const Row& row : rows.first(std::min(rows.size(), kMostRates))) {
    // A rate without a beginning or an end holds from or for ever.
    constexpr DateTime kEarliest{1984, 1, 1, 0};
    constexpr DateTime kLatest{2049, 12, 31, 86340};
    Element rate = rates.Child("Rate");
    rate.Date("RatesFrom", ParseDate(Joined(row[1])).value_or(kEarliest));
    rate.Date("RatesTo", ParseDate(Joined(row[2])).value_or(kLatest));
    WriteRow(kFields, row, rate);
  }
}

}  // namespace merivane::mspdi
