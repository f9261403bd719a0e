#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "inspect/finding.h"
#include "model_checks.h"
#include "runtime/conversions.h"
#include "store/recordset.h"
#include "translator/modIDEF3ToProject.h"
#include "translator/multi.h"

namespace merivane::inspect {

using namespace translator;

namespace {

constexpr std::int32_t kMostRows = 32767;

bool IsLarge(const Model& model) {
  constexpr std::size_t kQuick = 4000;
  return model.units.size() > kQuick;
}

bool MayHaveTooManyRows(const Model& model) {
  return model.links.size() > kMostRows || model.objectUses.size() > kMostRows ||
         model.units.size() > kMostRows;
}

class TrialTranslation : public TranslationListener {
 public:
  explicit TrialTranslation(ReadModelText& text)
      : text_(text), model_(text.Result().GetModel()), desktop_(text.Desktop()) {
    for (const JunctionEntry& junction : model_.junctions) {
      junctions_.try_emplace(model_.At(junction.place).number, &junction);
    }
    for (const UnitEntry& unit : model_.units)
      units_.try_emplace(model_.At(unit.place).number, &unit);
  }

  std::vector<Finding> Run(bool isSound) {
    desktop_.onModalForm = [this](ModalForm& form) {
      if (auto* chooser = dynamic_cast<multi*>(&form)) Choose(*chooser);
    };
    ModelToProject& state = text_.WithRows();
    state.translationListener = this;
    const std::size_t boxes = desktop_.boxes.size();
    try {
      TranslateToProject(state, "");
      desktop_.ThrowMachineFault();
      ReportBoxes(boxes);
      ReportLeftOut(*state.gMspConn);
    } catch (const ProgramEnd&) {
      desktop_.ThrowMachineFault();
      const Message* box = LastBox();
      if (box != nullptr) ReportFailure(*state.gMspConn, *box, isSound);
    }
    return std::move(findings_);
  }

  void OnFanOut(const Value& junctionNum) override {
    const auto entry = junctions_.find(ToInt32(junctionNum));
    lastFanOut_ = entry == junctions_.end() ? nullptr : entry->second;
  }

  void OnPath(bool ownFact, const std::string& linkId, const std::string& junctionDigits) override {
    if (lastFanOut_ == nullptr) return;
    const bool leads = IsNumericText(linkId) && IsNumericText(junctionDigits);
    if (ownFact && !leads) {
      Warn(*lastFanOut_,
           "The glossary of its path fact names no link and junction, so that all its paths go to "
           "the plan.");
    } else if (ownFact) {
      pathFrom_ = lastFanOut_;
      CheckPath(*lastFanOut_, linkId, junctionDigits);
    } else if (leads) {
      Warn(*lastFanOut_, "It has no path fact, and takes the path of " +
                             WithLine(model_.At(pathFrom_->place)) + ": along link " + linkId +
                             " to junction J" + junctionDigits + ".");
    } else {
      Warn(*lastFanOut_, "It has no path fact, so that all its paths go to the plan.");
    }
  }

  // The tasks of a large model would take long, and tell nothing more while they find room.
  bool OnPathsTaken() override { return !IsLarge(model_) || MayHaveTooManyRows(model_); }

  // How many there are tells enough.
  bool OnRow(PlanRow row) override {
    ++rows_[row];
    return false;
  }
  bool OnTasksWritten() override { return false; }

 private:
  void Warn(const JunctionEntry& junction, std::string sentence) {
    findings_.push_back(FindingAt(Severity::kWarning, model_.At(junction.place),
                                  std::move(sentence),
                                  "Give it a 'PathAt' fact that names the link to keep."));
  }

