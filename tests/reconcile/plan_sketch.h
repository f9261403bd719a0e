// A plan that a test changes at will, and gives as an MPX file or as planning XML.
#pragma once

#include <algorithm>
#include <map>
#include <random>
#include <utility>

#include "mpx/mpx_format.h"
#include "raw_database.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"

namespace merivane::test {

using namespace mpx;

inline std::string Field(const char* name, const std::string& value) {
  return std::string("<") + name + ">" + value + "</" + name + ">";
}
inline std::string Field(const char* name, int value) { return Field(name, std::to_string(value)); }

class PlanSketch {
 public:
  struct Task {
    int key = 0;
    std::string unit;  // empty: it is new
    std::string name;
    std::string days;
    int level = 1;
    std::string note;
    std::vector<std::pair<int, std::string>> predecessors;  // key, kind
  };

  // The plan that stands in a database.
  explicit PlanSketch(const std::string& database) {
    RawDatabase file(database);
    for (const auto& row : file.Rows(
             "select TASK_UID, KV7_PROCOCC_HEX, TASK_NAME, ifnull(KV7_PROCOCC_DURATION, '1'),"
             " TASK_OUTLINE_LEVEL, ifnull(p.Glossary, '') from MSP_TASKS left join Activity_Pool p"
             " on p.Num = KV7_PROC_HEX where TASK_UID > 0 order by TASK_UID")) {
      std::string note = row[5];
      while (note.ends_with("\r\n")) note.resize(note.size() - 2);
      tasks.push_back({std::stoi(row[0]), row[1], row[2], row[3], std::stoi(row[4]), note, {}});
    }
    for (const auto& row :
         file.Rows("select LINK_PRED_UID, LINK_SUCC_UID, LINK_TYPE from MSP_LINKS")) {
      const std::string kind = row[2] == "0" ? "FF" : row[2] == "3" ? "SS" : "FS";
      const std::pair link(std::stoi(row[0]), kind);
      auto& known = Of(std::stoi(row[1])).predecessors;
      if (std::find(known.begin(), known.end(), link) == known.end()) known.push_back(link);
    }
    for (const auto& row : file.Rows("select RES_UID, RES_NAME, RES_MAX_UNITS from MSP_RESOURCES"
                                     " where RES_UID > 0 order by RES_UID")) {
      resources[std::stoi(row[0])] = {row[1], row[2]};
    }
    for (const auto& row : file.Rows("select TASK_UID, RES_UID, ASSN_UNITS from MSP_ASSIGNMENTS")) {
      assignments[{std::stoi(row[0]), std::stoi(row[1])}] = row[2];
    }
    nextKey_ = 1000;
  }

  Task& Of(int key) { return *std::ranges::find(tasks, key, &Task::key); }

  // As where a path that no fact takes leaves a decomposition behind.
  bool JumpsInOutline() const {
    for (std::size_t at = 1; at < tasks.size(); ++at) {
      if (tasks[at].level > tasks[at - 1].level + 1) return true;
    }
    return !tasks.empty() && tasks[0].level > 1;
  }

  // One change of a kind that a hand makes.
  void Edit(std::mt19937& random) {
    if (tasks.empty()) return;
    const auto upTo = [&](std::size_t most) {
      return std::uniform_int_distribution<std::size_t>(0, most)(random);
    };
    const std::size_t at = upTo(tasks.size() - 1);
    Task& task = tasks[at];
    const auto ofResource = [&] {
      return std::next(resources.begin(), static_cast<std::ptrdiff_t>(upTo(resources.size() - 1)));
    };
    switch (upTo(18)) {
      case 0:
        task.name += upTo(5) == 0 ? "'s" : " again";
        return;
      case 1:
        task.days = std::to_string(1 + upTo(8)) + ".50";
        return;
      case 2:
        task.note = "Note " + std::to_string(++nextKey_);
        return;
      case 3:
        return AddTask(at, upTo(1) == 1);
      case 4:
        if (KeepsAUnitWithout(at, EndOf(at))) Remove(at, EndOf(at));
        return;
      case 5:
      case 6:
        return Relate(at, upTo(tasks.size() - 1), upTo(3));
      case 7:
        if (!task.predecessors.empty()) task.predecessors.erase(task.predecessors.begin());
        return;
      case 8: {
        const int resource = resources.empty() ? 1 : resources.rbegin()->first + 1;
        resources[resource] = {"Resource " + std::to_string(++nextKey_), "2"};
        if (IsLeaf(at)) assignments[{task.key, resource}] = std::to_string(1 + upTo(2));
        return;
      }
      case 9:
        if (!resources.empty()) ofResource()->second.first += " two";
        return;
      case 10:
        if (!resources.empty()) ofResource()->second.second = std::to_string(2 + upTo(5));
        return;
      case 11: {
        if (resources.empty()) return;
        const int resource = ofResource()->first;
        resources.erase(resource);
        std::erase_if(assignments, [&](const auto& row) { return row.first.second == resource; });
        return;
      }
      case 12:
      case 13:
        return Reorder(at, random() % 2 == 0);
      case 14:
        task.note.clear();
        return;
      case 15:
      case 16:
        if (!resources.empty() && IsLeaf(at)) Assign(task.key, ofResource()->first, upTo(3));
        return;
      default:
        Move(at, upTo(tasks.size() - 1));
    }
  }

