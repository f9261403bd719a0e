// Where lines run: between the boxes of a diagram, and in curves that are cut and joined.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <tuple>

#include "curves.h"
#include "figures.h"
#include "pictures/diagram.h"

namespace merivane::test {

using namespace pictures;

namespace {

constexpr double kTouch = 3;  // from the tip of an arrow to the box that it reaches

// Units 1 to `units`, junctions from 101; links lead forward, a few of them back.
pictures::ModelScenario RandomScenario(std::mt19937& random, int units, int junctions, int links) {
  pictures::ModelScenario scenario;
  scenario.number = 1;
  scenario.name = "Yard";
  for (int number = 1; number <= units; ++number) {
    pictures::ModelUnit& unit = scenario.units.emplace_back();
    unit.number = number;
    unit.name = std::string(1 + random() % 60, 'n');
    if (random() % 4 == 0) unit.objects = {"Crane", "Rope"};
    if (random() % 5 == 0) unit.decompositions = {7};
  }
  for (int number = 101; number <= 100 + junctions; ++number) {
    scenario.junctions.emplace_back().number = number;
  }
  const auto any = [&] {
    const int at = static_cast<int>(random() % static_cast<unsigned>(units + junctions));
    return at < units ? at + 1 : at - units + 101;
  };
  for (int link = 0; link < links; ++link) {
    std::int32_t from = any(), to = any();
    if (from > to && random() % 8 != 0) std::swap(from, to);
    scenario.links.push_back({.origin = from, .destination = to});
  }
  return scenario;
}

struct Drawn {
  std::map<std::string, Area> boxes;  // of elements, by id
  std::vector<Figure> links;
};

Drawn TakenApart(const Picture& picture) {
  Drawn drawn;
  for (const Figure& figure : picture.figures) {
    const bool link = figure.id.empty() && !figure.shapes.empty() &&
                      std::holds_alternative<Path>(figure.shapes.front());
    if (link) drawn.links.push_back(figure);
    if (figure.id.starts_with("unit-") || figure.id.starts_with("junction-")) {
      drawn.boxes[figure.id] = figure.area;
    }
  }
  return drawn;
}

std::string IdOf(std::int32_t number) {
  return (number > 100 ? "junction-" : "unit-") + std::to_string(number);
}

bool Touches(Point point, const Area& area) {
  return point.x >= area.left - kTouch && point.x <= area.Right() + kTouch &&
         point.y >= area.top - kTouch && point.y <= area.Bottom() + kTouch;
}

// The first corner of an arrow's head is its tip.
Point TipOf(const Figure& link) {
  for (const Path& path : ShapesOf<Path>(link)) {
    if (path.ink == Ink::kArrow) return path.points.front();
  }
  ADD_FAILURE() << "a link without a head";
  return {};
}

TEST(RoutesTest, EachLinkLeavesItsOriginAndReachesItsTargetInAnyScenario) {
  std::mt19937 random(7);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    const int units = 2 + static_cast<int>(random() % 14);
    const pictures::ModelScenario scenario =
        RandomScenario(random, units, static_cast<int>(random() % 5), units + round % 7);
    const Diagram diagram = DrawDiagrams({scenario}, {.objects = round % 2 == 0}).front();
    ASSERT_EQ(diagram.whyListed, "");
    const Drawn drawn = TakenApart(diagram.picture);
    EXPECT_EQ(drawn.boxes.size(), scenario.units.size() + scenario.junctions.size());
    ASSERT_EQ(drawn.links.size(), scenario.links.size());
    for (std::size_t at = 0; at < drawn.links.size(); ++at) {
      const pictures::ModelLink& link = scenario.links[at];
      const auto& way = std::get<Path>(drawn.links[at].shapes.front());
      EXPECT_EQ(way.points.size() % 3, 1U);
      const std::string name = IdOf(link.origin) + " to " + IdOf(link.destination);
      EXPECT_TRUE(Touches(TipOf(drawn.links[at]), drawn.boxes.at(IdOf(link.destination)))) << name;
      if (!drawn.links[at].title.empty()) continue;  // in two parts
      EXPECT_TRUE(Touches(way.points.front(), drawn.boxes.at(IdOf(link.origin)))) << name;
    }
    for (auto a = drawn.boxes.begin(); a != drawn.boxes.end(); ++a) {
      EXPECT_LE(a->second.Right(), diagram.picture.width);
      EXPECT_LE(a->second.Bottom(), diagram.picture.height);
      for (auto b = std::next(a); b != drawn.boxes.end(); ++b) {
        EXPECT_FALSE(Overlap(a->second, b->second)) << a->first << " over " << b->first;
      }
    }
  }
}

TEST(RoutesTest, WhatFlowsAndWhatOnlyRelatesLooksUnlikeAPrecedence) {
  pictures::ModelScenario scenario;
  for (const int number : {1, 2}) scenario.units.emplace_back().number = number;
  for (const auto& [kind, line, heads] : {std::tuple(FlowKind::kPrecedence, Ink::kLink, 1),
                                          {FlowKind::kRelation, Ink::kRelation, 1},
                                          {FlowKind::kObjectFlow, Ink::kLink, 2}}) {
    SCOPED_TRACE(static_cast<int>(kind));
    scenario.links = {{.origin = 1, .destination = 2, .kind = kind}};
    const Drawn drawn = TakenApart(DrawDiagrams({scenario}, {}).front().picture);
    ASSERT_EQ(drawn.links.size(), 1U);
    const auto& shapes = drawn.links.front().shapes;
    EXPECT_EQ(std::get<Path>(shapes.front()).ink, line);
    EXPECT_EQ(std::ssize(shapes) - 1, heads);
    if (heads == 2) {  // one behind the other
      EXPECT_LT(std::get<Path>(shapes[2]).points.front().x,
                std::get<Path>(shapes[1]).points.front().x);
    }
  }
}

TEST(CurvesTest, ACurveThatIsCutIsTheSameCurve) {
  std::vector<Point> curve{{0, 0}};
  AddBend(curve, {100, 60});
  AddLine(curve, {150, 60});
  AddBend(curve, {250, -20});
  ASSERT_TRUE(RunsRight(curve));
  for (const double x : {10.0, 50.0, 99.0, 100.0, 120.0, 249.0}) {
    SCOPED_TRACE(x);
    const std::vector<Point> left = LeftPart(curve, x), right = RightPart(curve, x);
    EXPECT_EQ(left.size() % 3, 1U);
    EXPECT_EQ(right.size() % 3, 1U);
    EXPECT_NEAR(left.back().x, x, 0.01);
    EXPECT_NEAR(right.front().x, x, 0.01);
    EXPECT_NEAR(left.back().y, right.front().y, 0.01);
    EXPECT_EQ(left.front().y, 0);
    EXPECT_EQ(right.back().y, -20);
    std::vector<Point> joined = left;
    AddCurve(joined, right);
    EXPECT_TRUE(RunsRight(joined));
    EXPECT_EQ(joined.size(), left.size() + right.size() - 1);
  }
  curve.push_back({240, 0});
  EXPECT_FALSE(RunsRight(curve));
}

TEST(CurvesTest, HeightsComeApartNoFurtherThanTheyMust) {
  struct Row {
    std::vector<double> wanted, apart, heights;
  };
  const Row rows[] = {{{}, {}, {}},
                      {{5}, {9}, {5}},
                      {{0, 30}, {9, 10}, {0, 30}},
                      {{10, 10}, {9, 10}, {5, 15}},
                      {{20, 0}, {0, 10}, {5, 15}},
                      {{0, 0, 0, 100}, {0, 10, 10, 10}, {-10, 0, 10, 100}},
                      {{0, 9, 0}, {0, 4, 4}, {-1, 3, 7}}};
  for (const Row& row : rows) {
    const std::vector<double> heights = SpreadApart(row.wanted, row.apart);
    ASSERT_EQ(heights.size(), row.heights.size());
    for (std::size_t at = 0; at < heights.size(); ++at) {
      EXPECT_NEAR(heights[at], row.heights[at], 1e-9) << at << " of " << heights.size();
    }
  }
}

}  // namespace
}  // namespace merivane::test
