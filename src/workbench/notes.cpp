#include "notes.h"

#include <algorithm>
#include <utility>

#include "inspect/finding.h"
#include "outline.h"
#include "runtime/conversions.h"

namespace merivane::workbench {

namespace {

using Key = std::pair<std::string, std::int32_t>;  // a kind of element as findings name it

Note::Kind KindOf(Severity severity) {
  if (severity == Severity::kError) return Note::Kind::kError;
  return severity == Severity::kWarning ? Note::Kind::kWarning : Note::Kind::kNote;
}

std::map<Key, std::size_t> ElementsOf(const FileView& view) {
  std::map<Key, std::size_t> places;
  std::vector<std::size_t> scenarios(view.model.scenarios.size());
  for (std::size_t at = 0; at < view.elements.size(); ++at) {
    const Element& element = view.elements[at];
    if (element.kind == Element::Kind::kTask) continue;
    const bool isScenario = element.kind == Element::Kind::kScenario;
    if (isScenario && element.scenario) scenarios[*element.scenario] = at;
    places.emplace(Key{isScenario ? "scenario" : "unit", element.number}, at);
  }
  for (std::size_t at = 0; at < scenarios.size(); ++at) {
    for (const ModelJunction& junction : view.model.scenarios[at].junctions) {
      places.emplace(Key{"junction", junction.number}, scenarios[at]);
    }
  }
  return places;
}

// Where nothing else tells the element of a finding, the last one that begins in front of its line.
std::optional<std::size_t> LastBefore(const FileView& view, std::size_t line) {
  std::optional<std::size_t> last;
  for (std::size_t at = 0; at < view.elements.size(); ++at) {
    const std::size_t begins = view.elements[at].line;
    if (begins == 0 || begins > line) continue;
    if (!last || begins > view.elements[*last].line) last = at;
  }
  return last;
}

// Nothing for what a merge leaves as it is.
Mark MarkOf(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::kAdded:
      return Mark::kAdded;
    case ChangeKind::kChanged:
      return Mark::kChanged;
    case ChangeKind::kRemoved:
      return Mark::kRemoved;
    case ChangeKind::kKept:
    case ChangeKind::kNotTaken:
    case ChangeKind::kStop:
    case ChangeKind::kDiffers:
      break;
  }
  return Mark::kNone;
}

// What becomes of units and junctions. A unit whose assignments change is a changed one.
class Marks {
 public:
  explicit Marks(const std::vector<MergeChange>& changes) {
    for (const MergeChange& change : changes) {
      const ElementName& element = change.element;
      const Mark mark = MarkOf(change.kind);
      if (mark == Mark::kNone) continue;
      if (element.kind == "assignment" && change.unit) {
        marks_.emplace(Key{"unit", *change.unit}, Mark::kChanged);
      } else if (element.number && mark != Mark::kChanged) {
        marks_[{element.kind, *element.number}] = mark;
      } else if (element.number) {
        marks_.emplace(Key{element.kind, *element.number}, mark);
      }
    }
  }

  Mark Of(const char* kind, std::int32_t number) const {
    const auto mark = marks_.find({kind, number});
    return mark == marks_.end() ? Mark::kNone : mark->second;
  }

 private:
  std::map<Key, Mark> marks_;
};

void MarkView(FileView& view, const Marks& marks) {
  for (ModelScenario& scenario : view.model.scenarios) {
    for (ModelUnit& unit : scenario.units) unit.mark = marks.Of("unit", unit.number);
    for (ModelJunction& junction : scenario.junctions) {
      junction.mark = marks.Of("junction", junction.number);
    }
  }
  std::map<std::string, Mark> bars;
  for (Element& element : view.elements) {
    if (element.kind != Element::Kind::kUnit) continue;
    element.mark = marks.Of("unit", element.number);
    if (!element.bar.empty()) bars[element.bar] = element.mark;
  }
  if (!view.chart) return;
  for (Figure& figure : view.chart->figures) {
    const auto bar = bars.find(figure.id);
    if (figure.id.starts_with("before-")) {
      MarkFigure(Mark::kRemoved, figure);
    } else if (bar != bars.end()) {
      MarkFigure(bar->second, figure);
    }
  }
}

std::string NameOf(const ModelScenario& scenario, std::int32_t number) {
  for (const ModelUnit& unit : scenario.units) {
    if (unit.number == number) return "'" + unit.name + "'";
  }
  for (const ModelJunction& junction : scenario.junctions) {
    if (junction.number == number) return "junction " + junction.id;
  }
  return std::to_string(number);
}

// "Junction J1 (XOR) takes another path: its fact '2 (PathAt roof)' keeps link L52 to 'Roof', up to
// junction J10."
std::string Sentence(const ModelScenario& scenario, const ModelUnit& unit,
                     const TakenPaths& paths) {
  std::string sentence = "Not in the plan: " + unit.whyLeft;
  const TakenPaths::JunctionPath* path = paths.Of(unit.decidedBy);
  if (path == nullptr) return sentence + '.';
  for (const ModelJunction& junction : scenario.junctions) {
    if (junction.number != unit.decidedBy) continue;
    sentence += ": its fact '" + OneLine(junction.facts) + "' keeps link L" + path->link;
  }
  for (const ModelLink& link : scenario.links) {
    if (link.id != path->link || link.origin != unit.decidedBy) continue;
    sentence += " to " + NameOf(scenario, link.destination);
  }
  return sentence + ", up to junction J" + path->end + '.';
}

}  // namespace

