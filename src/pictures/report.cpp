#include "pictures/report.h"

#include <map>
#include <set>
#include <sstream>

#include "markup.h"
#include "pictures/svg.h"
#include "report_style.h"

namespace merivane::pictures {

namespace {

// Windows-1252 as text of the page, lines parted by breaks.
std::string Lines(const std::string& text) {
  std::string lines;
  for (const char letter : text) {
    lines += letter == '\n' ? "<br>" : Escaped(std::string_view(&letter, 1));
  }
  return lines;
}

std::string Counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// Cells hold markup.
class Table {
 public:
  explicit Table(const std::vector<const char*>& heads) {
    html_ = "<table>\n<thead><tr>";
    for (const char* head : heads) html_ += std::string("<th scope=\"col\">") + head + "</th>";
    html_ += "</tr></thead>\n<tbody>\n";
  }
  void Row(const std::vector<std::string>& cells) {
    html_ += "<tr>";
    for (std::size_t at = 0; at < cells.size(); ++at) {
      html_ += (at == 0 ? "<td class=\"number\">" : "<td>") + cells[at] + "</td>";
    }
    html_ += "</tr>\n";
  }
  std::string Html() const { return html_ + "</tbody></table>\n"; }

 private:
  std::string html_;
};

std::string LinkTo(const std::string& id, const std::string& text) {
  return "<a href=\"#" + id + "\">" + text + "</a>";
}

class PageWriter {
 public:
  explicit PageWriter(const Report& report) : report_(report), model_(report.model) {
    for (const Scenario& scenario : model_.scenarios) {
      for (const Unit& unit : scenario.units) {
        for (const std::string& object : unit.objects) users_[object].push_back(&unit);
      }
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
    AddObjects();
    AddFacts();
    AddConstraints();
    AddFindings();
    out_ += "</main>\n</body>\n</html>\n";
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
        name + "</title>\n<style>" + kReportStyle + "</style>\n</head>\n<body>\n<header>\n<h1>" +
        name + "</h1>\n";
    std::size_t units = 0;
    for (const Scenario& scenario : model_.scenarios) units += scenario.units.size();
    out_ += "<p class=\"quiet\">" +
            (model_.author.empty() ? std::string() : Escaped(model_.author) + " &middot; ") +
            Counted(model_.scenarios.size(), "scenario") + " &middot; " + Counted(units, "unit") +
            " &middot; " + Counted(model_.objects.size(), "object") + "</p>\n";
    if (!report_.note.empty()) {
      out_ += "<p class=\"error\">" + Lines(report_.note) + " " +
              LinkTo("findings", "The findings") + " tell why.</p>\n";
    }
    AddParagraph(model_.description);
    out_ += "</header>\n";
  }

  void AddParagraph(const std::string& text) {
    if (!text.empty()) out_ += "<p>" + Lines(text) + "</p>\n";
  }

  void BeginSection(const std::string& id, const std::string& title) {
    out_ += "<section id=\"" + id + "\">\n<h2>" + title + "</h2>\n";
  }

  void AddFigure(const Picture& picture) {
    out_ += "<figure>\n" + ToSvgElement(picture) + "</figure>\n";
  }

  void AddContents() {
    out_ += "<nav aria-label=\"Contents\">\n<ul>\n<li>" + LinkTo("the-plan", "Plan") + "</li>\n";
    std::set<std::int32_t> listed;
    for (const Scenario& scenario : model_.scenarios) {
      if (scenario.parent == 0) AddContentsOf(scenario, listed);
    }
    for (const Scenario& scenario : model_.scenarios) AddContentsOf(scenario, listed);
    constexpr std::pair<const char*, const char*> kTables[] = {{"left-out", "Left out"},
                                                               {"objects", "Objects"},
                                                               {"facts", "Facts"},
                                                               {"constraints", "Constraints"},
                                                               {"findings", "Findings"}};
    for (const auto& [id, title] : kTables) {
      out_ += "<li>" + LinkTo(id, title) + "</li>\n";
    }
    out_ += "</ul>\n</nav>\n";
  }

  // The scenario, with those that decompose its units in lists below it. Ends in a circle.
  void AddContentsOf(const Scenario& top, std::set<std::int32_t>& listed) {
    struct Open {
      const Scenario* scenario;
      bool close;
    };
    std::vector<Open> open{{&top, false}};
    while (!open.empty()) {
      const Open next = open.back();
      open.pop_back();
      if (next.close) {
        out_ += "</ul></li>\n";
        continue;
      }
      if (!listed.insert(next.scenario->number).second) continue;
      out_ += "<li>" + LinkTo(DiagramId(next.scenario->number), Escaped(next.scenario->name));
      const std::vector<const Scenario*> below = Below(*next.scenario);
      if (below.empty()) {
        out_ += "</li>\n";
        continue;
      }
      out_ += "\n<ul>\n";
      open.push_back({next.scenario, true});
      for (auto at = below.rbegin(); at != below.rend(); ++at) open.push_back({*at, false});
    }
  }

  std::vector<const Scenario*> Below(const Scenario& scenario) const {
    std::set<std::int32_t> numbers;
    for (const Unit& unit : scenario.units) {
      numbers.insert(unit.decompositions.begin(), unit.decompositions.end());
    }
    std::vector<const Scenario*> below;
    for (const Scenario& other : model_.scenarios) {
      if (numbers.contains(other.number)) below.push_back(&other);
    }
    return below;
  }

  // What the tool tips of the bars tell, line by line.
  void AddTasks(const Picture& chart) {
    Table table({"No.", "Task", "When", "Takes", "Resources"});
    for (const Figure& figure : chart.figures) {
      if (!figure.id.starts_with("task-")) continue;
      std::vector<std::string> cells = {Escaped(std::get<Text>(figure.shapes.front()).text)};
      std::istringstream lines(figure.title);
      for (std::string line; std::getline(lines, line);) {
        constexpr std::string_view kResources = "Resources: ";
        cells.push_back(
            Escaped(line.starts_with(kResources) ? line.substr(kResources.size()) : line));
      }
      cells.resize(5);
      table.Row(cells);
    }
    AddWords("The plan in words", table);
  }

  // On paper they stand open.
  void AddWords(const char* summary, const Table& table) {
    out_ += std::string("<details>\n<summary>") + summary + "</summary>\n" + table.Html() +
            "</details>\n";
  }

  void AddPlan() {
    BeginSection("the-plan", "Plan");
    if (report_.chart) {
      out_ += "<p class=\"quiet\">" + Escaped(report_.chart->description) + "</p>\n";
      AddFigure(*report_.chart);
      AddTasks(*report_.chart);
    } else {
      AddParagraph(report_.whyNoChart);
    }
    out_ += "</section>\n";
  }

  void AddScenario(const Scenario& scenario, const Diagram& diagram) {
    BeginSection(DiagramId(scenario.number), Escaped(scenario.name));
    if (scenario.parent != 0) {
      out_ += "<p class=\"quiet\">Decomposes unit " + std::to_string(scenario.parent) + ", " +
              Escaped(scenario.parentName) + ".</p>\n";
    }
    AddParagraph(scenario.description);
    if (diagram.outline)
      AddParagraph("The scenario is too large to be laid out: its units stand in a list.");
    AddFigure(diagram.picture);
    AddUnits(scenario);
    out_ += "</section>\n";
  }

  void AddUnits(const Scenario& scenario) {
    std::map<std::int32_t, std::string> names;
    for (const Unit& unit : scenario.units) names.emplace(unit.number, unit.name);
    for (const Junction& junction : scenario.junctions) {
      names.emplace(junction.number, "junction " + junction.id + " (" + junction.type + ")");
    }
    std::map<std::int32_t, std::string> ways;
    for (const Link& link : scenario.links) {
      const auto name = names.find(link.destination);
      if (name == names.end()) continue;
      std::string& way = ways[link.origin];
      way += (way.empty() ? "" : "\n") + name->second;
    }
    Table table({"No.", "Unit or junction", "Reference", "Cycle time", "Labor rule", "Objects",
                 "Leads to"});
    for (const Unit& unit : scenario.units) {
      std::string objects;
      for (const std::string& object : unit.objects) {
        objects += (objects.empty() ? "" : "\n") + object;
      }
      table.Row({std::to_string(unit.number), NameOf(unit), Escaped(unit.reference),
                 Escaped(unit.duration), Escaped(unit.laborRule), Lines(objects),
                 Lines(ways[unit.number])});
    }
    for (const Junction& junction : scenario.junctions) {
      table.Row({std::to_string(junction.number), Escaped(names[junction.number]), "", "", "", "",
                 Lines(ways[junction.number])});
    }
    AddWords("The diagram in words", table);
  }

  // A decomposed unit leads to its scenarios; what stays out of the plan is told.
  static std::string NameOf(const Unit& unit) {
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
    Table table({"No.", "Unit", "Scenario", "Why it stays out of the plan"});
    bool empty = true;
    for (const Scenario& scenario : model_.scenarios) {
      for (const Unit& unit : scenario.units) {
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
    Table table({"No.", "Object", "Kind", "Quantity", "Alias", "Used by"});
    for (const ModelObject& object : model_.objects) {
      std::string users;
      for (const Unit* unit : users_[object.name]) {
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
    Table table({"No.", "Fact", "Glossary"});
    for (const ModelFact& fact : model_.facts) {
      table.Row({std::to_string(fact.number), Escaped(fact.name), Lines(fact.glossary)});
    }
    EndSection(table, model_.facts.empty());
  }

  void AddConstraints() {
    BeginSection("constraints", "Constraints");
    Table table({"Of", "Constraints"});
    bool empty = true;
    const auto add = [&](const std::string& of, const std::string& constraints) {
      if (constraints.empty()) return;
      table.Row({Escaped(of), Lines(constraints)});
      empty = false;
    };
    add("Model", model_.constraintPool);
    for (const Scenario& scenario : model_.scenarios) {
      add("Scenario " + scenario.name, scenario.constraints);
      for (const Unit& unit : scenario.units) add("Unit " + unit.name, unit.constraints);
    }
    for (const ModelObject& object : model_.objects)
      add("Object " + object.name, object.constraints);
    EndSection(table, empty);
  }

  void AddFindings() {
    BeginSection("findings", "Findings");
    Table table({"Line", "Kind", "Element", "What was found", "What to do"});
    for (const inspect::Finding& finding : report_.findings) {
      const char* kind = finding.severity == inspect::Severity::kError
                             ? "<span class=\"error\">Error</span>"
                         : finding.severity == inspect::Severity::kWarning
                             ? "<span class=\"warning\">Warning</span>"
                             : "<span class=\"quiet\">Note</span>";
      table.Row({std::to_string(finding.line), kind, Escaped(Described(finding.element)),
                 Escaped(finding.sentence), Escaped(finding.advice)});
    }
    EndSection(table, report_.findings.empty());
  }

  void EndSection(const Table& table, bool empty) {
    out_ += (empty ? "<p class=\"quiet\">None.</p>\n" : table.Html()) + "</section>\n";
  }

  const Report& report_;
  const ProcessModel& model_;
  std::map<std::string, std::vector<const Unit*>> users_;
  std::string out_;
};

}  // namespace

std::string ReportPage(const Report& report) { return PageWriter(report).Write(); }

}  // namespace merivane::pictures
