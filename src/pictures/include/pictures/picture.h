// A picture as plain shapes, before it becomes SVG or lines on a screen.
//
//   const ProcessModel model = ReadProcessModel(connection, project);
//   std::vector<Picture> pictures;
//   for (Diagram& diagram : DrawDiagrams(model.scenarios, {})) pictures.push_back(diagram.picture);
//   WritePictures(pictures, "model.svg");
//
// Who draws says what a shape stands for (Ink), never how it looks: colours, widths and fonts are
// told in one place for files, pages and screens. Pictures own all that they show, and stay when
// the database and the model are gone. The same model gives the same picture on every machine.
#pragma once

#include <string>
#include <variant>
#include <vector>

namespace merivane::pictures {

// Lengths are pixels of 1/96 inch; x runs to the right, y downwards.
struct Point {
  double x = 0;
  double y = 0;
};

struct Area {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;

  double Right() const { return left + width; }
  double Bottom() const { return top + height; }
  Point Centre() const { return {left + width / 2, top + height / 2}; }
};

// What a shape stands for; style.h tells how that looks.
enum class Ink {
  kUnit,
  kUnitBehind,
  kStrip,
  kDivider,
  kUnitName,
  kUnitNumber,
  kObjects,
  kJunction,
  kJunctionBar,
  kJunctionSign,
  kJunctionName,
  kLink,
  kRelation,
  kArrow,
  kTitle,
  kSubtitle,
  kListed,
  kListedNumber,
  kGrid,
  kGround,  // behind a text, so that no line runs through it
  kWeekend,
  kAxis,
  kTask,
  kCritical,
  kSummary,
  kMilestone,
  kBefore,
  kOverload,
  kTaskName,
  kSummaryName,
  kResources,
  kTaskLink,
  kTaskArrow,
  kCriticalLink,
  kCriticalArrow,
  kFinding,
  kAdded,
  kChanged,
  kRemoved,
  kCount
};

struct Box {
  Ink ink;
  Area area;
  double radius = 0;
};

// Straight lines through the points; a curve takes three points for each of its Bezier pieces
// behind the first point.
struct Path {
  Ink ink;
  std::vector<Point> points;
  bool curved = false;
  bool closed = false;
};

enum class Anchor { kStart, kMiddle, kEnd };

// One line; `at` is on its base line.
struct Text {
  Ink ink;
  Point at;
  std::string text;  // Windows-1252
  Anchor anchor = Anchor::kStart;
};

using Shape = std::variant<Box, Path, Text>;

// Shapes that belong together: one element of the model or the plan.
struct Figure {
  std::string id;      // ASCII, one in the picture; empty where nothing leads to it
  std::string title;   // Windows-1252, lines parted by '\n': the tool tip and the text alternative
  std::string target;  // id that a click leads to; empty for none
  bool faint = false;  // grey: it stays out of the plan
  Area area;
  std::vector<Shape> shapes;
};

struct Picture {
  std::string id;           // ASCII
  std::string title;        // Windows-1252
  std::string description;  // Windows-1252
  double width = 0;
  double height = 0;
  std::vector<Figure> figures;  // later ones lie above earlier ones
  Point frozen = {};            // what lies left of it or above it stands on each sheet of paper
};

// One below the other, under the first one's id.
Picture Stacked(std::vector<Picture> pictures);

}  // namespace merivane::pictures
