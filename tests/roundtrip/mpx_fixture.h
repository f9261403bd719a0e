// Plans as MPX text, brought back into a real database.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "database_fixture.h"
#include "mpx/mpx_format.h"
#include "roundtrip/modMpxtoIDEF3.h"

namespace merivane::test {

inline constexpr std::int16_t kMergePlan = -1;
inline constexpr std::int16_t kRebuildModel = 0;

inline std::string Lines(std::initializer_list<std::string_view> lines) {
  std::string text;
  for (const std::string_view line : lines) text.append(line).append("\r\n");
  return text;
}

// A file in the program's own layout; resources and tasks are whole lines. `defaults` is record 11.
inline std::string Plan(const std::string& resources, const std::string& tasks,
                        std::string_view defaults = "11,2,0,") {
  return Lines({"MPX,Microsoft Project for Windows,4.0,ANSI", defaults,
                "30,plan,,,Standard,Fri 17/10/14,", kMpxResourceFields}) +
         resources + Lines({kMpxTaskFields}) + tasks;
}

// Record 70 in that layout.
inline std::string Task(int id, const std::string& name, int outline, const std::string& text1,
                        const std::string& predecessors = "", const std::string& days = "1d") {
  const MpxTask task{id, name, days, outline, predecessors, text1};
  return MpxTaskRecord(task, kDefaultOemCodePage) + "\r\n";
}

class MpxFixture : public DatabaseFixture {
 protected:
  ProjectToModel& State() { return program->projectToModel; }

  // Runs the driver over the file on project 1; `tables` is a fresh connection behind it.
  bool Translate(const std::string& mpx, std::int16_t mergeFlag) {
    tables.reset();
    State().gInterimConn = Connect();
    State().gInterimProjId = 1;
    State().gOutFile = program->files.FreeFile();
    program->files.OpenForOutput(State().gOutFile, folder.Path("model.txt"));
    const std::string plan = folder.Write("plan.mpx", mpx);
    const bool done = TranslateMpx(State(), plan, "", mergeFlag);
    tables = Connect();
    return done;
  }

  // The rows of a statement as "a|b|c" and a line feed; Null is "-".
  std::string Table(const std::string& sql) {
    std::string text;
    for (const Row& row : Rows(*tables, sql)) {
      for (std::size_t i = 0; i < row.size(); ++i) {
        text.append(i == 0 ? "" : "|").append(row[i].IsNull() ? "-" : Joined(row[i]));
      }
      text += "\n";
    }
    return text;
  }

  std::string Model() { return ReadFile(folder.Path("model.txt")); }

  std::unique_ptr<Connection> tables = Connect();
};

}  // namespace merivane::test
