#include "pictures/report.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <sstream>

#include "model_fixture.h"
#include "pictures/svg.h"

namespace merivane::test {

using namespace pictures;

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ReportTest : public ModelFixture {
 protected:
  std::string Page(std::optional<DatedPlan> plan = {}) {
    Report report;
    report.plan = std::move(plan);
    report.model = ReadProcessModel(Model(), 1);
    report.diagrams = DrawDiagrams(report.model.scenarios, {.headline = false});
    report.findings.push_back({.severity = inspect::Severity::kWarning,
                               .line = 12,
                               .element = {.kind = "unit", .number = 3, .name = "<i>"},
                               .sentence = "It's < 1.",
                               .advice = "Ask."});
    report.whyNoPlan = "No plan & no <chart>.";
    return ReportPage(report);
  }
  static void ExpectParts(const std::string& page, std::initializer_list<const char*> parts) {
    for (const char* part : parts) EXPECT_THAT(page, HasSubstr(part));
  }
  static std::vector<std::string> Matches(const std::string& page, const char* pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator at(page.begin(), page.end(), expression), end; at != end; ++at) {
      found.push_back((*at)[1]);
    }
    return found;
  }
};

TEST_F(ReportTest, EveryLinkHasItsPlaceAndEveryPlaceIsThereOnce) {
  Scenario(1, "Yard");
  Scenario(2, "Of U1", 1);
  Scenario(3, "Of itself", 30);
  Uobs({1, 2});
  Uob(20, 2);
  Uob(30, 3);
  Junction(100, "Fan Out", "XOR");
  Links({{1, 100}, {100, 2}});
  const std::string page = Page();
  const auto ids = Matches(page, " id=\"([^\"]*)\"");
  const std::set<std::string> places(ids.begin(), ids.end());
  EXPECT_EQ(places.size(), ids.size());
  const auto targets = Matches(page, " href=\"#([^\"]*)\"");
  for (const std::string& target : targets) EXPECT_TRUE(places.contains(target)) << target;
  // In the contents, in the diagram and in its words.
  EXPECT_EQ(std::count(targets.begin(), targets.end(), "scenario-2"), 3);
  EXPECT_THAT(page, HasSubstr("junction J100 (XOR)"));
}

TEST_F(ReportTest, TextsAreTextAndNothingIsFetched) {
  const std::string nasty = "</svg><script src='http://x'>\x80&\x01";
  Scenario(1, nasty.c_str());
  Uob(1, 1, {{"Name", nasty}, {"Constraint_List", "  " + nasty + "\r\n  second\r\n"}}, nasty);
  Add("Object_Pool", {{"Num", 7}, {"Name", nasty}, {"Alias", nasty}, {"Quantity", 1.5}});
  Add("Fact_Pool", {{"Num", 8}, {"Name", nasty}, {"Glossary", nasty}});
  const std::string page = Page();
  EXPECT_THAT(page, Not(HasSubstr("<script")));
  EXPECT_THAT(page, Not(HasSubstr("\x01")));
  ExpectParts(page, {"No plan &amp; no &lt;chart&gt;.", "\xe2\x82\xac&amp;\xef\xbf\xbd<br>second",
                     "data-of=\"Quantity\">1.5</td>",
                     ">unit 3 '&lt;i&gt;'</td><td class=\"wide\" data-of=\"What was found\">It's "
                     "&lt; 1.</td>"});
  EXPECT_TRUE(Matches(page, "(src|href|url)=?[\"(](?!#)").empty());
}

DatedPlan Bakery() {
  DatedPlan whole;
  whole.plan.start = {.year = 2026, .month = 11, .day = 30, .seconds = 8 * 3600};
  for (const char* name : {"Bake <rye>", "Sweep"}) {
    schedule::PlanTask task;
    task.uid = task.id = std::ssize(whole.plan.tasks) + 1;
    task.name = name;
    task.duration = task.id * schedule::kTenthsOfDay;
    whole.plan.tasks.push_back(task);
  }
  whole.staffing.resources = {{.name = "Aldo", .costOfHour = 12.505}, {.name = "Broom"}};
  whole.staffing.assignments = {{.task = 0, .resource = 0, .hours = 4},
                                {.task = 1, .resource = 0, .hours = 8}};
  whole.dates = MakeSchedule(whole.plan);
  return whole;
}

