#include "mspdi/plan_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "mspdi/plan_reader.h"
#include "runtime/rtf_notes.h"
#include "runtime/run_time_error.h"
#include "store/recordset.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace mspdi;

namespace {

using testing::HasSubstr;

constexpr DateTime kMonday{2026, 1, 5, 0};

class Writer : public testing::Test {
 protected:
  Writer() { std::filesystem::copy_file(MERIVANE_BIN "/MerivaneTemplate.mdb", database); }

  void Add(const char* table, const std::vector<std::string>& columns,
           const std::vector<std::vector<Value>>& rows) {
    Connection connection(workspace);
    connection.Open(ConnectionText(database));
    Recordset set;
    set.OpenDynamic(std::string("select * from ") + table, &connection);
    for (const auto& row : rows) set.AddNew(columns, row);
  }

  // The file's text; where the schema is at hand, it is valid by it.
  std::string Write(const std::string& path = "") {
    const std::string& source = path.empty() ? database : path;
    Connection connection(workspace);
    connection.Open(ConnectionText(source), OpenMode::kReadOnly);
    WritePlan(connection, 1, kMonday, xml);
    const std::string schema = MERIVANE_PLANS "/../mspdi/mspdi.xsd";
    if (std::filesystem::exists(schema) && std::system("xmllint --version 2> /dev/null") == 0) {
      EXPECT_EQ(std::system(("xmllint --noout --schema " + schema + " " + xml).c_str()), 0);
    }
    return ReadFile(xml);
  }