  // `step`: between the numbers of the rows, with blank ones where it is more than 1.
  std::string Mpx(int step = 1) const {
    std::string text;
    const auto idOf = [step](std::size_t row) { return static_cast<int>(row) * step; };
    const auto print = [&text](std::string_view line) { text.append(line).append("\r\n"); };
    for (const std::string& line : MpxHead(kDefaultOemCodePage)) print(line);
    print(MpxProjectHeader("plan.mpx", "1/3/2000"));
    print(kMpxResourceFields);
    print(kMpxResourceFieldNumbers);
    for (const auto& [number, resource] : resources) {
      print(MpxResource(number * step, resource.first, resource.second));
      print(kMpxResourceCalendar);
    }
    print(kMpxTaskFields);
    print(kMpxTaskFieldNumbers);
    for (std::size_t at = 0; at < tasks.size(); ++at) {
      const Task& task = tasks[at];
      if (step > 1) print("70," + std::to_string(idOf(at + 1) - 1) + ",,,,,,,,");
      std::string before;
      for (const auto& [key, kind] : task.predecessors) {
        before += (before.empty() ? "" : ",") + std::to_string(idOf(RowOf(key))) +
                  (kind == "FS" ? "" : kind);
      }
      print(MpxTaskRecord({idOf(at + 1), task.name, FixedTwo(std::stod(task.days)) + "d",
                           task.level, before, task.unit},
                          kDefaultOemCodePage));
      if (!task.note.empty()) print(MpxNote(kMpxTaskNote, task.note + "\r\n"));
      for (const auto& [key, units] : assignments) {
        if (key.first == task.key) print(MpxAssignment(key.second * step, units, "8.00"));
      }
    }
    return FromUtf8(text);
  }

  std::string Xml() const {
    std::string text =
        "<?xml version=\"1.0\"?><Project xmlns=\"http://schemas.microsoft.com/project\"><Tasks>";
    int id = 0;
    for (const Task& task : tasks) {
      const int minutes = static_cast<int>(std::stod(task.days) * 480);
      text += "<Task>" + Field("UID", task.key) + Field("ID", ++id) + Field("Name", task.name) +
              Field("OutlineLevel", task.level) +
              Field("Duration", "PT" + std::to_string(minutes) + "M0S");
      if (!task.note.empty()) text += Field("Notes", task.note);
      for (const auto& [key, kind] : task.predecessors) {
        const int type = kind == "FF" ? 0 : kind == "SS" ? 3 : 1;
        text += Field("PredecessorLink", Field("PredecessorUID", key) + Field("Type", type));
      }
      if (!task.unit.empty()) {
        text += Field("ExtendedAttribute", Field("FieldID", 188743731) + Field("Value", task.unit));
      }
      text += "</Task>";
    }
    text += "</Tasks><Resources>";
    for (const auto& [number, resource] : resources) {
      text +=
          Field("Resource", Field("UID", number) + Field("ID", number) +
                                Field("Name", resource.first) + Field("MaxUnits", resource.second));
    }
    text += "</Resources><Assignments>";
    for (const auto& [key, units] : assignments) {
      text += Field("Assignment", Field("TaskUID", key.first) + Field("ResourceUID", key.second) +
                                      Field("Units", units));
    }
    return text + "</Assignments></Project>";
  }