TEST_F(ReportTest, ThePlanIsToldInWordsWhichArePrinted) {
  Scenario(1, "Yard");
  const std::string page = Page(Bakery());
  ExpectParts(page, {"<td class=\"wide\" data-of=\"Task\">Sweep <span class=\"quiet\">"
                     "(critical)</span></td><td data-of=\"Start\">Nov 30, 2026 8:00</td>"
                     "<td data-of=\"Finish\">Dec 1, 2026 17:00</td>"
                     "<td class=\"narrow\" data-of=\"Days\">2</td>"
                     "<td class=\"narrow\" data-of=\"After\"></td>"
                     "<td data-of=\"Resources\">Aldo</td>",
                     "<dt>Length</dt><dd>2 days of work</dd>",
                     "<dt>Critical path</dt><dd>Sweep</dd>", "0 errors, 1 warning, 0 notes",
                     "data-of=\"Days of work\">1.5</td><td class=\"narrow\" "
                     "data-of=\"Cost\">150.06</td>",
                     "Nov 30, 2026 8:00 to Nov 30, 2026 17:00: 2 at once"});
  const std::string printed = page.substr(page.find("@media print"));
  EXPECT_THAT(printed, HasSubstr("\n  details::details-content { content-visibility: visible;"));
}

// Each sheet shows what is frozen and a part of its own; together they show all.
TEST_F(ReportTest, AWideChartIsPrintedOnSheetsThatCoverIt) {
  pictures::Picture picture;
  picture.id = "plan";
  picture.width = 2000;
  picture.height = 1000;
  picture.frozen = {200, 40};
  const auto parts =
      Matches(ToSvgSheets(picture, 700, 520), "<svg x=\"200\" y=\"40\" [^>]*viewBox=\"([^\"]*)\"");
  ASSERT_EQ(parts.size(), 8U);
  double covered = 0;
  for (const std::string& part : parts) {
    double left = 0, top = 0, width = 0, height = 0;
    std::istringstream(part) >> left >> top >> width >> height;
    EXPECT_LE(width + 200, 700);
    EXPECT_LE(height + 40, 520);
    covered += width * height;
  }
  EXPECT_NEAR(covered, 1800.0 * 960, 1);
}

TEST_F(ReportTest, DecisionsAreToldWithWhatWasNotTaken) {
  Scenario(1, "By day");
  Scenario(2, "By night");
  Scenario(3, "By hand", 1);
  Scenario(4, "By crane", 1);
  Uobs({1, 2});
  const Fields left = {{"Send_to_Project", 0}};
  Uob(5, 1, left);
  Uob(20, 2, left);
  Uob(30, 3, left);
  Uob(40, 4);
  Junction(100, "Fan Out", "XOR");
  Junction(101, "Fan Out", "Async. AND");
  Links({{1, 100}, {100, 2}, {100, 5}, {2, 101}});
  const std::string page = Page(Bakery());
  EXPECT_THAT(page, HasSubstr("<dt>Decided</dt><dd>scenario: 'By day', not 'By night'<br>"
                              "unit 1 'U1': 'By crane', not 'By hand'<br>"
                              "junction J100 (XOR): 'U2', not 'U5'</dd>"));
}

TEST_F(ReportTest, AFindingLeadsToItsElementWhichHasADot) {
  Scenario(1, "Yard");
  Uobs({3, 4});
  const std::string page = Page();
  EXPECT_THAT(page, HasSubstr("<a href=\"#scenario-1-unit-3\">unit 3 '&lt;i&gt;'</a>"));
  const std::size_t begin = page.find("<g id=\"scenario-1-unit-3\">");
  const std::string unit = page.substr(begin, page.find("</g>", begin) - begin);
  ExpectParts(unit, {"Found: It's &lt; 1.", "class=\"finding\""});
  EXPECT_EQ(Matches(page, "(class=\"finding\")").size(), 1U);
}

