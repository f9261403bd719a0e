#include "diagram_figures.h"

#include <algorithm>
#include <cmath>

#include "pictures/diagram.h"
#include "pictures/marks.h"
#include "text_lines.h"

namespace merivane::pictures {

namespace {

constexpr double kNameWidth = 128;  // the longest line of a name
constexpr std::size_t kNameLines = 3;
constexpr double kLeastWidth = 104;
constexpr double kPadding = 12;
constexpr double kLine = 15;
constexpr double kStrip = 19;
constexpr double kObjectLine = 13;
constexpr std::size_t kMostObjects = 8;
constexpr double kShadow = 4;
constexpr double kJunctionSize = 34;
constexpr double kArrowHalf = 4;

struct UnitForm {
  std::vector<std::string> name;
  std::vector<std::string> objects;
  double width = 0;
  double height = 0;  // of the box
};

std::vector<std::string> ObjectLines(const ModelUnit& unit, double width) {
  std::vector<std::string> lines;
  for (const std::string& object : unit.objects) {
    if (lines.size() + 1 == kMostObjects && unit.objects.size() > kMostObjects) {
      lines.push_back("and " + std::to_string(unit.objects.size() - lines.size()) + " more");
      break;
    }
    lines.push_back(Shortened(object, width, Ink::kObjects));
  }
  return lines;
}

UnitForm BoxOf(const ModelUnit& unit) {
  UnitForm form;
  form.name = Wrapped(unit.name, kNameWidth, kNameLines, Ink::kUnitName);
  double widest = WidthOf(std::to_string(unit.number), Ink::kUnitNumber) + 2 * kPadding +
                  std::min(kNameWidth / 2, WidthOf(unit.reference, Ink::kUnitNumber));
  for (const std::string& line : form.name) {
    widest = std::max(widest, WidthOf(line, Ink::kUnitName));
  }
  form.width = std::ceil(std::max(kLeastWidth, widest + 2 * kPadding));
  const double lines = std::max<double>(2, static_cast<double>(form.name.size()));
  form.height = lines * kLine + kPadding + kStrip;
  return form;
}

UnitForm FormOf(const ModelUnit& unit, bool objects) {
  UnitForm form = BoxOf(unit);
  if (objects) form.objects = ObjectLines(unit, form.width);
  return form;
}

double ObjectsHeight(const UnitForm& form) {
  return form.objects.empty() ? 0 : static_cast<double>(form.objects.size()) * kObjectLine + 6;
}

Path Line(Ink ink, Point from, Point to) { return {.ink = ink, .points = {from, to}}; }

void AddName(const UnitForm& form, const Area& box, Figure& figure) {
  const auto lines = static_cast<double>(form.name.size());
  double base = box.top + (box.height - kStrip - lines * kLine) / 2 + kLine - 3.5;
  for (const std::string& line : form.name) {
    figure.shapes.push_back(Text{Ink::kUnitName, {box.Centre().x, base}, line, Anchor::kMiddle});
    base += kLine;
  }
}

void AddStrip(const ModelUnit& unit, const Area& box, Figure& figure) {
  const double top = box.Bottom() - kStrip;
  const std::string number = std::to_string(unit.number);
  const double split = std::max(box.left + box.width / 2 - 1,
                                box.left + WidthOf(number, Ink::kUnitNumber) + kPadding);
  const double base = box.Bottom() - 6;
  figure.shapes.push_back(Box{Ink::kStrip, {box.left, top, box.width, kStrip}});
  figure.shapes.push_back(Line(Ink::kDivider, {split, top}, {split, box.Bottom()}));
  figure.shapes.push_back(
      Text{Ink::kUnitNumber, {(box.left + split) / 2, base}, number, Anchor::kMiddle});
  figure.shapes.push_back(Text{Ink::kUnitNumber,
                               {(split + box.Right()) / 2, base},
                               Shortened(unit.reference, box.Right() - split - 6, Ink::kUnitNumber),
                               Anchor::kMiddle});
}

void AddTold(std::string& text, const char* what, const std::string& told) {
  if (!told.empty()) text += std::string("\n") + what + told;
}

const char* SignOf(JunctionKind kind) {
  if (kind == JunctionKind::kXor) return "X";
  return kind == JunctionKind::kOr ? "O" : "&";
}

void AddMark(int number, Point centre, Figure& figure) {
  const std::string text = std::to_string(number);
  const double half =
      std::max(kMarkRadius, WidthOf(text, Ink::kUnitNumber) / 2 + 3);  // longer for a long number
  figure.shapes.push_back(Box{Ink::kJunction,
                              {centre.x - half, centre.y - kMarkRadius, 2 * half, 2 * kMarkRadius},
                              kMarkRadius});
  figure.shapes.push_back(
      Text{Ink::kUnitNumber, {centre.x, centre.y + 3.5}, text, Anchor::kMiddle});
}

// With its base at `base`.
Path ArrowHead(Point base, Point tip) {
  const double length = std::hypot(tip.x - base.x, tip.y - base.y);
  const double acrossX = length > 0 ? -(tip.y - base.y) / length * kArrowHalf : 0;
  const double acrossY = length > 0 ? (tip.x - base.x) / length * kArrowHalf : kArrowHalf;
  return {
      .ink = Ink::kArrow,
      .points = {tip, {base.x + acrossX, base.y + acrossY}, {base.x - acrossX, base.y - acrossY}},
      .closed = true};
}

}  // namespace

GraphNode SizeOf(const ModelUnit& unit, bool objects) {
  const UnitForm form = FormOf(unit, objects);
  return {form.width, form.height + 2 * ObjectsHeight(form)};
}

double BoxHeightOf(const ModelUnit& unit) { return BoxOf(unit).height; }

GraphNode SizeOfJunction() { return {kJunctionSize, kJunctionSize}; }

std::string DescriptionOf(const ModelUnit& unit) {
  std::string text = unit.name + " (unit " + std::to_string(unit.number);
  if (!unit.reference.empty()) text += ", " + unit.reference;
  text += ")";
  if (!unit.sent) text += "\nNot in the plan: " + unit.whyLeft;
  AddTold(text, "Cycle time: ", unit.duration);
  AddTold(text, "Labor rule: ", unit.laborRule);
  std::string objects;
  for (const std::string& object : unit.objects) {
    objects += (objects.empty() ? "" : ", ") + object;
  }
  AddTold(text, "Objects: ", objects);
  AddTold(text, "Facts: ", unit.facts);
  AddTold(text, "Constraints: ", unit.constraints);
  AddTold(text, "", unit.glossary);
  if (!unit.decompositions.empty()) text += "\nDecomposed: see the scenario below it";
  return text;
}

std::string DescriptionOf(const ModelJunction& junction) {
  std::string text = "Junction " + junction.id + ": " + junction.type +
                     (junction.fanIn ? ", fan-in" : ", fan-out");
  AddTold(text, "Facts: ", junction.facts);
  return text;
}

Figure DrawUnit(const ModelUnit& unit, Point centre, bool objects) {
  const UnitForm form = FormOf(unit, objects);
  Figure figure;
  figure.id = UnitId(unit.number);
  figure.title = DescriptionOf(unit);
  figure.faint = !unit.sent;
  const Area box{centre.x - form.width / 2, centre.y - form.height / 2, form.width, form.height};
  figure.area = box;
  if (!unit.decompositions.empty()) {
    figure.target = DiagramId(unit.decompositions.front());
    Area behind = box;
    behind.left += kShadow;
    behind.top += kShadow;
    figure.shapes.push_back(Box{Ink::kUnitBehind, behind});
  }
  figure.shapes.push_back(Box{Ink::kUnit, box});
  AddName(form, box, figure);
  AddStrip(unit, box, figure);
  double base = box.Bottom() + kObjectLine + 2;
  for (const std::string& line : form.objects) {
    figure.shapes.push_back(Text{Ink::kObjects, {box.left + 3, base}, line});
    base += kObjectLine;
  }
  MarkFigure(unit.mark, figure);
  return figure;
}

Figure DrawJunction(const ModelJunction& junction, Point centre, bool sent) {
  constexpr double kBarInset = 5.5;
  Figure figure;
  figure.id = "junction-" + std::to_string(junction.number);
  figure.title = DescriptionOf(junction);
  figure.faint = !sent;
  const double half = kJunctionSize / 2;
  const Area box{centre.x - half, centre.y - half, kJunctionSize, kJunctionSize};
  figure.area = box;
  figure.shapes.push_back(Box{Ink::kJunction, box});
  const double left = box.left + kBarInset;
  const double right = box.Right() - kBarInset;
  figure.shapes.push_back(Line(Ink::kJunctionBar, {left, box.top}, {left, box.Bottom()}));
  if (junction.synchronous) {
    figure.shapes.push_back(Line(Ink::kJunctionBar, {right, box.top}, {right, box.Bottom()}));
  }
  const double middle = junction.synchronous ? centre.x : (left + box.Right()) / 2;
  figure.shapes.push_back(
      Text{Ink::kJunctionSign, {middle, centre.y + 5}, SignOf(junction.kind), Anchor::kMiddle});
  figure.shapes.push_back(Text{Ink::kJunctionName,
                               {centre.x, box.Bottom() + 11},
                               Shortened(junction.id, 60, Ink::kJunctionName),
                               Anchor::kMiddle});
  MarkFigure(junction.mark, figure);
  return figure;
}

Figure DrawLink(const ModelLink& link, const Route& route, bool sent) {
  Figure figure;
  figure.faint = !sent;
  if (route.curve.empty()) return figure;
  const Ink ink = link.kind == FlowKind::kRelation ? Ink::kRelation : Ink::kLink;
  figure.shapes.push_back(Path{.ink = ink, .points = route.curve, .curved = true});
  if (route.continuation) {
    figure.shapes.push_back(
        Path{.ink = ink, .points = route.continuation->leaving, .curved = true});
    AddMark(route.continuation->number, route.continuation->end, figure);
    AddMark(route.continuation->number, route.continuation->begin, figure);
    figure.title = "Continued at " + std::to_string(route.continuation->number);
  }
  figure.shapes.push_back(ArrowHead(route.curve.back(), route.tip));
  if (link.kind == FlowKind::kObjectFlow) {
    const Point& end = route.curve.back();
    const Point second{2 * end.x - route.tip.x, 2 * end.y - route.tip.y};
    figure.shapes.push_back(ArrowHead(second, end));
  }
  MarkFigure(link.mark, figure);
  return figure;
}

}  // namespace merivane::pictures
