// The rows that the reader would write, as elements of the model.
#include <algorithm>
#include <array>

#include "reading.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::inspect {

namespace {

const Value& Get(std::span<const Cell> cells, std::string_view column) {
  static const Value kNone;
  const auto cell = std::find_if(cells.begin(), cells.end(),
                                 [&](const Cell& each) { return each.column == column; });
  return cell == cells.end() ? kNone : cell->value;
}

struct Label {
  std::string_view column;
  const char* text;
};

constexpr std::array kLabels = {Label{"Name", "name"},
                                Label{"Creator", "creator"},
                                Label{"Date_Created", "date created"},
                                Label{"Last_Modified", "date modified"},
                                Label{"Glossary", "glossary"},
                                Label{"Note_List", "note list"},
                                Label{"Source_List", "source list"},
                                Label{"Property_List", "property list"},
                                Label{"ID", "ID"},
                                Label{"Ref", "reference"},
                                Label{"Object_Occ_List", "object list"},
                                Label{"Fact_List", "fact list"},
                                Label{"Constraint_List", "constraint list"},
                                Label{"Constraint_list", "constraint list"},
                                Label{"Quantity", "quantity"},
                                Label{"Alias", "alias"},
                                Label{"Dunmar_Type", "first type"},
                                Label{"Celvar_Type", "second type"},
                                Label{"Cardinality", "cardinality"},
                                Label{"Type", "type"},
                                Label{"Duration", "cycle time"},
                                Label{"Labor_Rule", "labor rule"},
                                Label{"Origin_Num", "origin"},
                                Label{"Origin_Type", "kind of origin"},
                                Label{"Origin_Name", "name of origin"},
                                Label{"Destination_Num", "destination"},
                                Label{"Destination_Type", "kind of destination"},
                                Label{"Destination_Name", "name of destination"}};

// Null for a column whose value is no matter of the user's.
const char* LabelOf(std::string_view column) {
  const auto* label = std::find_if(kLabels.begin(), kLabels.end(),
                                   [&](const Label& each) { return each.column == column; });
  return label == kLabels.end() ? nullptr : label->text;
}

// Blanks and line ends say nothing.
bool IsEmpty(const Value& value) {
  return Joined(value).find_first_not_of(" \r\n") == std::string::npos;
}

}  // namespace

bool Reading::DecidesATranslation(std::string_view column) {
  return !column.ends_with("_List") && column != "Constraint_list";
}

void Reading::RefuseLongRow(Cells cells) {
  constexpr std::size_t kLongest = 16 << 20;  // bytes, in a database, of UTF-8
  constexpr std::size_t kWidest = 3;          // bytes of a letter there
  const auto sizeOf = [&](const auto& measure) {
    std::size_t size = 0;
    for (const Cell& cell : cells) {
      if (cell.value.IsText()) size += measure(cell.value.Text());
    }
    return size;
  };
  if (isTooLong_ || sizeOf([](const auto& text) { return text.size(); }) * kWidest <= kLongest ||
      sizeOf([](const auto& text) { return ToUtf8(text).size(); }) <= kLongest) {
    return;
  }
  isTooLong_ = true;
  Add(Severity::kError,
      "Its texts are longer than the 16 MB that a row of a database holds, so that a translation "
      "ends here.",
      "Shorten its lists.");
  if (elementLine_ != 0) findings_.back().line = elementLine_;
  if (!untranslatable_) untranslatable_ = findings_.back();
}

bool Reading::OnRow(RowChange change, std::string_view table, Cells cells) {
  RefuseLongRow(cells);
  rows_.Hold(change, table, cells);
  if (change == RowChange::kChanged) {
    if (table == "Activity_In_Scenario") {
      ChangeUnit(cells);
    } else if (table == "Junctions_in_Scenario") {
      const std::size_t place = model_.junctions.back().place;
      TakeNote(TakeCarried(cells, place), place);
    }
  } else if (table == "Activity_Pool") {
    AddProcess(cells);
  } else if (table == "Object_Pool") {
    AddObject(cells);
  } else if (table == "Fact_Pool") {
    model_.facts.push_back(AddPlace(cells, "Num", "Name"));
  } else if (table == "Scenario") {
    AddScenario(cells);
  } else if (table == "Activity_In_Scenario") {
    AddUnit(cells);
  } else if (table == "Object_in_Activity_in_Scenario") {
    AddObjectUse(cells);
  } else if (table == "Junctions_in_Scenario") {
    AddJunction(cells);
  } else if (table == "Facts_in_Junction") {
    if (model_.junctions.empty()) return false;
    model_.junctionFacts.push_back({model_.junctions.size() - 1, Joined(Get(cells, "Fact_Name"))});
  } else if (table == "Links_in_Scenario") {
    AddLink(cells);
  }
  return false;
}

