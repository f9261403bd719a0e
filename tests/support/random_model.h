// Models of random shape, each from its seed: scenarios over up to three levels, chains and forks
// of every kind with their path facts, objects of all types, notes, gaps that values are carried
// into.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "model_parts.h"

namespace merivane::test {

class RandomModel {
 public:
  explicit RandomModel(std::uint32_t seed) : random_(seed) {
    Parts parts;
    parts.objects.clear();
    nObjects_ = Upto(2, 6);
    for (int number = 1; number <= nObjects_; ++number) parts.objects += ObjectOf(number);
    std::string first = AddScenario("", 0);  // the decompositions stand behind it
    parts.scenarios = first + decompositions_;
    parts.processes = processes_;
    parts.facts = facts_;
    text_ = ModelOf(parts);
  }

  std::string Text() const { return FileText(text_); }

 private:
  static constexpr int kMany = 60;  // elements, from which on no fork and no scenario begins

  struct Level {
    std::string units, junctions, links;
    int depth;
  };
  // What a part of a scenario begins and ends with; "J" stands in front of a junction's number.
  struct Ends {
    std::string first, last;
  };

  int Upto(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }
  bool Chance(int percent) { return Upto(1, 100) <= percent; }
  std::string Of(const std::vector<std::string>& words) {
    return words[static_cast<std::size_t>(Upto(0, static_cast<int>(words.size()) - 1))];
  }
  std::string Text(const std::string& word) {
    return Chance(50) ? word + " " + Of({"first", "second,", "(third)", "f\xfcnfte"}) + "|" : "";
  }

  std::string ObjectOf(int number) {
    const std::string name = "Object " + std::to_string(number);
    std::string properties;
    if (Chance(70)) properties += "Quantity:  " + Of({"1", "2", "3", "0.5"}) + "|";
    if (Chance(80)) properties += "Alias:  OB" + std::to_string(number) + "|";
    const std::string type =
        Of({"Shared Resource", "Dedicated Resource", "Transport", "Entity", "Entity"});
    return With(Object(std::to_string(number), name, properties),
                {{"  Glossary|", "  Glossary|" + Text("About it:")},
                 {"  Type:  Shared Resource|", "  Type:  " + type + "|"}});
  }

  // The number of a unit's process; one unit in five is a further use.
  std::string ProcessOf(int unit) {
    if (nProcesses_ > 0 && Chance(20)) return std::to_string(Upto(1, nProcesses_));
    const std::string process = std::to_string(++nProcesses_);
    processes_ += With(Process(process, "Process " + process, Text("How to do it:")),
                       {{"  Note List|", "  Note List|" + Text("Note:")},
                        {"  ID:  1", "  ID:  " + std::to_string(unit)}});
    return process;
  }

  std::string ObjectsOf() {
    std::string objects;
    const std::string days = Of({"1", "2", "2.5", "0.25", "10"});
    for (int count = Upto(0, 3); count > 0; --count) {
      const std::string number = std::to_string(Upto(1, nObjects_));
      const std::string rule = "OB" + std::to_string(Upto(1, nObjects_)) + "#" + Of({"1", "2"});
      objects += ObjectOccurrence(number, "Object " + number,
                                  Chance(80) ? "Sim_Entity|Cycle-Time:  " + days +
                                                   "|Labor-Rule:  " + rule + "|End  Sim_Entity|"
                                             : "");
    }
    return objects;
  }

  Ends AddUnit(Level& level) {
    const std::string number = std::to_string(++nElements_);
    const std::string process = ProcessOf(nElements_);
    const std::string name = "Process " + process;
    names_[number] = name;
    level.units += With(UnitOf(number, name, ObjectsOf()),
                        {{"Process  1  #", "Process  " + process + "  #"},
                         {"        Fact List|", "        Fact List|" + Text("        1  (Wet)")}});
    if (level.depth < 2 && nElements_ < kMany && Chance(20))
      decompositions_ += AddScenario(number, level.depth + 1);
    return {number, number};
  }

  std::string NamedEnd(const std::string& end) {
    return end[0] == 'J' ? End(end) : "#" + end + "  (Process-Occurrence, " + names_[end] + ")|";
  }

  // The numbers of links lie behind those of all other elements.
  void AddLink(Level& level, const std::string& from, const std::string& to) {
    const std::string id = std::to_string(++nLinks_);
    level.links += With(Link(std::to_string(1000 + nLinks_), from, to, id),
                        {{"Origin  " + End(from), "Origin  " + NamedEnd(from)},
                         {"Destination  " + End(to), "Destination  " + NamedEnd(to)}});
  }

  Ends AddFork(Level& level) {
    const std::string type =
        Of({"Async. AND", "Async. AND", "Sync. AND", "Sync. OR", "Async. OR", "XOR"});
    const std::string out = std::to_string(++nElements_), in = std::to_string(++nElements_);
    const int branches = Upto(2, 3);
    std::string path;
    for (int i = 0; i < branches; ++i) {
      const Ends branch = Chance(25) ? AddChain(level) : AddUnit(level);
      AddLink(level, "J" + out, branch.first);
      if (i == 0) path = "Take L" + std::to_string(nLinks_) + " until J" + in + "|";
      AddLink(level, branch.last, "J" + in);
    }
    std::string facts;
    if (!type.ends_with("AND")) {
      const std::string fact = std::to_string(++nFacts_);
      facts_ += Fact(fact, "PathAt", path);
      facts = "        " + fact + "  (PathAt)|";
    }
    level.junctions += Junction(out, "J" + out, "Fan Out", type, facts) +
                       Junction(in, "J" + in, "Fan In", Chance(80) ? type : "Async. AND");
    return {"J" + out, "J" + in};
  }

  Ends AddChain(Level& level) {
    Ends ends = AddUnit(level);
    for (int more = Upto(0, 2); more > 0; --more) {
      const Ends next = Chance(30) && nElements_ < kMany ? AddFork(level) : AddUnit(level);
      AddLink(level, ends.last, next.first);
      ends.last = next.last;
    }
    return ends;
  }

  std::string AddScenario(const std::string& parent, int depth) {
    const std::string number = std::to_string(++nScenarios_);
    Level level{.units = {}, .junctions = {}, .links = {}, .depth = depth};
    const Ends first = AddChain(level);
    const Ends last = AddChain(level);
    AddLink(level, first.last, last.first);
    std::string text = With(
        Scenario(number, "Scenario " + number, parent, level.units, level.junctions, level.links),
        {{"  Purpose|", "  Purpose|" + Text("For")}});
    if (!parent.empty()) text = "|" + With(text, {{" (Cut)", " (" + names_[parent] + ")"}});
    return text;
  }

  std::mt19937 random_;
  int nObjects_ = 0, nProcesses_ = 0, nElements_ = 0, nLinks_ = 0, nFacts_ = 0, nScenarios_ = 0;
  std::map<std::string, std::string> names_;  // of units, by their number
  std::string processes_, facts_, decompositions_, text_;
};

}  // namespace merivane::test
