#include "pictures/report.h"

#include <map>
#include <set>
#include <string_view>

#include "page_text.h"
#include "pictures/svg.h"
#include "runtime/text.h"
#include "text_lines.h"

namespace merivane::pictures {

namespace {

// What was found of an element, by kind and number; notes are left out.
using FoundOfElements = std::map<std::string, std::string>;

FoundOfElements FoundOf(const std::vector<inspect::Finding>& findings) {
  FoundOfElements found;
  for (const inspect::Finding& finding : findings) {
    if (finding.severity == inspect::Severity::kNote || !finding.element.number) continue;
    found[finding.element.kind + '-' + std::to_string(*finding.element.number)] +=
        "\nFound: " + finding.sentence;
  }
  return found;
}

// A dot stands in the figure of what a finding is about.
void MarkFindings(const FoundOfElements& found, Picture& picture) {
  constexpr double kRadius = 4.5;
  for (Figure& figure : picture.figures) {
    const auto of = found.find(figure.id);
    if (of == found.end()) continue;
    figure.title += of->second;
    figure.shapes.push_back(
        Box{Ink::kFinding,
            {figure.area.Right() - kRadius, figure.area.top - kRadius, 2 * kRadius, 2 * kRadius},
            kRadius});
  }
}

class PageWriter {
 public:
  explicit PageWriter(const Report& report)
      : report_(report), model_(report.model), found_(FoundOf(report.findings)) {
    for (const ModelScenario& scenario : model_.scenarios) {
      for (const ModelUnit& unit : scenario.units) {
        for (const std::string& object : unit.objects) users_[object].push_back(&unit);
        places_.emplace("unit-" + std::to_string(unit.number),
                        DiagramId(scenario.number) + '-' + UnitId(unit.number));
      }
      for (const ModelJunction& junction : scenario.junctions) {
        const std::string id = "junction-" + std::to_string(junction.number);
        places_.emplace(id, DiagramId(scenario.number) + '-' + id);
      }
      places_.emplace(DiagramId(scenario.number), DiagramId(scenario.number));
    }
  }

  std::string Write() {
    AddHead();
    AddContents();
    out_ += "<main>\n";
    AddPlan();
    for (std::size_t at = 0; at < model_.scenarios.size(); ++at) {
      AddScenario(model_.scenarios[at], report_.diagrams[at]);
    }
    AddLeftOut();
    if (report_.plan) AddResources();
    AddObjects();
    AddFacts();
    AddConstraints();
    AddFindings();
    out_ += "</main>\n";
    if (!report_.foot.empty()) {
      out_ += "<footer><p class=\"quiet\">" + Escaped(report_.foot) + "</p></footer>\n";
    }
    out_ += "</body>\n</html>\n";
    return std::move(out_);
  }

 private:
  void AddHead() {
    const std::string name = Escaped(model_.name);
    out_ =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        "style-src 'unsafe-inline'\">\n<title>" +
        name + "</title>\n<style>" + ReportStyle() + "</style>\n</head>\n<body>\n<header>\n<h1>" +
        name + "</h1>\n";
    std::size_t units = 0;
    for (const ModelScenario& scenario : model_.scenarios) units += scenario.units.size();
    out_ += "<p class=\"quiet\">" +
            (model_.author.empty() ? std::string() : Escaped(model_.author) + " &middot; ") +
            Counted(model_.scenarios.size(), "scenario") + " &middot; " + Counted(units, "unit") +
            " &middot; " + Counted(model_.objects.size(), "object") + "</p>\n";
    if (!report_.note.empty()) {
      out_ += "<p class=\"error\">" + Lines(report_.note) + " " +
              LinkTo("findings", "The findings") + " tell why.</p>\n";
    }
    AddParagraph(model_.description);
    out_ += SummaryOf(report_) + "</header>\n";
  }

  void AddParagraph(const std::string& text) {
    if (!text.empty()) out_ += "<p>" + Lines(text) + "</p>\n";
  }

  void BeginSection(const std::string& id, const std::string& title) {
    out_ += "<section id=\"" + id + "\">\n<h2>" + title + "</h2>\n";
  }

  void AddFigure(Picture picture) {
    MarkFindings(found_, picture);
    out_ += "<figure>\n" + ToSvgElement(picture) + "</figure>\n";
  }

  void AddContents() {
    out_ += "<nav aria-label=\"Contents\">\n<ul>\n<li>" + LinkTo("the-plan", "Plan") + "</li>\n";
    std::set<std::int32_t> listed;
    for (const ModelScenario& scenario : model_.scenarios) {
      if (scenario.parent == 0) AddContentsOf(scenario, listed);
    }
    for (const ModelScenario& scenario : model_.scenarios) AddContentsOf(scenario, listed);
    constexpr std::pair<const char*, const char*> kTables[] = {
        {"left-out", "Left out"}, {"resources", "Resources"},     {"objects", "Objects"},
        {"facts", "Facts"},       {"constraints", "Constraints"}, {"findings", "Findings"}};
    for (const auto& [id, title] : kTables) {
      if (!report_.plan && id == std::string_view("resources")) continue;
      out_ += "<li>" + LinkTo(id, title) + "</li>\n";
    }
    out_ += "</ul>\n</nav>\n";
  }

