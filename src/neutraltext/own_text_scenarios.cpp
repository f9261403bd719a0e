// The scenarios of a text in the written form.
#include <algorithm>
#include <array>

#include "own_text_lines.h"
#include "program/model_words.h"

namespace merivane::neutraltext {

namespace {

constexpr std::array<std::string_view, 9> kHeadBlocks = {"  Purpose",
                                                         "  Viewpoint",
                                                         "  Context",
                                                         "  Description",
                                                         "    Object Occurrence List",
                                                         "    Fact List",
                                                         "    Constraint List",
                                                         "  Note List",
                                                         "  Source List"};

// Of junctions and links.
constexpr std::array<std::string_view, 5> kElementBlocks = {
    "  Glossary", "    Object Occurrence List", "    Fact List", "    Constraint List",
    "  Note List"};

constexpr std::string_view kWrittenWithoutModel = "Sync. And";

std::string Indented(std::string_view line, std::size_t blanks = 2) {
  return std::string(blanks, ' ').append(line);
}

// The digits behind the first "#".
std::string NumberIn(std::string_view line) {
  const std::size_t mark = line.find('#');
  if (mark == std::string_view::npos) return {};
  const std::string_view rest = line.substr(mark + 1);
  return std::string(rest.substr(0, rest.find_first_not_of("0123456789")));
}

// The reader takes so many characters of a line, and wants to see the bracket that closes.
std::string Bracketed(std::string front, const std::string& name) {
  constexpr std::size_t kMost = 248;
  front += name;
  if (front.size() > kMost) front.resize(kMost);
  return front + ")";
}

using Names = std::unordered_map<std::string, std::string>;

const std::string& NameOf(const Names& names, const std::string& number) {
  static const std::string kNone;
  const auto found = names.find(number);
  return found == names.end() ? kNone : found->second;
}

}  // namespace

void OwnTextLines::InScenarioList() {
  const bool isEnd = Is("End  Scenario List");
  if (IsEmpty()) return;
  if ((isEnd || Begins("Scenario  ")) && !inFirstScenario_) {
    Give("");
    if (!isEnd) Give("");
  }
  Give(line_);
  if (isEnd) section_ = &OwnTextLines::BetweenPools;
  if (!Begins("Scenario  ")) return;
  inFirstScenario_ = false;
  head_ = {};
  referentsSeen_ = false;
  section_ = &OwnTextLines::InScenarioHead;
}

void OwnTextLines::InScenarioHead() {
  if (Begins("  Parent:")) {
    head_.parent = line_;
    if (line_.find('(') == std::string::npos) {
      head_.parent = Bracketed(line_ + " (", NameOf(unitNames_, NumberIn(line_)));
    }
  } else if (Begins("  Type:")) {
    head_.type = line_;
  } else if (Begins("  Creator:")) {
    head_.creator = line_;
  } else if (Begins("  ID")) {
    GiveHead();
  } else if (Is("Process Occurrence List")) {
    Give(Indented(line_));
    section_ = &OwnTextLines::InUnits;
  } else if (std::none_of(kHeadBlocks.begin(), kHeadBlocks.end(),
                          [this](std::string_view each) { return BeginBlock(each, each); }) &&
             !IsEmpty()) {
    Give(line_);
  }
}

// A scenario without a parent has no line of its type, and one of its creator all the same.
void OwnTextLines::GiveHead() {
  if (!head_.parent.empty()) {
    Give(head_.parent);
    Give(head_.type.empty() ? "  Type:  " : head_.type);
  }
  Give(head_.creator.empty() ? "  Creator:  " : head_.creator);
  Give(line_);
}

void OwnTextLines::InUnits() {
  if (IsEmpty()) return;
  const bool isUnit = Begins("  Process  ");
  if (isUnit) Give("");
  Give(Indented(line_));
  if (isUnit) {
    number_ = NumberIn(line_);
    section_ = &OwnTextLines::InUnit;
  } else if (Is("End  Process Occurrence List")) {
    section_ = &OwnTextLines::BetweenLists;
  }
}

// That of a plan of another program has its name two columns further left.
bool OwnTextLines::TakeUnitName() {
  for (const std::string_view label : {"    Name:  ", "  Name:  "}) {
    if (!Begins(label)) continue;
    const std::string name = line_.substr(label.size());
    unitNames_[number_] = name;
    Give("      Name:  " + name);
    return true;
  }
  return false;
}

void OwnTextLines::InUnit() {
  if (IsEmpty() || TakeUnitName()) return;
  for (const std::string_view list : {"      Fact List", "      Constraint List"}) {
    if (BeginBlock(list, Indented(list))) return;
  }
  if (Begins("  End  Process")) {
    Give("    End  Process");
    section_ = &OwnTextLines::InUnits;
    return;
  }
  Give(Indented(line_));
  if (Is("      Object Occurrence List")) section_ = &OwnTextLines::InObjects;
}

void OwnTextLines::InObjects() {
  constexpr std::string_view kUse = "        Object-Occurrence  ";
  constexpr std::string_view kGlossary = "              Glossary";
  if (IsEmpty() || BeginBlock(kGlossary, Indented(kGlossary))) return;
  if (Begins(kUse) && line_.find('(') == std::string::npos) {
    const std::string& name = NameOf(objectNames_, line_.substr(kUse.size()));
    Give(Bracketed(Indented(line_) + "  (", name));
    return;
  }
  Give(Indented(line_));
  if (Is("      End  Object Occurrence List")) section_ = &OwnTextLines::InUnit;
}

void OwnTextLines::BetweenLists() {
  if (IsEmpty()) return;
  if (BeginBlock("Referent List", "  Referent List")) {
    referentsSeen_ = true;
  } else if (Is("Junction List")) {
    Give(Indented(line_));
    section_ = &OwnTextLines::InJunctions;
  } else if (Is("Link List")) {
    linksHeld_ = !referentsSeen_;
    Give(Indented(line_));
    section_ = &OwnTextLines::InLinks;
  } else {
    GiveHeldLinks();
    Give(line_);
    if (Is("End  Scenario")) section_ = &OwnTextLines::InScenarioList;
  }
}

// The reader wants the referents in front of them.
void OwnTextLines::GiveHeldLinks() {
  if (!std::exchange(referentsSeen_, true)) GiveEmptyList("  Referent List");
  for (Line& line : links_) ready_.push_back(std::move(line));
  links_.clear();
}

void OwnTextLines::InJunctions() {
  if (IsEmpty()) return;
  constexpr std::string_view kStored = "Junction  ";
  constexpr std::string_view kGenerated = "Junction ";
  if (!Begins(kGenerated) || Is("Junction List")) {
    Give(Indented(line_));
    if (Is("End  Junction List")) section_ = &OwnTextLines::BetweenLists;
    return;
  }
  isStored_ = Begins(kStored);
  number_ = line_.substr(isStored_ ? kStored.size() : kGenerated.size());
  Give("");
  Give("  Junction  " + number_);
  section_ = &OwnTextLines::InJunction;
}

void OwnTextLines::InJunction() {
  if (IsEmpty() || BeginBlock("Property List", "  Property List")) return;
  if (Is("End  Junction")) {
    Give(Indented(line_));
    section_ = &OwnTextLines::InJunctions;
    return;
  }
  const std::string line = isStored_ ? line_ : Indented(line_);
  if (BeginElementBlock(line)) return;
  constexpr std::string_view kId = "  ID ";
  if (line.starts_with(kId)) {
    const std::size_t id = line.find_first_not_of(' ', kId.size());
    junctionIds_[number_] = OwnId(id == std::string::npos ? "" : line.substr(id));
    Give("    ID  " + junctionIds_[number_]);
  } else if (line.starts_with("  Type:") && line.ends_with(kWrittenWithoutModel)) {
    Give(Indented("  Type:  ").append(kSyncAnd));
  } else {
    Give(Indented(line));
  }
}

// Junctions without an ID are all written as the first one, and those of a plan of another program
// are counted anew in each scenario; the plan knows a junction by its ID.
std::string OwnTextLines::OwnId(const std::string& id) {
  constexpr std::string_view kIdOfNone = "J1";
  const bool isGiven = isStored_ && id != kIdOfNone;
  return idsTaken_.insert(id).second || isGiven ? id : "J" + number_;
}

// `line`: indented as a stored one.
bool OwnTextLines::BeginElementBlock(const std::string& line) {
  if (line == "  glossary") {
    Give("    Glossary");
    block_ =
        Block{line_.starts_with(' ') ? "  End  Glossary" : "End  Glossary", "    End  Glossary"};
    return true;
  }
  const bool isBlock =
      std::find(kElementBlocks.begin(), kElementBlocks.end(), line) != kElementBlocks.end();
  return isBlock && BeginBlock(line_, Indented(line));
}

void OwnTextLines::InLinks() {
  if (IsEmpty()) return;
  if (Begins("Link ") && !Is("Link List")) {
    Give("  Link  " + line_.substr(line_.find_last_of(' ') + 1));
    section_ = &OwnTextLines::InLink;
    return;
  }
  Give(Indented(line_));
  if (!Is("End  Link List")) return;
  linksHeld_ = false;
  section_ = &OwnTextLines::BetweenLists;
}

void OwnTextLines::InLink() {
  constexpr std::string_view kGeneratedId = "  id ";
  if (IsEmpty() || BeginElementBlock(line_)) return;
  if (Is("Property List")) {
    Give("");
    BeginBlock(line_, "  Property List");
  } else if (Begins("  Origin  #") || Begins("  Destination  #")) {
    GiveEnd();
  } else if (Begins(kGeneratedId)) {
    Give("    ID  " + line_.substr(kGeneratedId.size()));
  } else {
    Give(Indented(line_));
    if (Is("End  Link")) section_ = &OwnTextLines::InLinks;
  }
}

void OwnTextLines::GiveEnd() {
  if (line_.find('(') != std::string::npos) {
    Give(Indented(line_));
    return;
  }
  const std::string number = NumberIn(line_);
  const bool isJunction = junctionIds_.contains(number);
  std::string front = Indented(line_) + "  (";
  front.append(isJunction ? kJunction : kProcessOccurrence).append(", ");
  Give(Bracketed(std::move(front), NameOf(isJunction ? junctionIds_ : unitNames_, number)));
}

}  // namespace merivane::neutraltext