  void CheckPath(const JunctionEntry& junction, const std::string& linkId,
                 const std::string& digits) {
    const std::int32_t number = model_.At(junction.place).number;
    const auto leads = [&](const LinkEntry& link) {
      return link.scenario == junction.scenario && link.origin.number == number &&
             link.id == linkId;
    };
    const auto meets = [&](const JunctionEntry& other) {
      return other.scenario == junction.scenario && model_.At(other.place).name == "J" + digits;
    };
    if (std::none_of(model_.links.begin(), model_.links.end(), leads)) {
      Warn(junction, "Its path fact names the link '" + linkId +
                         "', which doesn't lead out of it, so that no path is kept.");
    }
    if (std::none_of(model_.junctions.begin(), model_.junctions.end(), meets)) {
      Warn(junction, "Its path fact names the junction 'J" + digits +
                         "', which its scenario doesn't have, so that all behind the other paths "
                         "is left out.");
    }
  }

  // The program asks; a batch run ends here without an answer.
  void Choose(multi& form) {
    const auto asked = std::find_if(model_.scenarios.begin(), model_.scenarios.end(),
                                    [&](const ScenarioEntry& scenario) {
                                      return model_.At(scenario.place).name == form.List1.front();
                                    });
    std::string names;
    asked_.insert(form.List1.begin(), form.List1.end());
    for (const std::string& name : form.List1) names += (names.empty() ? "'" : ", '") + name + "'";
    findings_.push_back(FindingAt(
        Severity::kError, model_.At(asked->place),
        "One of the scenarios " + names + " has to be chosen, and no fact chooses the last one.",
        "Name a fact 'Choose " + form.List1.back() +
            "' and put the scenario to translate last, or choose when asked."));
    form.ListIndex = 0;
    form.Command1();
  }

  // Scenarios that stay out of the plan, though the unit that they decompose goes there.
  void ReportLeftOut(Connection& connection) {
    std::unordered_set<std::int32_t> units;
    std::unordered_set<std::int32_t> scenarios;
    Recordset rows;
    rows.OpenStatic(
        "Select Use_Num, Scenario_Num from Activity_in_Scenario where Msp_ProjID = 1 and "
        "Send_to_Project = 1",
        &connection);
    for (; !rows.Eof(); rows.MoveNext()) {
      units.insert(ToInt32(rows.Field(0)));
      scenarios.insert(ToInt32(rows.Field(1)));
    }
    std::unordered_set<std::int32_t> filled;
    for (const UnitEntry& unit : model_.units) filled.insert(unit.scenario);
    for (const ScenarioEntry& scenario : model_.scenarios) {
      const ElementEntry& place = model_.At(scenario.place);
      if (scenarios.contains(place.number) || !filled.contains(place.number)) continue;
      if (scenario.parent != 0 && !units.contains(scenario.parent)) continue;
      if (!asked_.contains(place.name)) ReportLeftOut(scenario, place);
    }
  }

  void ReportLeftOut(const ScenarioEntry& scenario, const ElementEntry& place) {
    const bool alone = std::count_if(model_.scenarios.begin(), model_.scenarios.end(),
                                     [&](const ScenarioEntry& other) {
                                       return other.parent == scenario.parent;
                                     }) == 1;
    findings_.push_back(FindingAt(
        Severity::kWarning, place,
        std::string("Nothing of it reaches the plan, since ") +
            (alone ? "its paths leave out all its units." : "another scenario is chosen."),
        "Change the facts of the model if it is meant."));
  }

  // Boxes that don't end the translation.
  void ReportBoxes(std::size_t from) {
    std::vector<std::string> texts = desktop_.MessageTexts();
    texts.erase(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(from));
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    for (const std::string& text : texts) {
      findings_.push_back(
          {Severity::kWarning, 1, {}, OneLine(text), "Make the model flatter or smaller."});
    }
  }

  const Message* LastBox() const {
    return desktop_.boxes.empty() ? nullptr : &desktop_.boxes.back();
  }