  // The scenario, with those that decompose its units in lists below it. Ends in a circle.
  void AddContentsOf(const ModelScenario& top, std::set<std::int32_t>& listed) {
    struct Open {
      const ModelScenario* scenario;
      bool close = false;
    };
    std::vector<Open> open{{.scenario = &top}};
    while (!open.empty()) {
      const Open next = open.back();
      open.pop_back();
      if (next.close) {
        out_ += "</ul></li>\n";
        continue;
      }
      if (!listed.insert(next.scenario->number).second) continue;
      out_ += "<li>" + LinkTo(DiagramId(next.scenario->number), Escaped(next.scenario->name));
      const std::vector<const ModelScenario*> below = Below(*next.scenario);
      if (below.empty()) {
        out_ += "</li>\n";
        continue;
      }
      out_ += "\n<ul>\n";
      open.push_back({.scenario = next.scenario, .close = true});
      for (auto at = below.rbegin(); at != below.rend(); ++at) open.push_back({.scenario = *at});
    }
  }

  std::vector<const ModelScenario*> Below(const ModelScenario& scenario) const {
    std::set<std::int32_t> numbers;
    for (const ModelUnit& unit : scenario.units) {
      numbers.insert(unit.decompositions.begin(), unit.decompositions.end());
    }
    std::vector<const ModelScenario*> below;
    for (const ModelScenario& other : model_.scenarios) {
      if (numbers.contains(other.number)) below.push_back(&other);
    }
    return below;
  }

  // On paper they stand open.
  void AddWords(const char* summary, const Table& table) {
    out_ += std::string("<details>\n<summary>") + summary + "</summary>\n" + table.Html() +
            "</details>\n";
  }

  void AddPlan() {
    BeginSection("the-plan", "Plan");
    if (report_.plan) {
      out_ += PlanInPictureAndWords(*report_.plan);
    } else {
      AddParagraph(report_.whyNoPlan);
    }
    out_ += "</section>\n";
  }

  void AddScenario(const ModelScenario& scenario, const Diagram& diagram) {
    BeginSection(DiagramId(scenario.number), Escaped(scenario.name));
    if (scenario.parent != 0) {
      out_ += "<p class=\"quiet\">Decomposes unit " + std::to_string(scenario.parent) + ", " +
              Escaped(scenario.parentName) + ".</p>\n";
    }
    AddParagraph(scenario.description);
    if (!diagram.whyListed.empty())
      AddParagraph("The scenario " + diagram.whyListed + ": its units stand in a list.");
    AddFigure(diagram.picture);
    AddUnits(scenario);
    out_ += "</section>\n";
  }

  void AddUnits(const ModelScenario& scenario) {
    std::map<std::int32_t, std::string> names;
    for (const ModelUnit& unit : scenario.units) names.emplace(unit.number, unit.name);
    for (const ModelJunction& junction : scenario.junctions) {
      names.emplace(junction.number, "junction " + junction.id + " (" + junction.type + ")");
    }
    std::map<std::int32_t, std::string> ways;
    for (const ModelLink& link : scenario.links) {
      const auto name = names.find(link.destination);
      if (name == names.end()) continue;
      std::string& way = ways[link.origin];
      way += (way.empty() ? "" : "\n") + name->second;
    }
    Table table({{"No.", "narrow"},
                 {"Unit or junction", "wide"},
                 {"Reference"},
                 {"Cycle time"},
                 {"Labor rule"},
                 {"Objects"},
                 {"Leads to"}});
    for (const ModelUnit& unit : scenario.units) {
      std::string objects;
      for (const std::string& object : unit.objects) {
        objects += (objects.empty() ? "" : "\n") + object;
      }
      table.Row({std::to_string(unit.number), NameOf(unit), Escaped(unit.reference),
                 Escaped(unit.duration), Escaped(unit.laborRule), Lines(objects),
                 Lines(ways[unit.number])});
    }
    for (const ModelJunction& junction : scenario.junctions) {
      table.Row({std::to_string(junction.number), Escaped(names[junction.number]), "", "", "", "",
                 Lines(ways[junction.number])});
    }
    AddWords("The diagram in words", table);
  }

