// The planning XML of a sketch as other programs write it: the same plan under other numbers, in
// another order, with more or less around it.
#pragma once

#include "plan_sketch.h"

namespace merivane::test {

class ForeignXml {
 public:
  ForeignXml(const PlanSketch& plan, std::mt19937& random)
      : plan_(plan),
        random_(random),
        hasIds_(Chance()),
        hasOutlineNumbers_(Chance()),
        isShuffled_((hasIds_ || hasOutlineNumbers_) && Chance()),
        wholeLevel_(Chance() ? static_cast<int>(random() % 2) : -1) {
    for (const auto& task : plan.tasks) taskUids_[task.key] = 0;
    for (const auto& [key, resource] : plan.resources) resourceUids_[key] = 0;
    Number(taskUids_);
    Number(resourceUids_);
  }

  std::string Text() {
    std::vector<std::string> lists{
        "<Tasks>" + Joined(TaskRows(), isShuffled_) + "</Tasks>",
        "<Resources>" + Joined(ResourceRows(), false) + "</Resources>",
        "<Assignments>" + Joined(AssignmentRows(), true) + "</Assignments>",
        "<StartDate>2000-01-03T08:00:00+02:00</StartDate>", "<Calendars/>"};
    return "<?xml version=\"1.0\"?><Project xmlns=\"http://schemas.microsoft.com/project\">" +
           Joined(std::move(lists), true) + "</Project>";
  }

 private:
  bool Chance() { return random_() % 2 == 0; }

  void Number(std::map<int, int>& uids) {
    std::vector<int> numbers(uids.size() * 2);
    for (std::size_t at = 0; at < numbers.size(); ++at) numbers[at] = static_cast<int>(at) + 1;
    std::shuffle(numbers.begin(), numbers.end(), random_);
    for (auto& [key, uid] : uids) {
      uid = numbers.back();
      numbers.pop_back();
    }
  }

  std::string Joined(std::vector<std::string> parts, bool isShuffled) {
    if (isShuffled) std::shuffle(parts.begin(), parts.end(), random_);
    std::string text;
    for (const std::string& part : parts) text += part + "\n";
    return text;
  }
  std::string Duration(double minutes) {
    const int whole = static_cast<int>(minutes);
    const std::string hours = "PT" + std::to_string(whole / 60) + "H";
    if (Chance()) return hours + std::to_string(whole % 60) + "M0S";
    return whole % 60 == 0 ? hours : "PT" + std::to_string(whole) + "M";
  }

  std::vector<std::string> TaskRows() {
    std::vector<std::string> rows;
    int id = 0;
    const auto row = [&](int uid, int level, const std::string& outline,
                         std::vector<std::string> fields) {
      fields.push_back(Field("UID", uid));
      if (hasIds_) fields.push_back(Field("ID", id));
      if (hasOutlineNumbers_ && !outline.empty()) {
        fields.push_back(Field("OutlineNumber", outline));
      }
      if (level > 1 || Chance()) fields.push_back(Field("OutlineLevel", level));
      rows.push_back("<Task>" + Joined(std::move(fields), true) + "</Task>");
    };
    if (wholeLevel_ >= 0) row(0, wholeLevel_, "0", {Field("Name", "All of it")});
    std::vector<int> outline;
    for (const PlanSketch::Task& task : plan_.tasks) {
      ++id;
      if (!isShuffled_ && random_() % 8 == 0) {
        rows.push_back(Field("Task", Field("UID", 5000 + id) + (hasIds_ ? Field("ID", id) : "") +
                                         Field("IsNull", Chance() ? "1" : "true")));
        ++id;
      }
      outline.resize(static_cast<std::size_t>(task.level), 0);
      ++outline.back();
      std::string number;
      for (const int part : outline) number += (number.empty() ? "" : ".") + std::to_string(part);
      row(taskUids_.at(task.key), task.level + std::max(wholeLevel_, 0), number, FieldsOf(task));
    }
    return rows;
  }

  std::vector<std::string> FieldsOf(const PlanSketch::Task& task) {
    std::vector<std::string> fields{
        Field("Name", task.name), Field("Duration", Duration(std::stod(task.days) * 480)),
        Field("Start", "2000-01-03T08:00:00Z"), Field("Active", Chance() ? "1" : " true ")};
    if (!task.note.empty()) fields.push_back(Field("Notes", task.note));
    for (const auto& [key, kind] : task.predecessors) {
      std::vector<std::string> link{Field("PredecessorUID", taskUids_.at(key))};
      const bool isPlain = kind == "FS";
      if (!isPlain || Chance()) {
        link.push_back(Field("Type", isPlain ? "1" : kind == "FF" ? "0" : "3"));
      }
      if (Chance()) link.insert(link.begin(), "<LinkLag>0</LinkLag><LagFormat>7</LagFormat>");
      fields.push_back("<PredecessorLink>" + Joined(std::move(link), true) + "</PredecessorLink>");
    }
    if (!task.unit.empty()) {
      std::vector<std::string> field{Field("FieldID", "188743731"), Field("Value", task.unit)};
      fields.push_back("<ExtendedAttribute>" + Joined(std::move(field), true) +
                       "</ExtendedAttribute>");
    }
    return fields;
  }

  std::vector<std::string> ResourceRows() {
    std::vector<std::string> rows;
    if (Chance()) rows.push_back("<Resource><UID>0</UID><ID>0</ID><Type>1</Type></Resource>");
    int id = static_cast<int>(random_() % 3);
    for (const auto& [key, resource] : plan_.resources) {
      std::vector<std::string> fields{Field("UID", resourceUids_.at(key)), Field("ID", ++id),
                                      Field("Name", resource.first)};
      if (!resource.second.empty())
        fields.push_back(Field(
            "MaxUnits",
            resource.second + (resource.second.find('.') == std::string::npos ? ".00" : "0")));
      rows.push_back("<Resource>" + Joined(std::move(fields), true) + "</Resource>");
    }
    return rows;
  }

  std::vector<std::string> AssignmentRows() {
    std::vector<std::string> rows;
    for (const auto& [key, units] : plan_.assignments) {
      std::vector<std::string> fields{Field("TaskUID", taskUids_.at(key.first)),
                                      Field("ResourceUID", resourceUids_.at(key.second))};
      if (units != "1" || Chance()) fields.push_back(Field("Units", units));
      rows.push_back("<Assignment>" + Joined(std::move(fields), true) + "</Assignment>");
    }
    return rows;
  }

  const PlanSketch& plan_;
  std::mt19937& random_;
  bool hasIds_;
  bool hasOutlineNumbers_;
  bool isShuffled_;
  int wholeLevel_;  // -1: no row for the whole plan
  std::map<int, int> taskUids_;
  std::map<int, int> resourceUids_;
};

}  // namespace merivane::test