  void ReportFailure(Connection& connection, const Message& box, bool isSound) {
    const int error = box.error;
    if (error == kObjectOpen && ReportSecondGroup()) return;
    if (error == kTypeMismatch && ReportUnsentPartner(connection)) return;
    if (error == kOverflow && (ReportTooMany(connection) || ReportTooLong(connection))) return;
    const bool inPaths = lastFanOut_ != nullptr && rows_[PlanRow::kTask] == 0;
    if (error == kInvalidProcedureCall && inPaths) {
      findings_.push_back(FindingAt(
          Severity::kError, model_.At(lastFanOut_->place),
          "The glossary of its path fact can't be read, which ends the translation.",
          "Write it in the form 'PathAt L12 until J7': the link to keep by its ID, and the "
          "junction where the paths meet again."));
      return;
    }
    if (error == kSubscriptOutOfRange && inPaths) {
      findings_.push_back(FindingAt(
          Severity::kError, model_.At(lastFanOut_->place),
          "The links behind the paths that are left out run in a circle, which ends the "
          "translation.",
          "Take out the link that leads back, or let the path fact name a junction in front of "
          "it."));
      return;
    }
    if (!isSound) return;
    const ElementEntry* place = TaskInWork(connection);
    const std::string sentence = "The translation ends with '" + OneLine(box.text) + "'.";
    const std::string advice = "Look at this element and what it refers to.";
    if (place) {
      findings_.push_back(FindingAt(Severity::kError, *place, sentence, advice));
    } else {
      findings_.push_back({Severity::kError, 1, {}, sentence, advice});
    }
  }

  bool ReportSecondGroup() {
    std::map<std::int32_t, std::vector<std::size_t>> groups;
    for (const ScenarioEntry& scenario : model_.scenarios) {
      if (scenario.parent != 0) groups[scenario.parent].push_back(scenario.place);
    }
    std::vector<std::size_t> firsts;
    for (const auto& [parent, places] : groups) {
      if (places.size() > 1) firsts.push_back(places.front());
    }
    if (firsts.size() < 2) return false;
    std::sort(firsts.begin(), firsts.end());
    findings_.push_back(FindingAt(Severity::kError, model_.At(firsts[1]),
                                  "It is one of several decompositions of a unit, as " +
                                      WithLine(model_.At(firsts[0])) +
                                      " is; a second choice of this kind ends the translation.",
                                  "Leave one decomposition of each unit but one in the model."));
    return true;
  }

  // A relation to a unit that has no number in the plan holds none.
  bool ReportUnsentPartner(Connection& connection) {
    std::unordered_set<std::int32_t> sent;
    std::vector<std::int32_t> holders;
    Recordset rows;
    rows.OpenStatic("Select * from Activity_in_Scenario where Msp_ProjID = 1", &connection);
    for (; !rows.Eof(); rows.MoveNext()) {
      if (!Equal(rows.Field("Send_to_Project"), 1)) continue;
      const std::int32_t unit = ToInt32(rows.Field("Use_Num"));
      sent.insert(unit);
      if (LacksNumber(Joined(rows.Field("SSRels")), "SS") ||
          LacksNumber(Joined(rows.Field("FFRels")), "FF")) {
        holders.push_back(unit);
      }
    }
    for (const std::int32_t holder : holders) ReportPartnersOf(holder, sent);
    return !holders.empty();
  }

  static bool LacksNumber(const std::string& relations, const std::string& kind) {
    return (", " + relations).find(", " + kind) != std::string::npos;
  }

  void ReportPartnersOf(std::int32_t holder, const std::unordered_set<std::int32_t>& sent) {
    for (const JunctionEntry& junction : model_.junctions) {
      if (junction.type != "Sync. AND") continue;
      const std::vector<std::int32_t> branches = BranchesOf(junction);
      if (std::find(branches.begin(), branches.end(), holder) == branches.end()) continue;
      for (const std::int32_t branch : branches) {
        const auto unit = units_.find(branch);
        if (unit == units_.end() || sent.contains(branch)) continue;
        findings_.push_back(FindingAt(
            Severity::kError, model_.At(junction.place),
            WithLine(model_.At(unit->second->place)) +
                " isn't sent to the plan, but is to start or finish with others of this junction, "
                "which ends the translation.",
            "Take the unit off the junction, or keep its path."));
      }
    }
  }