TEST_F(ReportTest, OnlyWhatStaysOutOfThePlanIsFaint) {
  Scenario(1, "Yard");
  Uobs({1, 2});
  Uob(3, 1, {{"Send_to_Project", 0}});
  Junction(100, "Fan Out", "XOR");
  Links({{1, 100}, {100, 2}, {100, 3}});
  const std::string page = Page();
  const auto faint = Matches(page, "<g( id=\"[^\"]*\")? class=\"faint\"");
  EXPECT_EQ(faint.size(), 2U);  // the unit and the link to it
  EXPECT_THAT(faint, testing::Contains(" id=\"scenario-1-unit-3\""));
  EXPECT_THAT(page, HasSubstr("<g id=\"scenario-1-unit-2\">"));
}

TEST_F(ReportTest, TablesTellWhoUsesWhatAndWhatComesNext) {
  Scenario(1, "Yard");
  Uobs({1, 2});
  Uob(3, 1, {{"Constraint_List", "  dry\r\n"}, {"Labor_Rule", "AUX#1"}});
  Junction(100, "Fan Out", "Sync. OR");
  Links({{1, 100}, {100, 2}, {100, 3}, {3, 9}});  // 9 isn't there
  for (const int number : {7, 8}) {
    const std::string name = number == 7 ? "Crane" : "Rope";
    Add("Object_Pool", {{"Num", number}, {"Name", name}, {"Constraint_List", name + " rests"}});
  }
  for (const int unit : {1, 3}) {
    Add("Object_in_Activity_in_Scenario",
        {{"Scenario_Num", 1}, {"Activity_Num", unit}, {"Object_Name", "Crane"}});
  }
  const std::string page = Page();
  ExpectParts(page, {"data-of=\"Used by\">U1, U3</td>", "data-of=\"Used by\"></td>",
                     ">AUX#1</td><td data-of=\"Objects\">Crane</td><td data-of=\"Leads to\"></td>",
                     "data-of=\"Unit or junction\">junction J100 (Sync. OR)</td>",
                     "data-of=\"Leads to\">U2<br>U3</td>",
                     ">Unit U3</td><td class=\"wide\" data-of=\"Constraints\">dry</td>",
                     ">Object Rope</td><td class=\"wide\" data-of=\"Constraints\">Rope rests</td>",
                     "1 scenario &middot; 3 units &middot; 2 objects"});
  const std::string leftOut = page.substr(page.find("<section id=\"left-out\""));
  EXPECT_LT(leftOut.find("None."), leftOut.find("<section id=\"objects\""));
}

TEST_F(ReportTest, TheContentsFollowTheDecompositionsAndEndInACircle) {
  Scenario(1, "Yard");
  Scenario(2, "Of U10", 10);
  Scenario(3, "Of U20", 20);
  Scenario(4, "Alone");
  Scenario(5, "Of U60", 60);
  Scenario(6, "Of U50", 50);
  for (const int scenario : {1, 2, 5, 6}) Uob(scenario * 10, scenario);
  const std::string page = Page();
  const std::size_t begin = page.find("<nav");
  const std::string contents = page.substr(begin, page.find("</nav>") - begin);
  EXPECT_THAT(contents, HasSubstr("Yard</a>\n<ul>\n<li><a href=\"#scenario-2\">Of U10</a>\n<ul>\n"
                                  "<li><a href=\"#scenario-3\">Of U20</a></li>\n</ul></li>\n"
                                  "</ul></li>\n"));
  for (const char* id : {"1", "2", "3", "4", "5", "6"}) {
    const auto links = Matches(contents, (std::string("(#scenario-") + id + ")\"").c_str());
    EXPECT_EQ(links.size(), 1U) << id;
  }
  EXPECT_EQ(Matches(contents, "(<ul>)").size(), Matches(contents, "(</ul>)").size());
}

}  // namespace
}  // namespace merivane::test
