#include "model_generator.h"

#include <algorithm>
#include <vector>

namespace merivane::bench {

namespace {

constexpr int kUsesPerScenario = 20;
constexpr int kJunctionsPerScenario = 4;
constexpr int kObjects = 40;
constexpr int kMostProcesses = 8000;  // a process has a number of four digits

class Text {
 public:
  void Line(const std::string& line) { text_ += line + "\r\n"; }
  void Lines(std::initializer_list<const char*> lines) {
    for (const char* line : lines) Line(line);
  }
  void Block(const std::string& indent, const std::string& name, const std::string& body = "") {
    Line(indent + name);
    if (!body.empty()) Line(body);
    Line(indent + "End  " + name);
  }
  void Elaboration(const std::string& indent) {
    Line(indent + "Elaboration");
    for (const char* name : {"Object Occurrence List", "Fact List", "Constraint List"}) {
      Block(indent + "  ", name);
    }
    Line(indent + "End  Elaboration");
  }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

std::string Number(int number) { return std::to_string(number); }
std::string ObjectName(int number) { return "Crew " + Number(number); }
std::string StepName(int number) { return "Step " + Number(number); }

void PoolHead(Text& text, const std::string& kind, int number, const std::string& name,
              const std::string& glossary, const std::string& properties) {
  text.Line(kind + "  " + Number(number));
  text.Line("  Name:  " + name);
  text.Lines({"  Creator:  Bench", "  Date Created:  1/2/2026", "  Last Modified:  2/3/2026"});
  text.Block("  ", "Glossary", glossary);
  text.Block("  ", "Note List");
  text.Block("  ", "Source List");
  text.Block("  ", "Property List", properties);
}

void Summary(Text& text) {
  text.Lines({"Dunmar Neutral Text; Version:2.20;  ", "Project Summary", "  Creator:  Bench",
              "  Used At:  Yard", "  Project:  Bench", "  Date Created:  1/2/2026",
              "  Last Modified:  2/3/2026", "  Description", "Generated.", "  End  Description",
              "End  Project Summary", "", "Project Properties", "", "  Property List",
              "  End  Property List", "End  Project Properties", ""});
}

void Pools(Text& text, int processes, const std::string& glossary) {
  text.Line("Process Pool");
  for (int number = 1; number <= processes; ++number) {
    PoolHead(text, "Process", number, StepName(number), glossary + Number(number), "");
    text.Lines({"  ID:  1", "  IDEF0 Ref:  A0"});
    text.Elaboration("  ");
    text.Line("End  Process " + Number(number));
    text.Line("");
  }
  text.Lines({"End  Process Pool", "", "Object Pool"});
  for (int number = 1; number <= kObjects; ++number) {
    PoolHead(text, "Object", number, ObjectName(number), "A crew of the yard.",
             "Quantity:  " + Number(number % 5 + 1) + "\r\nAlias:  C" + Number(number));
    text.Line("  Type:  Agent");
    text.Line(number % 8 == 0 ? "  Type:  Entity" : "  Type:  Shared Resource");
    text.Elaboration("  ");
    text.Line("End  Object " + Number(number));
    text.Line("");
  }
  text.Lines({"End  Object Pool", "", "State Pool", "End  State Pool", "", "Fact Pool"});
  PoolHead(text, "Fact", 1, "Ready", "", "");
  text.Lines({"End  Fact 1", "", "End  Fact Pool"});
  for (const char* pool :
       {"Property Pool", "Constraint Pool", "Note Pool", "Source Pool", "Unknown Pool"}) {
    text.Line("");
    text.Block("", pool);
  }
}

struct ScenarioPlan {
  int number = 0;
  int parentUse = 0;
  std::string parentName;
  int firstUnit = 0;
  int uses = 0;
};

int UseNumber(int unit) { return 10000 + unit; }
int ProcessOf(int unit) { return (unit - 1) % kMostProcesses + 1; }
std::string UnitName(int unit) { return StepName(ProcessOf(unit)); }

void ScenarioHead(Text& text, const ScenarioPlan& plan) {
  text.Line("Scenario  " + Number(plan.number));
  text.Line("  Name:  Scenario " + Number(plan.number));
  if (plan.parentUse > 0) {
    text.Line("  Parent:  Process  #" + Number(plan.parentUse) + " (" + plan.parentName + ")");
    text.Line("  Type:  Role View");
  }
  text.Lines({"  Creator:  Bench", "  ID:  1", "  Revision Number:  1", "  Review Status:  Working",
              "  Date Created:  1/2/2026", "  Last Modified:  2/3/2026"});
  for (const char* name : {"Purpose", "Viewpoint", "Context", "Description"}) {
    text.Block("  ", name);
  }
  text.Elaboration("  ");
  text.Block("  ", "Note List");
  text.Block("  ", "Source List");
}

void Occurrence(Text& text, int unit) {
  const int process = ProcessOf(unit);
  text.Line("    Process  " + Number(process) + "  #" + Number(UseNumber(unit)));
  text.Line("      Name:  " + StepName(process));
  text.Lines({"      ID:  1", "      IDEF0 Ref:  A0", "      User Placement Column:  3",
              "      User Placement Row:  4", "      Elaboration",
              "        Object Occurrence List"});
  for (int object : {process % kObjects + 1, (process + 7) % kObjects + 1}) {
    text.Line("          Object-Occurrence  " + Number(object) + "  (" + ObjectName(object) + ")");
    text.Lines({"            Property List", "              Property",
                "                Name:  @Simulation Information", "                Glossary",
                "Sim_Entity"});
    text.Line("Cycle-Time:  " + Number(process % 9 + 1) + ".5");
    text.Line("Labor-Rule:  C" + Number(process % kObjects + 1) + "#2");
    text.Lines({"End  Sim_Entity", "                End  Glossary", "              End  Property",
                "            End  Property List", "          End  Object-Occurrence"});
  }
  text.Line("        End  Object Occurrence List");
  text.Block("        ", "Fact List");
  text.Block("        ", "Constraint List");
  text.Lines({"      End  Elaboration", "    End  Process"});
}

void Junction(Text& text, int number, bool fanOut, const char* type) {
  text.Line("  Junction  " + Number(number));
  text.Line("    ID:  J" + Number(number));
  text.Line(fanOut ? "    Cardinality:  Fan Out" : "    Cardinality:  Fan In");
  text.Line(std::string("    Type:  ") + type);
  text.Lines({"    Date Created:  1/2/2026", "    Last Modified:  2/3/2026",
              "    User Placement Column:  5", "    User Placement Row:  6"});
  text.Block("    ", "Glossary");
  text.Line("    Elaboration");
  for (const char* name : {"Object Occurrence List", "Fact List", "Constraint List"}) {
    text.Block("      ", name);
  }
  text.Line("    End  Elaboration");
  text.Block("    ", "Note List");
  text.Block("  ", "Property List");
  text.Line("  End  Junction");
}

struct End {
  int number;
  bool junction;
};

std::string EndText(const End& end) {
  const std::string name = end.junction
                               ? "Junction, J" + Number(end.number)
                               : "Process-Occurrence, " + UnitName(end.number - UseNumber(0));
  return "  #" + Number(end.number) + "  (" + name + ")";
}

void Link(Text& text, int number, const End& from, const End& to) {
  text.Line("  Link  " + Number(number));
  text.Line("    Origin" + EndText(from));
  text.Line("    Destination" + EndText(to));
  text.Lines({"    ID:  1", "    Type:  Precedence"});
  text.Block("    ", "Glossary");
  for (const char* name : {"Object Occurrence List", "Fact List", "Constraint List"}) {
    text.Block("      ", name);
  }
  text.Lines(
      {"    End  Elaboration", "", "  Property List", "  End  Property List", "  End  Link"});
}

// Units and junctions from numbers of their own on, and the links between them.
struct Graph {
  int firstUnit = 1;
  int units = 0;
  int firstJunction = 1;
  struct JunctionPlan {
    bool fanOut;
    const char* type;
  };
  std::vector<JunctionPlan> junctions;
  std::vector<std::pair<End, End>> links;