std::size_t Reading::AddPlace(Cells cells, std::string_view numberColumn,
                              std::string_view nameColumn) {
  const std::size_t place = model_.elements.size();
  model_.elements.push_back({element_, standIn_ ? *standIn_ : ToInt32(Get(cells, numberColumn)),
                             Joined(Get(cells, nameColumn)), elementLine_, !standIn_.has_value()});
  TakeNote(TakeCarried(cells, place), place);
  return place;
}

// A value of another kind of element is a matter of those alone that the plan takes it from.
bool Reading::IsOfInterest(std::size_t place, std::size_t from) const {
  const ElementKind kind = model_.At(place).kind;
  return kind == model_.At(from).kind || kind == ElementKind::kUnit || kind == ElementKind::kObject;
}

// What other elements left in the variables, and who; the place becomes the owner of the rest.
std::vector<CarriedValue> Reading::TakeCarried(Cells cells, std::size_t place) {
  std::vector<CarriedValue> carried;
  for (const Cell& cell : cells) {
    if (cell.variable == nullptr) continue;
    const auto [owner, isNew] = owners_.try_emplace(cell.variable, place);
    if (cell.variable->fresh || isNew) {
      owner->second = place;
    } else if (owner->second != place && !IsEmpty(cell.value) &&
               IsOfInterest(place, owner->second)) {
      const char* label = LabelOf(cell.column);
      if (label != nullptr) carried.push_back({label, owner->second});
    }
  }
  return carried;
}

void Reading::TakeNote(const std::vector<CarriedValue>& carried, std::size_t place) {
  std::map<std::size_t, std::string> labels;  // by who gave the value
  for (const CarriedValue& value : carried) {
    std::string& text = labels[value.from];
    text += (text.empty() ? "no " : ", no ") + value.label;
  }
  for (const auto& [from, text] : labels) {
    const auto key = std::tuple(from, model_.At(place).kind, text);
    const auto [entry, isNew] = carried_.try_emplace(key, Carried{place});
    if (!isNew) ++entry->second.more;
  }
}

void Reading::ReportCarried() {
  for (const auto& [key, carried] : carried_) {
    const std::size_t from = std::get<0>(key);
    const std::string& labels = std::get<2>(key);
    std::string sentence = "It gives " + labels + " of its own; what " + WithLine(model_.At(from)) +
                           " gives is taken over";
    if (carried.more > 0) {
      sentence += ", as it is by " + std::to_string(carried.more) + " more of its kind";
    }
    findings_.push_back(FindingAt(Severity::kNote, model_.At(carried.first), sentence + ".",
                                  "Write down what is meant."));
    findings_.back().group = "values taken over from another element";
  }
}

void Reading::AddProcess(Cells cells) {
  const std::size_t place = AddPlace(cells, "Num", "Name");
  model_.processes.push_back({place, Joined(Get(cells, "Glossary")).size()});
}

void Reading::AddObject(Cells cells) {
  const std::size_t place = AddPlace(cells, "Num", "Name");
  model_.objects.push_back({place, Joined(Get(cells, "Alias")), Joined(Get(cells, "Celvar_Type"))});
}

void Reading::AddScenario(Cells cells) {
  const std::size_t place = AddPlace(cells, "Num", "Name");
  const std::size_t parentLine = elementLine_ + 2;
  const bool isKnown = !badLines_.contains(parentLine);
  const std::int32_t parent = ToInt32(Get(cells, "Parent_Num"));
  model_.scenarios.push_back({place, parent, isKnown});
  const std::string_view line = Line(parentLine);
  const std::size_t label = Find(line, "Parent:");
  constexpr std::size_t kLabel = 6;
  if (label == 0 || parent != 0 || !isKnown) return;
  if (Trim(line.substr(label + kLabel)).empty()) return;
  findings_.push_back({Severity::kWarning, parentLine, NameOf(model_.At(place)),
                       "Its parent can't be read, so that it counts as a top scenario.",
                       "Write the line in the form 'Parent:  Process  #NUMBER (NAME)'."});
}