  Workspace workspace;
  TemporaryFolder folder;
  std::string database = folder.Path("plan.mdb");
  std::string xml = folder.Path("plan.xml");
};

TEST_F(Writer, StoredDatesAndFiguresGoBeforeTheSchedule) {
  Add("MSP_PROJECTS", {"PROJ_ID", "PROJ_NAME", "PROJ_PROP_AUTHOR"},
      {{1, "Caf\xE9 <new>\x01", "A \"B\" & C"}});
  Add("MSP_TASKS",
      {"PROJ_ID", "TASK_UID", "TASK_ID", "TASK_NAME", "TASK_DUR", "TASK_OUTLINE_LEVEL",
       "KV7_PROCOCC_HEX", "TASK_START_DATE", "TASK_COST", "TASK_PCT_COMP", "TASK_DEADLINE",
       "TASK_BASE_START", "TASK_PRIORITY"},
      {{1, 5, 1, "Summary", 0, 1, 77, Value(), Value(), Value(), Value(), Value(), Value()},
       {1, 6, 2, "First", 4800, 2, Value(), "3/2/2026 8:00:00 AM", 1e15, 50, "4/1/2026", "2/2/2026",
        5000},
       {1, 7, 3, "Second", 0, 2, Value(), Value(), Value(), Value(), Value(), Value(), Value()}});
  Add("MSP_LINKS", {"PROJ_ID", "LINK_PRED_UID", "LINK_SUCC_UID", "LINK_TYPE", "LINK_LAG"},
      {{1, 6, 7, 1, 4800}, {1, 7, 999, 1, 0}});
  Add("MSP_RESOURCES", {"PROJ_ID", "RES_UID", "RES_ID", "RES_NAME", "RES_TYPE"},
      {{1, -65535, Value(), Value(), 0}, {1, 3, 1, "Crew", -1}});
  Add("MSP_ASSIGNMENTS", {"PROJ_ID", "ASSN_UID", "TASK_UID", "RES_UID", "ASSN_UNITS", "ASSN_WORK"},
      {{1, 9, 6, 3, "2", 960000}, {1, 10, 6, -65535, "1", 480000}});
  const std::string text = Write();
  for (const char* part :
       {"<Name>Caf\xC3\xA9 &lt;new&gt;</Name>", "<Start>2026-03-02T08:00:00</Start>",
        "<Cost>1000000000000000</Cost>", "<PercentComplete>50</PercentComplete>",
        "<Deadline>2026-04-01T00:00:00</Deadline>", "<OutlineNumber>1.2</OutlineNumber>",
        "<Priority>500</Priority>", "<Value>77</Value>", "<LinkLag>4800</LinkLag>",
        "<Work>PT16H0M0S</Work>", "<Milestone>1</Milestone>"}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
  EXPECT_THAT(text, testing::Not(HasSubstr("65535")));
  const FilePlan plan = ReadPlanFile(xml);
  EXPECT_EQ(plan.tasks.size(), 3U);
  EXPECT_EQ(plan.assignments.size(), 1U);
}

TEST_F(Writer, NotesComeFromTheModelOrFromRichText) {
  const auto bytes = [](const std::string& text) { return Bytes(text.begin(), text.end()); };
  Add("Activity_Pool", {"Msp_ProjID", "Num", "Glossary"},
      {{1, 1, "Own {text}\r\nof two lines\r\n"}, {1, 2, Value()}});
  Add("MSP_TASKS",
      {"PROJ_ID", "TASK_UID", "TASK_ID", "TASK_NAME", "KV7_PROC_HEX", "TASK_RTF_NOTES"},
      {{1, 1, 1, "own", 1, bytes(RtfNote("Own {text}\r\nof two lines\r\n"))},
       {1, 2, 2, "note of the one before", 2, bytes(RtfNote("Own {text}\r\nof two lines\r\n"))},
       {1, 3, 3, "no model", Value(), bytes(RtfNote("Kept \\ as it is"))},
       {1, 4, 4, "of Project", 1,
        bytes("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\*\\generator x;}\\pard caf\\'e9\\par "
              "\\b bold\\b0  \\u8364?\\u26085?\\tab\\{\\}\\par }")}});
  Write();
  std::vector<std::string> notes;
  for (const FileTask& task : ReadPlanFile(xml).tasks) notes.push_back(task.notes.value_or("none"));
  EXPECT_THAT(notes, testing::ElementsAre("Own {text}\r\nof two lines\r\n", "none",
                                          "Kept \\ as it is", "caf\xE9\r\nbold \x80?\t{}"));
}

TEST_F(Writer, FailureLeavesTheFileThatStood) {
  Add("MSP_TASKS", {"PROJ_ID", "TASK_UID", "TASK_ID", "TASK_NAME"},
      {{1, 1, 1, "A"}, {1, 2, 2, "B"}});
  Add("MSP_LINKS", {"PROJ_ID", "LINK_PRED_UID", "LINK_SUCC_UID"}, {{1, 1, 2}, {1, 2, 1}});
  folder.Write("plan.xml", "old");
  EXPECT_THROW(Write(), RunTimeError);
  EXPECT_EQ(ReadFile(xml), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path("")), {}), 2);
  xml = folder.Path("none/plan.xml");
  EXPECT_THROW(Write(), RunTimeError);
}

TEST_F(Writer, DatabaseAndXmlOfProjectHoldTheSamePlan) {
  const std::string plans = MERIVANE_PLANS;
  const std::string stored = plans + "/task-links-project2000-mpd9.mpd";
  if (!std::filesystem::exists(stored)) GTEST_SKIP() << stored << " is not there";
  Write(stored);
  const FilePlan exported = ReadPlanFile(xml);
  const FilePlan other = ReadPlanFile(plans + "/task-links-project2003-mspdi.xml");
  ASSERT_EQ(exported.tasks.size(), other.tasks.size());
  for (std::size_t i = 0; i < other.tasks.size(); ++i) {
    const auto shown = [](const FileTask& task) {
      std::string text = task.name + " " + std::to_string(task.level) + " " +
                         std::to_string(task.days.value_or(-1));
      for (const FileLink& link : task.predecessors) {
        text += " " + std::to_string(link.predecessor) +
                std::to_string(static_cast<int>(link.kind)) + LagText(link.lag, 480);
      }
      return text;
    };
    EXPECT_EQ(shown(exported.tasks[i]), shown(other.tasks[i]));
  }
}

}  // namespace
}  // namespace merivane::test
