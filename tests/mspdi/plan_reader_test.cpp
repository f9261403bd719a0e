#include "mspdi/plan_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_of.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace mspdi;

namespace {

using testing::HasSubstr;

std::string Project(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<Project xmlns=\"http://schemas.microsoft.com/project\">\n" +
         content + "\n</Project>\n";
}

std::string Task(const std::string& fields) { return "<Task>" + fields + "</Task>"; }

std::string Tasks(const std::string& content) {
  return Project("<Tasks>\n" + content + "\n</Tasks>");
}

const std::string kA = "<UID>1</UID><ID>1</ID><Name>A</Name>";

struct BadFile {
  const char* name;
  std::string text;
  const char* found;  // in the message, behind the file's name
};

std::string Nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<a>";
  for (int i = 0; i < depth; ++i) text += "</a>";
  return text;
}

TEST(BadFiles, AreToldWithLineAndFinding) {
  const BadFile files[] = {
      {"empty", "", "1: found no XML"},
      {"text", "MPX,Microsoft Project\r\n10,$\r\n", "1: found no XML"},
      {"UTF-16", std::string("\xFF\xFE<\0?\0", 6), "1: the text is UTF-16"},
      {"another encoding", "<?xml version='1.0' encoding='latin1'?><Project/>",
       "1: the text is LATIN1"},
      {"other XML", "<?xml version='1.0'?>\n\n<project/>", "3: found <project>"},
      {"other project", "<Project xmlns='http://example.org/build'/>",
       "1: found <Project> of 'http://example.org/build'"},
      {"deep nesting", Project("<a>\n" + Nested(1000000) + "</a>"), "4: elements lie"},
      {"cut", Project("<Tasks>").substr(0, 120), "4: the XML ends or breaks"},
      {"definition", "<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY b 'c'>]>\n<Project/>",
       "2: found a document type definition"},
      {"entity", Tasks(Task(kA + "<Notes>\n&b;</Notes>")), "5: found '&b'"},
      {"lone ampersand", Tasks(Task("<Name>R&D</Name>")), "4: found '&D'"},
      {"duration", Tasks(Task(kA + "<Duration>P3X</Duration>")), "4: found 'P3X' as Duration"},
      {"negative duration", Tasks(Task(kA + "<Duration>-PT1H0M0S</Duration>")),
       "4: found '-PT1H0M0S'"},
      {"endless duration",
       Tasks(Task(kA + "<Duration>PT1" + std::string(30, '0') + "H0M0S</Duration>")),
       "4: found 'PT1000"},
      {"UID twice", Tasks(Task(kA) + "\n\n" + Task("<UID>1</UID><Name>B</Name>")),
       "6: the UID 1 of this task is taken by the one in line 4"},
      {"ID twice", Tasks(Task(kA) + "\n" + Task("<ID>1</ID><Name>B</Name>")),
       "5: the ID 1 of this task"},
      {"linked to itself",
       Tasks(Task(kA + "<PredecessorLink><PredecessorUID>1</PredecessorUID>"
                       "</PredecessorLink>")),
       "4: the task 'A' is linked to itself"},
      {"jumping outline", Tasks(Task(kA) + Task("<Name>B</Name><OutlineLevel>5</OutlineLevel>")),
       "4: the outline jumps from level 1 to level 5 at the task 'B'"},
      {"number beyond all", Tasks(Task("<UID>99999999999999999999</UID>")),
       "4: found '99999999999999999999' as UID"},
      {"too many tasks", Tasks(Task("<ID>32768</ID><Name>A</Name>")),
       "4: the task has the ID 32768"},
      {"units",
       Project("<Resources><Resource><Name>A</Name><MaxUnits>many</MaxUnits>"
               "</Resource></Resources>"),
       "3: found 'many' as MaxUnits"}};
  const TemporaryFolder folder;
  for (const BadFile& file : files) {
    SCOPED_TRACE(file.name);
    const std::string path = folder.Write("plan.xml", file.text);
    std::string told;
    EXPECT_EQ(ErrorOf([&] { ReadPlanFile(path); }, &told), kInvalidFileFormat);
    EXPECT_THAT(told, HasSubstr(std::string("plan.xml, line ") + file.found));
  }
}

TEST(CutFile, IsRefusedAtEveryByte) {
  const std::string text = Tasks(Task(kA + "<Duration>PT8H0M0S</Duration><Notes>&lt;</Notes>"));
  const TemporaryFolder folder;
  for (std::size_t length = 0; length + 1 < text.size(); ++length) {
    EXPECT_THROW(ReadPlanFile(folder.Write("cut.xml", text.substr(0, length))), RunTimeError)
        << length;
  }
}

TEST(Reader, TakesAnyEditionOrderAndPrefix) {
  const FilePlan plan = ReadPlanFile(MERIVANE_SAMPLES "/../tests/mspdi/prefixed_plan.xml");
  EXPECT_EQ(plan.start, (DateTime{2026, 2, 3, 0}));
  EXPECT_EQ(plan.lostCharacters, 1U);
  ASSERT_EQ(plan.tasks.size(), 2U);
  const FileTask& task = plan.tasks.front();
  EXPECT_EQ(task.name, "\x9E & ?");
  EXPECT_EQ(task.id, 1);
  EXPECT_NEAR(task.days.value_or(0), 450.6 / 450, 1e-9);
  EXPECT_EQ(task.text1, "42");
  ASSERT_EQ(task.predecessors.size(), 1U);
  EXPECT_EQ(task.predecessors[0].predecessor, 3);
  EXPECT_EQ(task.predecessors[0].kind, schedule::LinkKind::kStartToStart);
  EXPECT_EQ(LagText(task.predecessors[0].lag, plan.minutesPerDay), "-0.5d");
  EXPECT_EQ(plan.tasks[1].notes, "one\r\ntwo & three");
  ASSERT_EQ(plan.resources.size(), 1U);
  EXPECT_EQ(plan.resources[0].units, 2);
  ASSERT_EQ(plan.assignments.size(), 1U);
  EXPECT_EQ(plan.assignments[0].task, 1);
  EXPECT_EQ(plan.assignments[0].resource, 1);
  EXPECT_EQ(plan.assignments[0].units, 0.5);
}

}  // namespace
}  // namespace merivane::test
