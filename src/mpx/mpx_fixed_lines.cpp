#include "mpx/mpx_format.h"

namespace merivane::mpx {

const std::string_view kMpxResourceFields =
    "40,ID,Unique ID,Name,Initials,Max Units,Standard Rate,Overtime Rate,Cost Per Use,Accrue At,"
    "Cost,Baseline Cost,Actual Cost,Work,Baseline Work,Actual Work,Overtime Work,Group,Code,Text1";

const std::string_view kMpxResourceFieldNumbers =
    "41,40,49,1,2,41,42,43,44,45,30,31,32,20,21,22,24,3,4,5";

const std::string_view kMpxTaskFields =
    "60,ID,Unique ID,Name,Duration,Fixed,Outline Level,Baseline Duration,Predecessors,Start,Finish,"
    "Early Start,Early Finish,Late Start,Late Finish,Free Slack,Total Slack,Delay,% Complete,"
    "Actual Start,Actual Finish,Baseline Start,Baseline Finish,Constraint Type,Constraint Date,"
    "Resume No Earlier Than,Stop,Resume,Created,Work,Baseline Work,Actual Work,Cost,Fixed Cost,"
    "Baseline Cost,Actual Cost,Remaining Cost,WBS,Priority,Milestone,Summary,Rollup,Text1";

const std::string_view kMpxTaskFieldNumbers =
    "61,90,98,1,40,80,3,41,70,50,51,52,53,54,55,93,94,92,44,58,59,56,57,91,68,152,150,151,125,20,"
    "21,22,30,35,31,32,33,2,95,81,120,84,4";

const std::string_view kMpxResourceCalendar = "55,Standard,2,2,2,2,2,2,2";

namespace {

std::string CodePageName(std::int32_t codePage) {
  const bool named = codePage == kJapaneseCodePage || codePage == kKoreanCodePage;
  return named ? std::to_string(codePage) : "ANSI";
}

}  // namespace

std::vector<std::string> MpxHead(std::int32_t codePage) {
  std::vector<std::string> lines = {
      "MPX,Microsoft Project for Windows,4.0," + CodePageName(codePage),
      "10,$,1,2,\",\",.",
      "11,2,0,1,8,40,$10/h,$15/h,1,1",
      "12,0,0,480,/,:,AM,PM",
      "20,Standard,0,1,1,1,1,1,0",
      "25,1",
  };
  for (const char* workingDay : {"2", "3", "4", "5", "6"}) {
    lines.push_back(std::string("25,") + workingDay + ",8:00 AM,12:00 PM,1:00 PM,5:00 PM");
  }
  lines.emplace_back("25,7");
  return lines;
}

std::string MpxProjectHeader(std::string_view path, std::string_view date) {
  return "30," + std::string(path) + ", Vorn,,," + std::string(date);
}

}  // namespace merivane::mpx
