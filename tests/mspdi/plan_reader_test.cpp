#include "mspdi/plan_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>
#include <utility>

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
std::string Resource(const std::string& fields) { return "<Resource>" + fields + "</Resource>"; }

std::string Tasks(const std::string& content) {
  return Project("<Tasks>\n" + content + "\n</Tasks>");
}

const std::string kA = "<UID>1</UID><ID>1</ID><Name>A</Name>";

std::string Link(int predecessor, const std::string& fields) {
  return "<PredecessorLink><PredecessorUID>" + std::to_string(predecessor) + "</PredecessorUID>" +
         fields + "</PredecessorLink>";
}

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
      {"linked to itself", Tasks(Task(kA + Link(1, ""))), "4: the task 'A' is linked to itself"},
      {"jumping outline", Tasks(Task(kA) + Task("<Name>B</Name><OutlineLevel>5</OutlineLevel>")),
       "4: the outline jumps from level 1 to level 5 at the task 'B'"},
      {"flag", Tasks(Task(kA + "<Active>yes</Active>")), "4: found 'yes' as Active"},
      {"kind of a link", Tasks(Task(kA + "<PredecessorLink><Type>4</Type></PredecessorLink>")),
       "4: found '4' as Type"},
      {"level below 0", Tasks(Task(kA + "<OutlineLevel>-1</OutlineLevel>")),
       "4: found '-1' as OutlineLevel"},
      {"half an ID", Tasks(Task("<ID>1.5</ID>")), "4: found '1.5' as ID"},
      {"no duration", Tasks(Task(kA + "<Duration>PT</Duration>")), "4: found 'PT' as Duration"},
      {"units below 0",
       Project("<Resources>\n" + Resource("<Name>A</Name><MaxUnits>-1</MaxUnits>") +
               "</Resources>"),
       "4: found '-1' as MaxUnits"},
      {"minutes of a day", Project("<MinutesPerDay>1441</MinutesPerDay>"),
       "3: found '1441' as MinutesPerDay"},
      {"no minutes of a day", Project("<MinutesPerDay>0</MinutesPerDay>"), "3: found '0'"},
      {"ID 0", Tasks(Task("<ID>0</ID><Name>A</Name>")), "4: the task has the ID 0"},
      {"NUL", Tasks("<Task>\n" + std::string(1, '\0') + "</Task>"), "5: found a character of code"},
      {"number beyond all", Tasks(Task("<UID>99999999999999999999</UID>")),
       "4: found '99999999999999999999' as UID"},
      {"too many tasks", Tasks(Task("<ID>32768</ID><Name>A</Name>")),
       "4: the task has the ID 32768"},
      {"units",
       Project("<Resources>" + Resource("<Name>A</Name><MaxUnits>many</MaxUnits>") +
               "</Resources>"),
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
  const FilePlan plan =
      ReadPlanFile(std::string(MERIVANE_SAMPLES "/../tests/mspdi/prefixed_plan.xml"));
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

FilePlan Read(const std::string& text) {
  const TemporaryFolder folder;
  return ReadPlanFile(folder.Write("plan.xml", text));
}

std::string Numbered(int number, const std::string& fields) {
  const std::string text = std::to_string(number);
  return Task("<UID>" + text + "0</UID><ID>" + text + "</ID><Name>T" + text + "</Name>" + fields);
}

std::string Assigned(int task, int resource, const std::string& work) {
  return "<Assignment><TaskUID>" + std::to_string(task) + "</TaskUID><ResourceUID>" +
         std::to_string(resource) + "</ResourceUID><Units>1</Units><Work>" + work +
         "</Work></Assignment>";
}

TEST(Untaken, IsCountedWithTheRowsOfEachKind) {
  const FilePlan plan = Read(Project(
      "<DefaultOvertimeRate>15</DefaultOvertimeRate><Tasks>" +
      Numbered(1, "<Manual>1</Manual><ManualDuration>PT16H0M0S</ManualDuration>") +
      Numbered(2,
               "<Duration>PT8H0M0S</Duration><DurationFormat>8</DurationFormat>"
               "<ConstraintType>4</ConstraintType><PercentComplete>1</PercentComplete>"
               "<CalendarUID>2</CalendarUID><FixedCost>1.5</FixedCost>") +
      Numbered(3,
               "<CalendarUID>-1</CalendarUID><FixedCost>0</FixedCost><IsSubproject>1</"
               "IsSubproject><ConstraintType>0</ConstraintType>"
               "<PercentComplete>0</PercentComplete><DurationFormat>7</DurationFormat>" +
                   Link(10, "<LinkLag>4800</LinkLag>") + Link(20, "<Type>2</Type>") +
                   Link(77, "<LinkLag>1</LinkLag><Type>2</Type>") +
                   Link(10, "<CrossProject>1</CrossProject><LinkLag>9</LinkLag>")) +
      Numbered(4, "<Active>0</Active><Manual>1</Manual>" + Link(10, "<LinkLag>5</LinkLag>")) +
      Task("<UID>50</UID><ID>5</ID>") + "</Tasks><Resources>" +
      Resource("<UID>1</UID><Name>Cement</Name><MaterialLabel>t</MaterialLabel><Type>0</Type>") +
      Resource("<UID>2</UID><Name>Fee</Name><IsCostResource>1</IsCostResource><Type>0</Type>") +
      Resource("<UID>3</UID><Name>Crew</Name><IsCostResource>0</IsCostResource>"
               "<CostPerUse>2</CostPerUse><Type>1</Type>") +
      Resource("<UID>4</UID><Name>Cook</Name><StandardRate>0.5</StandardRate>") +
      Resource("<UID>5</UID><Name>Boy</Name><CostPerUse>0</CostPerUse>"
               "<StandardRate>0</StandardRate><OvertimeRate>15</OvertimeRate>") +
      "</Resources><Assignments>" + Assigned(20, 3, "PT4H0M0S") + Assigned(20, 4, "PT8H1M0S") +
      Assigned(20, 5, "eight") + Assigned(20, 1, "PT1H0M0S") + Assigned(30, 3, "PT1H0M0S") +
      "</Assignments>"));
  const std::vector<std::pair<Untaken, std::vector<std::int64_t>>> kinds = {
      {Untaken::kInactiveTasks, {4}},
      {Untaken::kManualTasks, {1}},
      {Untaken::kMaterialResources, {1}},
      {Untaken::kCostResources, {2}},
      {Untaken::kLags, {3}},
      {Untaken::kStartToFinishLinks, {3}},
      {Untaken::kElapsedDurations, {2}},
      {Untaken::kSubprojects, {3}},
      {Untaken::kOuterLinks, {3}},
      {Untaken::kConstraints, {2}},
      {Untaken::kProgress, {2}},
      {Untaken::kNamelessTasks, {5}},
      {Untaken::kTaskCalendars, {2}},
      {Untaken::kFixedCosts, {2}},
      {Untaken::kWork, {2}},
      {Untaken::kResourceCosts, {3, 4}}};
  EXPECT_EQ(kinds.size(), kUntakenKinds);
  for (const auto& [kind, rows] : kinds) EXPECT_EQ(plan.untaken.Of(kind), rows) << KeyOf(kind);
  EXPECT_THAT(plan.untaken.Text(),
              testing::StartsWith("1 inactive task: left out\n1 task scheduled by hand: "));
  EXPECT_EQ(plan.tasks[0].days, 2);
  EXPECT_EQ(plan.tasks[2].predecessors.size(), 2U);
  EXPECT_EQ(plan.resources[0].kind, ResourceKind::kMaterial);
  EXPECT_EQ(plan.resources[0].unit, "t");
  EXPECT_EQ(plan.resources[1].kind, ResourceKind::kCost);
  EXPECT_EQ(plan.resources[2].kind, ResourceKind::kWork);
}

TEST(InactiveTasks, GoWithTheirLinksAndAssignmentsButNotAboveOnesThatStay) {
  const auto level = [](int value) {
    return "<OutlineLevel>" + std::to_string(value) + "</OutlineLevel>";
  };
  const std::string out = "<Active>0</Active>";
  const FilePlan plan = Read(Project(
      "<Tasks>" + Numbered(1, out + level(1)) + Numbered(2, out + level(2)) +
      Numbered(3, level(3)) + Numbered(4, out + level(3)) + Numbered(5, out + level(1)) +
      Numbered(6, out + level(2)) +
      Numbered(7, level(1) + Link(20, "") + Link(40, "") + Link(60, "") + Link(30, "")) +
      "</Tasks><Resources><Resource><UID>5</UID><ID>1</ID><Name>R</Name></Resource></Resources>"
      "<Assignments><Assignment><TaskUID>60</TaskUID><ResourceUID>5</ResourceUID></Assignment>"
      "<Assignment><TaskUID>70</TaskUID><ResourceUID>5</ResourceUID></Assignment>"
      "<Assignment><TaskUID>70</TaskUID><ResourceUID>6</ResourceUID></Assignment></Assignments>"));
  std::vector<std::int64_t> ids;
  for (const FileTask& task : plan.tasks) ids.push_back(task.id);
  EXPECT_THAT(ids, testing::ElementsAre(1, 2, 3, 7));
  ids.clear();
  for (const FileLink& link : plan.tasks.back().predecessors) ids.push_back(link.predecessor);
  EXPECT_THAT(ids, testing::ElementsAre(2, 3));
  EXPECT_THAT(plan.untaken.Of(Untaken::kInactiveTasks), testing::ElementsAre(4, 5, 6));
  ASSERT_EQ(plan.assignments.size(), 1U);
  EXPECT_EQ(plan.assignments[0].task, 7);
  EXPECT_EQ(plan.assignments[0].units, 1);
}

TEST(Rows, WithoutAnIdCountByTheirPlaceAndBlankOnesAreNone) {
  const FilePlan plan = Read(Project(
      "<MinutesPerDay> 420 </MinutesPerDay><StartDate>2026-02-30T08:00:00</StartDate><Tasks>" +
      Task("<UID>0</UID><Name>Whole</Name>") +
      Task("<UID>4</UID><Name>A</Name><Duration>PT7H</Duration>") +
      Task("<UID>5</UID><IsNull>1</IsNull><Name>blank</Name>") + Task("<UID>6</UID>") +
      Task("<Name>no UID</Name><Duration>PT30M90S</Duration>" + Link(4, "") + Link(0, "")) +
      Task("<UID>8</UID><OutlineLevel>0</OutlineLevel><Name>above all</Name>") +
      Task("<UID>9</UID><Name>last</Name><Duration>PT0S</Duration>" + Link(5, "")) +
      "</Tasks><Resources>"
      "<Resource><UID>0</UID><ID>0</ID></Resource><Resource><UID>2</UID><Name>R</Name></Resource>"
      "<Resource><Name>S</Name><MaxUnits>0</MaxUnits></Resource></Resources>"));
  std::vector<std::string> rows;
  for (const FileTask& task : plan.tasks) {
    rows.push_back(task.name + " " + std::to_string(task.id) + " " +
                   std::to_string(task.days.value_or(-1) * 420) + " " +
                   std::to_string(task.predecessors.size()));
  }
  EXPECT_THAT(
      rows, testing::ElementsAre("A 1 420.000000 0", "no UID 4 31.500000 1", "last 5 0.000000 0"));
  EXPECT_EQ(plan.start, std::nullopt);
  ASSERT_EQ(plan.resources.size(), 2U);
  EXPECT_EQ(plan.resources[0].id, 1);
  EXPECT_EQ(plan.resources[1].id, 2);
  EXPECT_EQ(plan.resources[1].units, 0);
}

TEST(Rows, StandInTheOrderOfTheOutlineBelowTheWholePlan) {
  const auto row = [](const char* name, const char* id, const char* outline, const char* level) {
    const auto field = [](const char* tag, const std::string& text) {
      return text.empty() ? text : "<" + (tag + (">" + text + "</")) + tag + ">";
    };
    return Task(field("Name", name) + field("OutlineLevel", level) +
                field("OutlineNumber", outline) + field("ID", id));
  };
  const std::string whole = Task("<UID>0</UID><ID>0</ID><OutlineLevel>1</OutlineLevel>");
  const std::string blank = Task("<UID>7</UID><IsNull>1</IsNull>");
  const std::string files[] = {
      row("C", "10", "", "2") + row("B", "9", "", "3") + blank + row("A", "2", "", "2") + whole,
      row("C", "", "10", "2") + row("B", "", "9.1", "3") + whole + row("A", "", "9", "2"),
      row("A", "", "", "2") + blank + row("B", "5", "", "3") + row("C", "", "", "2") + whole};
  for (const std::string& rows : files) {
    SCOPED_TRACE(rows);
    std::string found;
    for (const FileTask& task : Read(Tasks(rows)).tasks) {
      found += task.name + std::to_string(task.level);
    }
    EXPECT_EQ(found, "A1B2C1");
  }
}

TEST(Rows, AreFoundByTheirIdsWhereOutlineNumbersGiveTheOrder) {
  const std::string day = "<Duration>PT8H0M0S</Duration>";
  const FilePlan plan =
      Read(Project("<Tasks>" + Numbered(5, "<OutlineNumber>1</OutlineNumber>" + day) +
                   Task("<Name>B</Name><OutlineNumber>2</OutlineNumber>" + day) +
                   "</Tasks><Resources>" + Resource("<UID>1</UID><Name>R</Name>") +
                   "</Resources><Assignments>" + Assigned(50, 1, "PT4H0M0S") + "</Assignments>"));
  EXPECT_THAT(plan.untaken.Of(Untaken::kWork), testing::ElementsAre(5));
}

TEST(Text, ComesFromAllKindsOfContent) {
  const FilePlan plan =
      Read("<!-- & no entity <!DOCTYPE --><?xml-stylesheet x?>" +
           Tasks(Task("<UID>1</UID><Name>A<![CDATA[ & <b>]]> c&#x20AC;<!-- not this --></Name>"
                      "<ExtendedAttribute><Value>41</Value><FieldID> 188743731 </FieldID>"
                      "</ExtendedAttribute><ExtendedAttribute><FieldID>188743734</FieldID>"
                      "<Value>other</Value></ExtendedAttribute>"
                      "<Notes>a\r\nb\rc&#10;d</Notes>"))
               .substr(std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n").size()));
  ASSERT_EQ(plan.tasks.size(), 1U);
  EXPECT_EQ(plan.tasks[0].name, "A & <b> c\x80");
  EXPECT_EQ(plan.tasks[0].text1, "41");
  EXPECT_EQ(plan.tasks[0].notes, "a\r\nb\r\nc\r\nd");
  EXPECT_EQ(plan.lostCharacters, 0U);
}

// A row is read alone where the file is plain; the plan and its faults are the same where it isn't.
TEST(LongFile, HasTheSamePlanInEveryForm) {
  constexpr int kRows = 1500;
  constexpr int kLong = 700;  // a row that is longer than what is read at once
  const auto file = [](const std::string& tag, const std::string& inner, const std::string& fault) {
    std::string rows = "<Tasks" + tag + ">";
    for (int row = 1; row <= kRows; ++row) {
      const std::string note = row == kLong ? std::string(200000, 'n') + "\r\nend" : "a\r\nb";
      rows += "\r\n" + Numbered(row, Link(row == 1 ? 20 : row * 10 - 10, "") + "\n<Notes>" + note +
                                         "</Notes>" + (row == kRows ? fault : inner));
    }
    return Project(rows + "\n</Tasks><Resources />\n<Assignments/>");
  };
  const std::string plain = file("", "", "");
  const std::string forms[] = {plain,
                               "\xEF\xBB\xBF" + plain,
                               file(" a='>'", "", ""),
                               file("", "<!-- </Task>&b; -->", ""),
                               file("", "<Extra><![CDATA[</Task><Task>]]></Extra>", ""),
                               file("", "<Task><UID>1</UID></Task>", ""),
                               file("", "<Task/><Empty a='b/'/>", ""),
                               file("", "</Task><!---->text<Task><IsNull>1</IsNull>", "")};
  for (const std::string& form : forms) {
    SCOPED_TRACE(form.substr(0, 300));
    const FilePlan plan = Read(form);
    ASSERT_EQ(plan.tasks.size(), kRows);
    const FileTask& last = plan.tasks.back();
    EXPECT_EQ(last.line, 3U * kRows + 1);
    EXPECT_EQ(last.notes, "a\r\nb");
    ASSERT_EQ(last.predecessors.size(), 1U);
    EXPECT_EQ(last.predecessors[0].predecessor, kRows - 1);
    EXPECT_EQ(plan.tasks.front().predecessors[0].predecessor, 2);
    EXPECT_EQ(plan.tasks[kLong - 1].notes->size(), 200005U);
  }
  std::string told;
  EXPECT_EQ(ErrorOf([&] { Read(file("", "", "<Type>\n<Active>2</Active>")); }, &told),
            kInvalidFileFormat);
  EXPECT_THAT(told, HasSubstr("line 4504: the XML ends or breaks"));
  EXPECT_EQ(ErrorOf([&] { Read(file("", "", "\n<Active>2</Active>")); }, &told),
            kInvalidFileFormat);
  EXPECT_THAT(told, HasSubstr("line 4504: found '2' as Active"));
}

TEST(ResourceKinds, StandInTheFirstLineOfAGlossary) {
  const std::tuple<const char*, ResourceKind, const char*, const char*> cases[] = {
      {"", ResourceKind::kWork, "", ""},
      {"Resource kind: Cost", ResourceKind::kCost, "", ""},
      {"Resource kind: Material", ResourceKind::kMaterial, "", ""},
      {"Resource kind: Material (t (dry))\r\nx\r\ny", ResourceKind::kMaterial, "t (dry)", "x\r\ny"},
      {"Resource kind: Material(t)", ResourceKind::kWork, "", "Resource kind: Material(t)"},
      {"Resource kind: Material (t", ResourceKind::kWork, "", "Resource kind: Material (t"},
      {"x\r\nResource kind: Cost", ResourceKind::kWork, "", "x\r\nResource kind: Cost"}};
  for (const auto& [glossary, kind, unit, text] : cases) {
    SCOPED_TRACE(glossary);
    const KindAndText found = TakeKind(glossary);
    EXPECT_EQ(found.kind, kind);
    EXPECT_EQ(found.unit, unit);
    EXPECT_EQ(found.text, text);
    EXPECT_EQ(WithKind(found), glossary);
  }
}

}  // namespace
}  // namespace merivane::test
