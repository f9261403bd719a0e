#include "pictures/diagram.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <numeric>
#include <tuple>

#include "figures.h"
#include "model_fixture.h"
#include "pictures/svg.h"
#include "text_lines.h"

namespace merivane::test {

using namespace pictures;

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class DiagramTest : public ModelFixture {
 protected:
  DiagramTest() { Scenario(1, "Yard"); }

  Diagram Draw(const DiagramOptions& options = {}) {
    model = ReadProcessModel(Model(), 1);
    return DrawDiagrams(model.scenarios, options).front();
  }
  static std::vector<Text> TextsOf(const Figure& figure, Ink ink) {
    std::vector<Text> texts = ShapesOf<Text>(figure);
    std::erase_if(texts, [&](const Text& text) { return text.ink != ink; });
    return texts;
  }
  static std::ptrdiff_t PathsOf(const Figure& figure, Ink ink) {
    return std::ranges::count(ShapesOf<Path>(figure), ink, &Path::ink);
  }

  ProcessModel model;
};

TEST_F(DiagramTest, JunctionsShowTheirKindAndBars) {
  const std::tuple<const char*, const char*, int> rows[] = {{"Async. AND", "&", 1},
                                                            {"Sync. AND", "&", 2},
                                                            {"Async. OR", "O", 1},
                                                            {"Sync. OR", "O", 2},
                                                            {"XOR", "X", 1}};
  int number = 100;
  for (const auto& [type, sign, bars] : rows) Junction(number++, "Fan In", type);
  const Diagram diagram = Draw();
  number = 100;
  for (const auto& [type, sign, bars] : rows) {
    SCOPED_TRACE(type);
    const Figure& junction = Find(diagram.picture, "junction-" + std::to_string(number++));
    EXPECT_EQ(TextsOf(junction, Ink::kJunctionSign).at(0).text, sign);
    EXPECT_EQ(PathsOf(junction, Ink::kJunctionBar), bars);
    EXPECT_THAT(junction.title, HasSubstr("fan-in"));
  }
}

TEST_F(DiagramTest, LinksRunFromLeftToRightAndOnlyBetweenElementsOfTheScenario) {
  Uobs({1, 2, 3});
  Links({{1, 2}, {2, 3}, {3, 1}, {3, 3}, {3, 9}});
  const Picture picture = Draw().picture;
  const double first = Find(picture, "unit-1").area.left;
  EXPECT_LT(first, Find(picture, "unit-2").area.left);
  EXPECT_LT(Find(picture, "unit-2").area.left, Find(picture, "unit-3").area.left);
  std::ptrdiff_t links = 0;
  for (const Figure& figure : picture.figures) {
    links += PathsOf(figure, Ink::kLink);
    EXPECT_LE(figure.area.Right(), picture.width);
    EXPECT_LE(figure.area.Bottom(), picture.height);
  }
  EXPECT_EQ(links, 4);
}

TEST_F(DiagramTest, WhatStaysOutOfThePlanIsGrey) {
  Uob(1);
  Uob(2, 1, {{"Send_to_Project", 0}});
  Uob(3);
  Junction(100, "Fan Out", "XOR");
  Junction(101, "Fan Out", "Async. AND");
  Links({{1, 100}, {100, 101}, {100, 3}, {101, 2}});
  const Picture picture = Draw().picture;
  std::vector<std::string> grey;
  std::ptrdiff_t greyLinks = 0;
  for (const Figure& figure : picture.figures) {
    if (figure.faint && !figure.id.empty()) grey.push_back(figure.id);
    if (figure.faint) greyLinks += PathsOf(figure, Ink::kLink);
  }
  EXPECT_EQ(grey, (std::vector<std::string>{"unit-2", "junction-101"}));
  EXPECT_EQ(greyLinks, 2);
  EXPECT_THAT(Find(picture, "unit-2").title, HasSubstr("(XOR) takes another path"));
  std::vector<std::string> legend;
  for (const Text& sign : TextsOf(picture.figures.back(), Ink::kSubtitle)) {
    legend.push_back(sign.text);
    EXPECT_LE(sign.at.x + WidthOf(sign.text, Ink::kSubtitle), picture.width);
    EXPECT_LE(sign.at.y, picture.height);
  }
  EXPECT_EQ(legend,
            (std::vector<std::string>{"&: all paths", "X: exactly one path",
                                      "one bar: each at its own time", "grey: not in the plan"}));
}

TEST_F(DiagramTest, NamesComeOutAsTextWhateverTheyHold) {
  Uob(1, 1, {{"Name", "<b>&\"'\x80\x81\x01</b>"}, {"Fact_List", "  ]]><!--\r\n"}});
  Scenario(2, "<script>", 1);
  const std::string svg =
      ToSvgFile(Stacked({Draw().picture, DrawDiagrams(model.scenarios, {}).back().picture}));
  EXPECT_THAT(svg,
              HasSubstr("&lt;b&gt;&amp;&quot;'\xe2\x82\xac\xef\xbf\xbd\xef\xbf\xbd&lt;/b&gt;"));
  EXPECT_THAT(svg, HasSubstr("Facts: ]]&gt;&lt;!--"));
  EXPECT_THAT(svg, HasSubstr("<a href=\"#scenario-2\">"));
  EXPECT_THAT(svg, Not(HasSubstr("<script>")));
}

TEST_F(DiagramTest, TextsStayWithinTheirBoxes) {
  const std::string names[] = {std::string(250, 'W'), "a b", ""};
  int number = 12345;
  for (const std::string& name : names) {
    Uob(number++, 1, {{"Name", name}, {"Ref", std::string(60, 'M')}});
  }
  const Diagram diagram = Draw();
  while (--number >= 12345) {
    const Figure& unit = Find(diagram.picture, "unit-" + std::to_string(number));
    EXPECT_LE(TextsOf(unit, Ink::kUnitName).size(), 3U);
    for (const Ink ink : {Ink::kUnitName, Ink::kUnitNumber}) {
      for (const Text& text : TextsOf(unit, ink)) {
        const double half = WidthOf(text.text, ink) / 2;
        EXPECT_GE(text.at.x - half, unit.area.left) << text.text;
        EXPECT_LE(text.at.x + half, unit.area.Right()) << text.text;
      }
    }
  }
}

// Tangled: the second unit leads into both branches.
TEST_F(DiagramTest, ATangledScenarioThatIsNotLaidOutInTimeIsListed) {
  Uobs({1, 2, 3, 4});
  Links({{1, 3}, {1, 4}, {2, 3}, {2, 4}});
  const Diagram diagram = Draw({.limit = std::chrono::milliseconds(0)});
  EXPECT_EQ(diagram.whyListed, "is too large to be laid out");
  EXPECT_EQ(TextsOf(Find(diagram.picture, "unit-2"), Ink::kListed).at(0).text, "U2");
}

TEST_F(DiagramTest, BranchesNeedNoLibraryAndKeepTheirOrder) {
  Uobs({1, 2, 3, 4, 5, 6});
  Junction(100, "Fan Out", "XOR");
  Junction(101, "Fan In", "XOR");
  Links({{1, 100}, {100, 5}, {100, 2}, {2, 3}, {3, 101}, {5, 101}, {100, 101}, {101, 4}, {6, 101}});
  const Diagram diagram = Draw({.limit = std::chrono::milliseconds(0)});
  Links({{4, 1}});
  EXPECT_NE(Draw({.limit = std::chrono::milliseconds(0)}).whyListed, "");
  ASSERT_EQ(diagram.whyListed, "");
  const auto area = [&](const char* id) { return Find(diagram.picture, id).area; };
  EXPECT_LT(area("unit-5").Bottom(), area("unit-2").top);
  EXPECT_EQ(area("unit-2").Centre().y, area("unit-3").Centre().y);
  EXPECT_NEAR(area("unit-1").Centre().y, area("junction-100").Centre().y, 0.01);
}

TEST_F(DiagramTest, AnyShapeIsDrawnWithoutOverlapAndWideOnesInNumberedRows) {
  constexpr int kUnits = 300;
  std::vector<int> numbers(kUnits);
  std::iota(numbers.begin(), numbers.end(), 1);
  for (const int number : numbers) Uob(number);
  for (const int step : {1, 2}) {  // a chain, then a ring of rungs on it
    for (int number = 1; number + step <= kUnits; ++number) Links({{number, number + step}});
    if (step == 2) Links({{kUnits, 1}});
    const Diagram diagram = Draw();
    ASSERT_EQ(diagram.whyListed, "");
    EXPECT_LT(diagram.picture.width, 2100);
    std::vector<Area> areas;
    std::ptrdiff_t marks = 0;
    for (const Figure& figure : diagram.picture.figures) {
      if (figure.id.starts_with("unit-")) areas.push_back(figure.area);
      marks += std::ssize(TextsOf(figure, Ink::kUnitNumber)) * (figure.id.empty() ? 1 : 0);
    }
    EXPECT_EQ(areas.size(), std::size_t{kUnits});
    EXPECT_GT(marks, 20);
    EXPECT_EQ(marks % 2, 0);
    for (std::size_t a = 0; a < areas.size(); ++a) {
      EXPECT_LE(areas[a].Bottom(), diagram.picture.height);
      for (std::size_t b = 0; b < a; ++b) {
        EXPECT_FALSE(Overlap(areas[a], areas[b])) << a << " over " << b;
      }
    }
  }
}

TEST_F(DiagramTest, ScenariosStandBehindWhatTheyDecomposeAndCirclesEnd) {
  Uobs({1, 2});
  Uob(3, 3);
  Uob(4, 4);
  Scenario(3, "Of 2", 2);
  Scenario(2, "Of 1", 1);
  Scenario(4, "Of 4", 4);
  std::string order;
  for (const auto& scenario : ReadProcessModel(Model(), 1).scenarios) {
    order += std::to_string(scenario.number);
  }
  EXPECT_EQ(order, "1234");
}

}  // namespace
}  // namespace merivane::test
