// Plans as MPX text, brought back into a real database.
#pragma once

#include <sstream>

#include "mpx/mpx_format.h"
#include "round_fixture.h"

namespace merivane::test {

using namespace mpx;

inline constexpr std::int16_t kMergePlan = -1;
inline constexpr std::int16_t kRebuildModel = 0;

// "a; b" as two lines; blanks behind a semicolon are left out.
inline std::string Lines(const std::string& list) {
  std::string lines;
  std::istringstream in(list);
  for (std::string line; std::getline(in >> std::ws, line, ';');) lines += line + "\r\n";
  return lines;
}

// Records 70: "id name level Text1 predecessors days; ..."; "-" is empty, days are 1d unless told.
inline std::string Tasks(const std::string& list) {
  std::string records;
  std::istringstream in(list);
  for (std::string entry; std::getline(in, entry, ';');) {
    std::istringstream words(entry);
    std::string id, name, level, text1 = "-", list = "-", days = "1d";
    words >> id >> name >> level >> text1 >> list >> days;
    const auto told = [](const std::string& word) { return word == "-" ? "" : word; };
    records +=
        MpxTaskRecord({id, name, days, level, told(list), told(text1)}, kDefaultOemCodePage) +
        "\r\n";
  }
  return records;
}

// A file in the program's own layout.
inline std::string Plan(const std::string& resources, const std::string& tasks,
                        const std::string& defaults = "11,2,0,") {
  return Lines("MPX,Microsoft Project for Windows,4.0,ANSI;" + defaults +
               ";30,plan,,,Standard,Fri 17/10/14,") +
         std::string(kMpxResourceFields) + "\r\n" + resources + std::string(kMpxTaskFields) +
         "\r\n" + tasks;
}

class MpxFixture : public RoundFixture {
 protected:
  ProjectToModel& State() { return program->projectToModel; }

  // Runs the driver over the file on project 1; `tables` is a fresh connection behind it.
  bool Translate(const std::string& mpx, std::int16_t mergeFlag) {
    return Run([&] { return TranslateMpx(State(), folder.Write("plan.mpx", mpx), "", mergeFlag); });
  }
  bool TranslateXmlText(const std::string& xml, std::int16_t mergeFlag) {
    return Run([&] { return TranslateXml(State(), folder.Write("plan.xml", xml), mergeFlag); });
  }

  template <typename Driver>
  bool Run(Driver driver) {
    tables.reset();
    State().gInterimConn = Connect();
    State().gInterimProjId = 1;
    text_ = OpenOutput(State());
    const bool done = driver();
    State().gInterimConn.reset();
    State().gProjectConn.reset();
    program->files.Close(State().gOutFile);
    tables = Connect();
    return done;
  }

  // Rows for the table and the columns named behind it.
  void Add(const std::string& tableAndColumns, const std::vector<Row>& rows) {
    std::istringstream in(tableAndColumns);
    std::string table;
    std::vector<std::string> columns;
    in >> table;
    for (std::string column; in >> column;) columns.push_back(column);
    Recordset set;
    set.OpenDynamic("select * from " + table, tables.get());
    for (const Row& row : rows) set.AddNew(columns, row);
    set.Close();
    tables->Commit();
  }

  // The rows of a statement as "a|b|c" and a line feed; Null is "-".
  std::string Table(const std::string& sql) {
    std::string text;
    for (const Row& row : Rows(*tables, "select " + sql)) {
      for (const Value& value : row) text += (value.IsNull() ? "-" : Joined(value)) + "|";
      text.back() = '\n';
    }
    return text;
  }

  std::string Model() { return ReadFile(text_); }

  std::unique_ptr<Connection> tables = Connect();

 private:
  std::string text_;
};

}  // namespace merivane::test