  std::vector<Task> tasks;                                       // in the order of the rows
  std::map<int, std::pair<std::string, std::string>> resources;  // name, quantity
  std::map<std::pair<int, int>, std::string> assignments;        // task, resource: units

 private:
  std::size_t RowOf(int key) const {
    const auto task = std::ranges::find(tasks, key, &Task::key);
    return static_cast<std::size_t>(task - tasks.begin()) + 1;
  }
  std::vector<Task>::iterator Place(std::size_t at) {
    return tasks.begin() + static_cast<std::ptrdiff_t>(at);
  }
  std::size_t EndOf(std::size_t at) const {
    std::size_t end = at + 1;
    while (end < tasks.size() && tasks[end].level > tasks[at].level) ++end;
    return end;
  }
  bool IsLeaf(std::size_t at) const { return EndOf(at) == at + 1; }
  std::size_t ParentOf(std::size_t at) const {
    for (std::size_t above = at; above-- > 0;) {
      if (tasks[above].level < tasks[at].level) return above;
    }
    return tasks.size();
  }

  // A plan without one is refused.
  bool KeepsAUnitWithout(std::size_t from, std::size_t to) const {
    for (std::size_t at = 0; at < tasks.size(); ++at) {
      if ((at < from || at >= to) && !tasks[at].unit.empty()) return true;
    }
    return false;
  }

  void AddTask(std::size_t at, bool below) {
    const int key = ++nextKey_;
    Task task{key, "", "New " + std::to_string(key), "1", tasks[at].level + (below ? 1 : 0),
              "",  {}};
    if (!below) task.predecessors.emplace_back(tasks[at].key, "FS");
    if (below) Unassign(tasks[at].key);
    tasks.insert(Place(below ? at + 1 : EndOf(at)), task);
  }

  // No units take an assignment away.
  void Assign(int task, int resource, std::size_t units) {
    assignments[{task, resource}] = std::to_string(units);
    if (units == 0) assignments.erase({task, resource});
  }

  void Unassign(int key) {
    std::erase_if(assignments, [key](const auto& row) { return row.first.first == key; });
  }

  void Unlink(int key) {
    for (Task& task : tasks) {
      std::erase_if(task.predecessors, [key](const auto& each) { return each.first == key; });
    }
  }

  void Remove(std::size_t from, std::size_t to) {
    for (std::size_t at = from; at < to; ++at) {
      Unlink(tasks[at].key);
      Unassign(tasks[at].key);
    }
    tasks.erase(Place(from), Place(to));
  }

  bool ComesBefore(int key, int of) {
    if (key == of) return true;
    for (const auto& [before, kind] : Of(of).predecessors) {
      if (kind == "FS" && ComesBefore(key, before)) return true;
    }
    return false;
  }

  // Under one summary task, and in no circle.
  void Relate(std::size_t from, std::size_t to, std::size_t kind) {
    if (from == to || ParentOf(from) != ParentOf(to)) return;
    const char* word = kind == 0 ? "SS" : kind == 1 ? "FF" : "FS";
    if (ComesBefore(tasks[to].key, tasks[from].key)) return;
    const std::pair<int, std::string> link(tasks[from].key, word);
    auto& known = tasks[to].predecessors;
    if (std::find(known.begin(), known.end(), link) == known.end()) known.push_back(link);
  }

  // With what lies below it, below another task.
  void Move(std::size_t from, std::size_t below) {
    const std::size_t end = EndOf(from);
    if (below >= from && below < end) return;
    Unlink(tasks[from].key);
    tasks[from].predecessors.clear();
    const int levels = tasks[below].level + 1 - tasks[from].level;
    const int parent = tasks[below].key;
    Unassign(parent);
    std::vector<Task> moved(Place(from), Place(end));
    for (Task& task : moved) task.level += levels;
    tasks.erase(Place(from), Place(end));
    tasks.insert(Place(RowOf(parent)), moved.begin(), moved.end());
  }

  // With what lies below it, to the first or the last place below its summary task.
  void Reorder(std::size_t from, bool toFront) {
    const std::size_t parent = ParentOf(from);
    const bool isTop = parent == tasks.size();
    const auto behind = Place(EndOf(from));
    if (toFront) {
      std::rotate(Place(isTop ? 0 : parent + 1), Place(from), behind);
    } else {
      std::rotate(Place(from), behind, isTop ? tasks.end() : Place(EndOf(parent)));
    }
  }

  int nextKey_ = 0;
};

}  // namespace merivane::test