void Reading::AddUnit(Cells cells) {
  unitPlace_ = AddPlace(cells, "Use_Num", "Name");
  UnitEntry& unit = model_.units.emplace_back();
  unit.place = unitPlace_;
  unit.scenario = ToInt32(Get(cells, "Scenario_Num"));
  unit.process = ToInt32(Get(cells, "Process_Num"));
  unit.isProcessKnown = !badLines_.contains(elementLine_);
}

// An object speaks for its unit: what it assigns is the unit's own.
void Reading::AddObjectUse(Cells cells) {
  TakeCarried(cells, unitPlace_);
  model_.objectUses.push_back(
      {unitPlace_, &*model_.objectNames.insert(Joined(Get(cells, "Object_Name"))).first, useLine_,
       ToInt32(Get(cells, "Object_Occ_Num")), !badLines_.contains(useLine_)});
}

void Reading::ChangeUnit(Cells cells) {
  UnitEntry& unit = model_.units.back();
  std::vector<CarriedValue> carried = TakeCarried(cells, unit.place);
  if (cells.begin()->column != "Duration") {
    TakeNote(carried, unit.place);
    return;
  }
  TakeCycleTime(unit, cells.front());
  unit.laborRule = Joined(Get(cells, "Labor_Rule"));
  unit.carried = std::move(carried);
}

void Reading::TakeCycleTime(UnitEntry& unit, const Cell& cell) {
  const std::string duration = Joined(cell.value);
  if (cell.variable != nullptr && cell.variable->fresh) {
    if (unit.hasCycleTime && duration != unit.duration) {
      findings_.push_back({Severity::kWarning, useLine_, NameOf(model_.At(unit.place)),
                           "This object gives the cycle time '" + duration +
                               "', and one before it '" + unit.duration +
                               "'; the plan takes the last of the unit.",
                           "Give all objects of the unit the same cycle time."});
    }
    unit.hasCycleTime = true;
  }
  unit.duration = duration;
}

void Reading::AddJunction(Cells cells) {
  const std::size_t place = AddPlace(cells, "Num", "ID");
  model_.junctions.push_back({place, ToInt32(Get(cells, "Scenario_Num")),
                              Joined(Get(cells, "Cardinality")), Joined(Get(cells, "Type"))});
}

LinkEnd Reading::EndOf(Cells cells, const EndColumns& columns) {
  LinkEnd end{0, Joined(Get(cells, columns.type)), Joined(Get(cells, columns.name)),
              !badLines_.contains(elementLine_ + columns.linesBehind)};
  if (!end.isKnown) return end;
  try {
    end.number = ToInt32(Get(cells, columns.number));
  } catch (const RunTimeError&) {
    findings_.push_back({Severity::kError, elementLine_ + columns.linesBehind,
                         NameOf(model_.elements.back()),
                         "The number '" + Joined(Get(cells, columns.number)) + "' of the link's " +
                             columns.what + " is no whole number.",
                         "Write the number of a unit or a junction of the scenario."});
    end.isKnown = false;
    MarkUntranslatable();
  }
  return end;
}

// One that a link takes over may be the text of a junction; the store wants a number.
void Reading::CheckLinkId(Cells cells) {
  const Value& id = Get(cells, "ID");
  if (id.IsNull() || IsNumeric(id)) return;
  findings_.push_back(FindingAt(
      Severity::kError, model_.elements.back(),
      "It gives no ID of its own, and the '" + Joined(id) + "' that it takes over is no number.",
      "Write down the ID of the link, a whole number."));
  MarkUntranslatable();
}

void Reading::AddLink(Cells cells) {
  constexpr EndColumns kOrigin = {"origin", "Origin_Num", "Origin_Type", "Origin_Name", 1};
  constexpr EndColumns kDestination = {"destination", "Destination_Num", "Destination_Type",
                                       "Destination_Name", 2};
  const std::size_t place = AddPlace(cells, "Num", {});
  model_.elements.back().name =
      Joined(Get(cells, kOrigin.name)) + " to " + Joined(Get(cells, kDestination.name));
  CheckLinkId(cells);
  model_.links.push_back({place, ToInt32(Get(cells, "Scenario_Num")), Joined(Get(cells, "ID")),
                          EndOf(cells, kOrigin), EndOf(cells, kDestination)});
}

}  // namespace merivane::inspect