  // A decomposed unit leads to its scenarios; what stays out of the plan is told.
  static std::string NameOf(const ModelUnit& unit) {
    std::string name = Escaped(unit.name);
    if (!unit.decompositions.empty()) name = LinkTo(DiagramId(unit.decompositions.front()), name);
    if (!unit.sent)
      name += " <span class=\"quiet\">(" + LinkTo("left-out", "not in the plan") + ")</span>";
    if (!unit.glossary.empty())
      name += "<br><span class=\"quiet\">" + Lines(unit.glossary) + "</span>";
    return name;
  }

  void AddLeftOut() {
    BeginSection("left-out", "Left out");
    Table table(
        {{"No.", "narrow"}, {"Unit", "wide"}, {"Scenario"}, {"Why it stays out of the plan"}});
    bool empty = true;
    for (const ModelScenario& scenario : model_.scenarios) {
      for (const ModelUnit& unit : scenario.units) {
        if (unit.sent) continue;
        table.Row({std::to_string(unit.number), Escaped(unit.name),
                   LinkTo(DiagramId(scenario.number), Escaped(scenario.name)),
                   Escaped(unit.whyLeft)});
        empty = false;
      }
    }
    EndSection(table, empty);
  }

  void AddObjects() {
    BeginSection("objects", "Objects");
    Table table(
        {{"No.", "narrow"}, {"Object", "wide"}, {"Kind"}, {"Quantity"}, {"Alias"}, {"Used by"}});
    for (const ModelObject& object : model_.objects) {
      std::string users;
      for (const ModelUnit* unit : users_[object.name]) {
        users += (users.empty() ? "" : ", ") + Escaped(unit->name);
      }
      std::string name = Escaped(object.name);
      if (!object.glossary.empty()) {
        name += "<br><span class=\"quiet\">" + Lines(object.glossary) + "</span>";
      }
      table.Row({std::to_string(object.number), name, Escaped(object.kind),
                 Escaped(object.quantity), Escaped(object.alias), users});
    }
    EndSection(table, model_.objects.empty());
  }

  void AddFacts() {
    BeginSection("facts", "Facts");
    Table table({{"No.", "narrow"}, {"Fact", "wide"}, {"Glossary"}});
    for (const ModelFact& fact : model_.facts) {
      table.Row({std::to_string(fact.number), Escaped(fact.name), Lines(fact.glossary)});
    }
    EndSection(table, model_.facts.empty());
  }

  void AddConstraints() {
    BeginSection("constraints", "Constraints");
    Table table({{"Of", "narrow"}, {"Constraints", "wide"}});
    bool empty = true;
    const auto add = [&](const std::string& of, const std::string& constraints) {
      if (constraints.empty()) return;
      table.Row({Escaped(of), Lines(constraints)});
      empty = false;
    };
    add("Model", model_.constraintPool);
    for (const ModelScenario& scenario : model_.scenarios) {
      add("Scenario " + scenario.name, scenario.constraints);
      for (const ModelUnit& unit : scenario.units) add("Unit " + unit.name, unit.constraints);
    }
    for (const ModelObject& object : model_.objects)
      add("Object " + object.name, object.constraints);
    EndSection(table, empty);
  }

  void AddResources() {
    BeginSection("resources", "Resources");
    out_ += ResourcesOf(*report_.plan) + "</section>\n";
  }

  // It leads to its place in a diagram, where it has one.
  std::string ElementOf(const inspect::Finding& finding) const {
    const ElementName& element = finding.element;
    const std::string text = Escaped(Described(element));
    const auto place =
        places_.find(element.kind + '-' + std::to_string(element.number.value_or(0)));
    return place == places_.end() ? text : LinkTo(place->second, text);
  }

  void AddFindings() {
    BeginSection("findings", "Findings");
    Table table({{"Line", "narrow"},
                 {"Kind", "narrow"},
                 {"Element"},
                 {"What was found", "wide"},
                 {"What to do"}});
    for (const inspect::Finding& finding : report_.findings) {
      const char* kind = finding.severity == inspect::Severity::kError
                             ? "<span class=\"error\">Error</span>"
                         : finding.severity == inspect::Severity::kWarning
                             ? "<span class=\"warning\">Warning</span>"
                             : "<span class=\"quiet\">Note</span>";
      table.Row({std::to_string(finding.line), kind, ElementOf(finding), Escaped(finding.sentence),
                 Escaped(finding.advice)});
    }
    EndSection(table, report_.findings.empty());
  }

  void EndSection(const Table& table, bool empty) {
    out_ += (empty ? "<p class=\"quiet\">None.</p>\n" : table.Html()) + "</section>\n";
  }

  const Report& report_;
  const ProcessModel& model_;
  FoundOfElements found_;
  std::map<std::string, std::vector<const ModelUnit*>> users_;
  std::map<std::string, std::string> places_;  // on the page, of elements by kind and number
  std::string out_;
};

}  // namespace

std::string ReportPage(const Report& report) { return PageWriter(report).Write(); }

}  // namespace merivane::pictures