  std::vector<std::int32_t> BranchesOf(const JunctionEntry& junction) const {
    const std::int32_t number = model_.At(junction.place).number;
    std::vector<std::int32_t> branches;
    for (const LinkEntry& link : model_.links) {
      if (junction.cardinality == "Fan Out" && link.origin.number == number) {
        branches.push_back(link.destination.number);
      }
      if (junction.cardinality == "Fan In" && link.destination.number == number) {
        branches.push_back(link.origin.number);
      }
    }
    return branches;
  }

  bool ReportTooMany(Connection& connection) {
    for (const auto& [row, table, word] :
         {std::tuple{PlanRow::kLink, "MSP_LINKS", "links"},
          std::tuple{PlanRow::kAssignment, "MSP_ASSIGNMENTS", "assignments"}}) {
      Recordset rows;
      rows.OpenStatic(std::string("select PROJ_ID from ") + table, &connection);
      if (rows.RecordCount() + rows_[row] < kMostRows) continue;
      findings_.push_back({Severity::kError,
                           1,
                           {},
                           std::string("The plan would have more than 32,767 ") + word +
                               ", which ends the translation.",
                           "Translate the model in parts."});
      return true;
    }
    return false;
  }

  // A cycle time that the plan's unit of time can't count.
  bool ReportTooLong(Connection& connection) {
    const ElementEntry* place = TaskInWork(connection);
    if (place == nullptr) return false;
    const std::string& duration = units_.at(place->number)->duration;
    constexpr double kLongTime = 100000;  // days; beyond any calendar
    if (!IsNumericText(duration) || ToDouble(duration) < kLongTime) return false;
    findings_.push_back(FindingAt(Severity::kError, *place,
                                  "Its cycle time of " + duration +
                                      " days is beyond the calendar, which ends the translation.",
                                  "Give it fewer days."));
    return true;
  }

  // The first unit with a number in the plan that has no task yet.
  const ElementEntry* TaskInWork(Connection& connection) {
    Recordset units;
    units.OpenStatic(
        "Select Use_Num from Activity_in_Scenario where Msp_ProjID = 1 and "
        "Send_to_Project = 1 and Project_ID = " +
            std::to_string(rows_[PlanRow::kTask] + 1),
        &connection);
    if (units.Eof()) return nullptr;
    const auto unit = units_.find(ToInt32(units.Field("Use_Num")));
    return unit == units_.end() ? nullptr : &model_.At(unit->second->place);
  }

  ReadModelText& text_;
  const Model& model_;
  QuietDesktop& desktop_;
  std::vector<Finding> findings_;
  std::map<PlanRow, long> rows_;  // of the plan so far
  std::unordered_map<std::int32_t, const JunctionEntry*> junctions_;
  std::unordered_map<std::int32_t, const UnitEntry*> units_;
  std::set<std::string> asked_;  // names of scenarios that were offered
  const JunctionEntry* lastFanOut_ = nullptr;
  const JunctionEntry* pathFrom_ = nullptr;  // the last that had a fact of its own
};

}  // namespace

bool IsTrialNeeded(const Model& model) {
  if (!IsLarge(model) || MayHaveTooManyRows(model)) return true;
  std::unordered_set<std::int32_t> parents;
  for (const ScenarioEntry& scenario : model.scenarios) {
    if (!parents.insert(scenario.parent).second) return true;
  }
  return std::any_of(model.junctions.begin(), model.junctions.end(), OffersPaths);
}

std::vector<Finding> TryTranslation(ReadModelText& text, bool isSound) {
  return TrialTranslation(text).Run(isSound);
}

}  // namespace merivane::inspect