  End Unit(int index) const { return {UseNumber(firstUnit + index), false}; }
  void Join(int from, int to) { links.emplace_back(Unit(from), Unit(to)); }
  End AddJunction(bool fanOut, const char* type) {
    junctions.push_back({fanOut, type});
    return {firstJunction + static_cast<int>(junctions.size()) - 1, true};
  }
};

void JoinInRow(Graph& graph, int first, int step) {
  for (int unit = first; unit + step < graph.units; unit += step) graph.Join(unit, unit + step);
}

// Unit `first`, three branches of one unit each, and the unit behind them.
void Fork(Graph& graph, int first, const char* type) {
  const End open = graph.AddJunction(true, type);
  const End close = graph.AddJunction(false, type);
  graph.links.emplace_back(graph.Unit(first), open);
  for (int branch = first + 1; branch <= first + 3; ++branch) {
    graph.links.emplace_back(open, graph.Unit(branch));
    graph.links.emplace_back(graph.Unit(branch), close);
  }
  graph.links.emplace_back(close, graph.Unit(first + 4));
}

// Units 1 to 3 run in parallel between an Async. AND pair, 5 to 7 between a Sync. AND pair; the
// others follow one another.
Graph GraphOf(const ScenarioPlan& plan) {
  constexpr int kForked = 8;
  Graph graph{plan.firstUnit, plan.uses, (plan.number - 1) * kJunctionsPerScenario + 1, {}, {}};
  if (plan.uses <= kForked) {
    JoinInRow(graph, 0, 1);
    return graph;
  }
  Fork(graph, 0, "Async. AND");
  Fork(graph, 4, "Sync. AND");
  JoinInRow(graph, kForked, 1);
  return graph;
}

// Pairs of junctions around two halves each, down to single units.
std::pair<End, End> NestFans(Graph& graph, int first, int last) {
  if (first == last) return {graph.Unit(first), graph.Unit(first)};
  const End open = graph.AddJunction(true, "Async. AND");
  const End close = graph.AddJunction(false, "Async. AND");
  const int middle = (first + last) / 2;
  for (const auto& [from, to] :
       {NestFans(graph, first, middle), NestFans(graph, middle + 1, last)}) {
    graph.links.emplace_back(open, from);
    graph.links.emplace_back(to, close);
  }
  return {open, close};
}

Graph GraphOf(Shape shape, int units) {
  Graph graph;
  graph.units = units;
  switch (shape) {
    case Shape::kChain:
      JoinInRow(graph, 0, 1);
      break;
    case Shape::kRing:
      JoinInRow(graph, 0, 1);
      graph.Join(units - 1, 0);
      break;
    case Shape::kHub:
      for (int unit = 1; unit < units; ++unit) graph.Join(0, unit);
      break;
    case Shape::kLadder:
      JoinInRow(graph, 0, 2);
      JoinInRow(graph, 1, 2);
      for (int unit = 0; unit + 1 < units; unit += 2) graph.Join(unit, unit + 1);
      break;
    case Shape::kNestedFans:
      NestFans(graph, 0, units - 1);
      break;
  }
  return graph;
}

void ScenarioBody(Text& text, const Graph& graph) {
  text.Line("  Process Occurrence List");
  for (int index = 0; index < graph.units; ++index) {
    text.Line("");
    Occurrence(text, graph.firstUnit + index);
  }
  text.Lines({"  End  Process Occurrence List", "  Junction List"});
  int junction = graph.firstJunction;
  for (const auto& [fanOut, type] : graph.junctions) {
    text.Line("");
    Junction(text, junction++, fanOut, type);
  }
  text.Lines({"  End  Junction List", "Referent List", "  End  Referent List", "  Link List"});
  int number = 0;
  for (const auto& [from, to] : graph.links) Link(text, ++number, from, to);
  text.Lines({"  End  Link List", "End  Scenario", ""});
}

void Scenario(Text& text, const ScenarioPlan& plan) {
  if (plan.number > 1) text.Line("");
  ScenarioHead(text, plan);
  ScenarioBody(text, GraphOf(plan));
}

void Scenarios(Text& text, int occurrences) {
  text.Lines({"", "Scenario List", ""});
  const int parents = (occurrences + kUsesPerScenario) / (kUsesPerScenario + 1);
  Scenario(text, {1, 0, "", 1, parents});
  int nextUnit = parents + 1;
  for (int parent = 1; parent <= parents && nextUnit <= occurrences; ++parent) {
    const int uses = std::min(kUsesPerScenario, occurrences - nextUnit + 1);
    Scenario(text, {parent + 1, UseNumber(parent), UnitName(parent), nextUnit, uses});
    nextUnit += uses;
  }
  text.Lines({"End  Scenario List", "OSTN List", "End  OSTN List"});
}

}  // namespace

std::string GenerateModel(int occurrences) {
  Text text;
  Summary(text);
  Pools(text, std::min(occurrences, kMostProcesses), "What is done in step ");
  Scenarios(text, occurrences);
  return text.Take();
}

std::string GenerateChoice(int occurrences) {
  Text text;
  Summary(text);
  Pools(text, occurrences, "What is done in step ");
  text.Lines({"", "Scenario List", ""});
  const int half = occurrences / 2;
  Scenario(text, {1, 0, "", 1, half});
  Scenario(text, {2, 0, "", half + 1, half});
  text.Lines({"End  Scenario List", "OSTN List", "End  OSTN List"});
  return text.Take();
}

std::string GenerateShape(Shape shape, int units) {
  Text text;
  Summary(text);
  Pools(text, units, "What is done in step ");
  text.Lines({"", "Scenario List", ""});
  ScenarioHead(text, {1, 0, "", 1, units});
  ScenarioBody(text, GraphOf(shape, units));
  text.Lines({"End  Scenario List", "OSTN List", "End  OSTN List"});
  return text.Take();
}

std::string GenerateObjectsOfOneName(int occurrences) {
  std::string model = GenerateModel(occurrences);
  for (int object = kObjects; object > 1; --object) {
    const std::string name = ObjectName(object);
    for (std::size_t at = model.find(name); at != std::string::npos; at = model.find(name, at)) {
      model.replace(at, name.size(), ObjectName(1));
    }
  }
  const std::string head = "Object  1\r\n";
  const std::string end = "End  Object 1\r\n\r\n";
  const std::size_t start = model.find("\r\n" + head) + 2 + head.size();
  const std::string record = model.substr(start, model.find(end, start) - start);
  std::string more;
  for (int object = kObjects + 1; object <= occurrences; ++object) {
    more += "Object  " + Number(object) + "\r\n" + record + "End  Object " + Number(object) +
            "\r\n\r\n";
  }
  return model.insert(model.find("End  Object Pool"), more);
}

}  // namespace merivane::bench
