#include "mspdi/plan_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "error_of.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace mspdi;

namespace {

using test::TemporaryFolder;
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
void PrintTo(const BadFile& file, std::ostream* out) { *out << file.name; }

class BadFiles : public testing::TestWithParam<BadFile> {};

TEST_P(BadFiles, AreToldWithLineAndFinding) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("plan.xml", GetParam().text);
  std::string told;
  EXPECT_EQ(ErrorOf([&] { ReadPlanFile(path); }, &told), kInvalidFileFormat);
  EXPECT_THAT(told, HasSubstr(std::string("plan.xml, line ") + GetParam().found));
}

std::string Nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<a>";
  for (int i = 0; i < depth; ++i) text += "</a>";
  return text;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BadFiles,
    testing::Values(
        BadFile{"empty", "", "1: found no XML"},
        BadFile{"text", "MPX,Microsoft Project\r\n10,$\r\n", "1: found no XML"},
        BadFile{"UTF-16", std::string("\xFF\xFE<\0?\0", 6), "1: the text is UTF-16"},
        BadFile{"another encoding", "<?xml version='1.0' encoding='latin1'?><Project/>",
                "1: the text is LATIN1"},
        BadFile{"other XML", "<?xml version='1.0'?>\n\n<project/>", "3: found <project>"},
        BadFile{"other project", "<Project xmlns='http://example.org/build'/>",
                "1: found <Project> of 'http://example.org/build'"},
        BadFile{"deep nesting", Project("<a>\n" + Nested(1000000) + "</a>"), "4: elements lie"},
        BadFile{"cut", Project("<Tasks>").substr(0, 120), "4: the XML ends or breaks"},
        BadFile{"definition", "<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY b 'c'>]>\n<Project/>",
                "2: found a document type definition"},
        BadFile{"entity", Tasks(Task(kA + "<Notes>\n&b;</Notes>")), "5: found '&b'"},
        BadFile{"lone ampersand", Tasks(Task("<Name>R&D</Name>")), "4: found '&D'"},
        BadFile{"duration", Tasks(Task(kA + "<Duration>P3X</Duration>")),
                "4: found 'P3X' as Duration"},
        BadFile{"negative duration", Tasks(Task(kA + "<Duration>-PT1H0M0S</Duration>")),
                "4: found '-PT1H0M0S'"},
        BadFile{"endless duration",
                Tasks(Task(kA + "<Duration>PT1" + std::string(30, '0') + "H0M0S</Duration>")),
                "4: found 'PT1000"},
        BadFile{"UID twice", Tasks(Task(kA) + "\n\n" + Task("<UID>1</UID><Name>B</Name>")),
                "6: the UID 1 of this task is taken by the one in line 4"},
        BadFile{"ID twice", Tasks(Task(kA) + "\n" + Task("<ID>1</ID><Name>B</Name>")),
                "5: the ID 1 of this task"},
        BadFile{"linked to itself",
                Tasks(Task(kA + "<PredecessorLink><PredecessorUID>1</PredecessorUID>"
                                "</PredecessorLink>")),
                "4: the task 'A' is linked to itself"},
        BadFile{"jumping outline",
                Tasks(Task(kA) + Task("<Name>B</Name><OutlineLevel>5</OutlineLevel>")),
                "4: the outline jumps from level 1 to level 5 at the task 'B'"},
        BadFile{"number beyond all", Tasks(Task("<UID>99999999999999999999</UID>")),
                "4: found '99999999999999999999' as UID"},
        BadFile{"too many tasks", Tasks(Task("<ID>32768</ID><Name>A</Name>")),
                "4: the task has the ID 32768"},
        BadFile{"units",
                Project("<Resources><Resource><Name>A</Name><MaxUnits>many</MaxUnits>"
                        "</Resource></Resources>"),
                "3: found 'many' as MaxUnits"}),
    [](const auto& row) { return "n" + std::to_string(row.index); });

TEST(CutFile, IsRefusedAtEveryByte) {
  const std::string text = Tasks(Task(kA + "<Duration>PT8H0M0S</Duration><Notes>&lt;</Notes>"));
  const TemporaryFolder folder;
  for (std::size_t length = 0; length + 1 < text.size(); ++length) {
    EXPECT_THROW(ReadPlanFile(folder.Write("cut.xml", text.substr(0, length))), RunTimeError)
        << length;
  }
}

TEST(Reader, TakesAnyEditionOrderAndPrefix) {
  const std::string text =
      "<p:Project xmlns:p='http://schemas.microsoft.com/project/2007'>"
      "<p:Assignments><p:Assignment><p:Units>0.5</p:Units><p:ResourceUID>7</p:ResourceUID>"
      "<p:TaskUID>20</p:TaskUID></p:Assignment>"
      "<p:Assignment><p:TaskUID>20</p:TaskUID><p:ResourceUID>-65535</p:ResourceUID>"
      "</p:Assignment></p:Assignments>"
      "<p:Tasks>"
      "<p:Task><p:UID>0</p:UID><p:ID>0</p:ID><p:Name>Whole</p:Name></p:Task>"
      "<p:Task><p:UID>20</p:UID><p:OutlineLevel>1</p:OutlineLevel><p:Name>&#x17E; &amp; "
      "&#x4E2D;</p:Name><p:Duration>PT7H30M36S</p:Duration>"
      "<p:PredecessorLink><p:LinkLag>-2250</p:LinkLag><p:Type>3</p:Type>"
      "<p:PredecessorUID>10</p:PredecessorUID></p:PredecessorLink>"
      "<p:PredecessorLink><p:PredecessorUID>99</p:PredecessorUID></p:PredecessorLink>"
      "<p:PredecessorLink><p:PredecessorUID>10</p:PredecessorUID><p:CrossProject>1"
      "</p:CrossProject></p:PredecessorLink>"
      "<p:ExtendedAttribute><p:Value>42</p:Value><p:FieldID>188743731</p:FieldID>"
      "</p:ExtendedAttribute><p:Unknown><p:Name>no</p:Name></p:Unknown></p:Task>"
      "<p:Task><p:UID>21</p:UID><p:IsNull>1</p:IsNull></p:Task>"
      "<p:Task><p:UID>10</p:UID><p:Name>B</p:Name><p:Notes>one\n<![CDATA[two & three]]></p:Notes>"
      "</p:Task></p:Tasks>"
      "<p:Resources><p:Resource><p:UID>0</p:UID></p:Resource><p:Resource><p:UID>7</p:UID>"
      "<p:Name>R</p:Name><p:MaxUnits>2.00</p:MaxUnits></p:Resource></p:Resources>"
      "<p:MinutesPerDay>450</p:MinutesPerDay><p:StartDate>2026-02-03T08:00:00</p:StartDate>"
      "</p:Project>";
  const TemporaryFolder folder;
  const FilePlan plan = ReadPlanFile(folder.Write("plan.xml", text));
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
