#include "pictures/report.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>

#include "model_fixture.h"

namespace merivane::test {

using namespace pictures;

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ReportTest : public ModelFixture {
 protected:
  std::string Page(std::optional<pictures::Picture> chart = {}) {
    Report report;
    report.chart = std::move(chart);
    report.model = ReadProcessModel(Model(), 1);
    report.diagrams = DrawDiagrams(report.model.scenarios, {.headline = false});
    report.findings.push_back({.line = 12,
                               .element = {.kind = "unit", .number = 3, .name = "<i>"},
                               .sentence = "It's < 1.",
                               .advice = "Ask."});
    report.whyNoChart = "No plan & no <chart>.";
    return ReportPage(report);
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
  EXPECT_THAT(page, HasSubstr("No plan &amp; no &lt;chart&gt;."));
  EXPECT_THAT(page, HasSubstr("\xe2\x82\xac&amp;\xef\xbf\xbd<br>second"));
  EXPECT_THAT(page, HasSubstr("<td>1.5</td>"));
  EXPECT_THAT(page, HasSubstr("<td>unit 3 '&lt;i&gt;'</td><td>It's &lt; 1.</td>"));
  EXPECT_TRUE(Matches(page, "(src|href|url)=?[\"(](?!#)").empty());
}

TEST_F(ReportTest, ThePlanIsToldInWordsWhichArePrinted) {
  Figure bar;
  bar.id = "task-3";
  bar.title = "Bake <rye>\nJan 5 to Jan 6\n2 days, critical\nResources: Aldo";
  bar.shapes.push_back(Text{Ink::kListedNumber, {}, "17"});
  pictures::Picture chart;
  chart.figures.push_back(bar);
  const char* row =
      "<td class=\"number\">17</td><td>Bake &lt;rye&gt;</td><td>Jan 5 to Jan 6</td>"
      "<td>2 days, critical</td><td>Aldo</td>";
  const std::string page = Page(chart);
  EXPECT_THAT(page, HasSubstr(row));
  const std::string printed = page.substr(page.find("@media print"));
  EXPECT_THAT(printed, HasSubstr("\n  details::details-content { content-visibility: visible;"));
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
  Links({{1, 100}, {100, 2}, {100, 3}, {3, 9}});
  for (const int number : {7, 8}) {
    const std::string name = number == 7 ? "Crane" : "Rope";
    Add("Object_Pool", {{"Num", number}, {"Name", name}, {"Constraint_List", name + " rests"}});
  }
  for (const int unit : {1, 3}) {
    Add("Object_in_Activity_in_Scenario",
        {{"Scenario_Num", 1}, {"Activity_Num", unit}, {"Object_Name", "Crane"}});
  }
  const std::string page = Page();
  EXPECT_THAT(page, HasSubstr("<td>Crane</td><td></td><td></td><td></td><td>U1, U3</td>"));
  EXPECT_THAT(page, HasSubstr("<td>Rope</td><td></td><td></td><td></td><td></td>"));
  EXPECT_THAT(page, HasSubstr("<td>AUX#1</td><td>Crane</td><td></td>"));  // 9 isn't there
  EXPECT_THAT(page, HasSubstr("<td>junction J100 (Sync. OR)</td><td></td><td></td><td></td><td>"
                              "</td><td>U2<br>U3</td>"));
  EXPECT_THAT(page, HasSubstr("<td class=\"number\">Unit U3</td><td>dry</td>"));
  EXPECT_THAT(page, HasSubstr("<td class=\"number\">Object Rope</td><td>Rope rests</td>"));
  EXPECT_THAT(page, HasSubstr("1 scenario &middot; 3 units &middot; 2 objects"));
  const std::string leftOut = page.substr(page.find("<section id=\"left-out\""));
  EXPECT_LT(leftOut.find("None."), leftOut.find("<section id=\"objects\""));
}

TEST_F(ReportTest, TheContentsFollowTheDecompositionsAndEndInACircle) {
  Scenario(1, "Yard");
  Scenario(2, "Of U1", 1);
  Scenario(3, "Of U20", 20);
  Scenario(4, "Alone");
  Scenario(5, "Of U60", 60);
  Scenario(6, "Of U50", 50);
  Uob(1);
  Uob(20, 2);
  Uob(50, 5);
  Uob(60, 6);
  const std::string page = Page();
  const std::size_t begin = page.find("<nav");
  const std::string contents = page.substr(begin, page.find("</nav>") - begin);
  EXPECT_THAT(contents, HasSubstr("Yard</a>\n<ul>\n<li><a href=\"#scenario-2\">Of U1</a>\n<ul>\n"
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