const TakenPaths::JunctionPath* TakenPaths::Of(std::int32_t junction) const {
  const auto path = paths_.find(junction);
  return path == paths_.end() ? nullptr : &path->second;
}

void TakenPaths::OnFanOut(const Value& junctionNum) {
  junction_ = IsNumeric(junctionNum) ? ToInt32(junctionNum) : 0;
}

void TakenPaths::OnPath(bool ownFact, const std::string& linkId,
                        const std::string& junctionDigits) {
  if (ownFact) paths_[junction_] = {linkId, junctionDigits};
}

void AddCheck(FileView& view, const CheckedModel& check) {
  const std::map<Key, std::size_t> places = ElementsOf(view);
  for (const ElementLine& known : check.elements) {
    const auto place = places.find({known.kind, known.number});
    if (place == places.end() || known.kind == "junction") continue;
    Element& element = view.elements[place->second];
    if (element.line == 0) element.line = known.line;
  }
  for (Element& element : view.elements) {
    if (element.line > 0) AddProperty(element, "Line", std::to_string(element.line));
  }
  for (const Finding& finding : check.findings) {
    Note note{.kind = KindOf(finding.severity),
              .line = finding.line,
              .about = Described(finding.element),
              .sentence = finding.sentence,
              .advice = finding.advice};
    const auto place = places.find({finding.element.kind, finding.element.number.value_or(0)});
    if (place != places.end()) {
      note.element = place->second;
    } else if (finding.line > 1) {
      note.element = LastBefore(view, finding.line);
    }
    view.notes.push_back(std::move(note));
  }
}

void AddChanges(FileView& view, const std::vector<MergeChange>& changes) {
  MarkView(view, Marks(changes));
  const std::map<Key, std::size_t> places = ElementsOf(view);
  std::map<std::int64_t, std::size_t> rows;
  for (std::size_t at = 0; at < view.elements.size(); ++at) rows[view.elements[at].task] = at;
  for (const MergeChange& change : changes) {
    Note note{.about = Described(change.element),
              .sentence = change.sentence,
              .advice = change.advice,
              .change = change.kind,
              .row = change.planRow};
    const std::int32_t number = change.element.number.value_or(0);
    auto place = places.find({change.element.kind, number});
    if (place == places.end()) place = places.find({"unit", change.unit.value_or(0)});
    const auto row = rows.find(change.planRow.value_or(-1));
    if (place != places.end()) {
      note.element = place->second;
    } else if (row != rows.end() && change.element.kind != "resource") {
      note.element = row->second;
    }
    view.notes.push_back(std::move(note));
  }
}

void AddLines(const QuietDesktop& desktop, std::vector<std::string>& lines) {
  for (const std::string& box : desktop.MessageTexts()) {
    const std::string line = OneLine(box);
    if (line.empty() || std::find(lines.begin(), lines.end(), line) != lines.end()) continue;
    lines.push_back(line);
  }
}

void AddLeftOut(FileView& view, const TakenPaths& paths) {
  std::map<Key, std::size_t> places = ElementsOf(view);
  for (const ModelScenario& scenario : view.model.scenarios) {
    for (const ModelUnit& unit : scenario.units) {
      if (unit.sent) continue;
      const auto place = places.find({"unit", unit.number});
      Note note{.kind = Note::Kind::kLeftOut,
                .about = "unit " + std::to_string(unit.number) + " '" + unit.name + "'",
                .sentence = Sentence(scenario, unit, paths)};
      if (place != places.end()) {
        note.element = place->second;
        note.line = view.elements[place->second].line;
      }
      view.notes.push_back(std::move(note));
    }
  }
}

}  // namespace merivane::workbench
