#include "own_text_lines.h"

#include <algorithm>
#include <array>

#include "neutraltext/modGlobal.h"
#include "program/model_words.h"
#include "reader_lines.h"
#include "runtime/run_time_error.h"

namespace merivane::neutraltext {

namespace {

constexpr std::array<std::string_view, 5> kSummaryLabels = {
    "  Creator:", "  Used At:", "  Project:", "  Date Created:", "  Last Modified:"};

constexpr std::array<std::string_view, 7> kRecordBlocks = {
    "  Glossary",         "  Note List",   "  Source List",
    "  Property List",    "    Fact List", "    Object Occurrence List",
    "    Constraint List"};

constexpr std::array<std::string_view, 6> kTextPools = {
    "State Pool", "Property Pool", "Constraint Pool", "Note Pool", "Source Pool", "Unknown Pool"};

// The label, where one blank alone stands behind it.
std::string_view OneBlankLabel(std::string_view line) {
  for (const std::string_view label : kSummaryLabels) {
    if (!line.starts_with(label)) continue;
    const std::string_view rest = line.substr(label.size());
    return rest.starts_with(' ') && !rest.starts_with("  ") ? label : std::string_view();
  }
  return {};
}

}  // namespace

bool IsOwnText(const std::string& path) try {
  constexpr std::int16_t kFile = 1;
  constexpr int kHeadLines = 8;
  constexpr int kMost = 3;  // a value may begin with a blank, and a hand may have left one out
  TextFiles files;
  files.OpenForInput(kFile, path);
  int found = 0;
  for (int line = 0; line < kHeadLines && !files.AtEnd(kFile); ++line) {
    if (!OneBlankLabel(files.ReadLine(kFile)).empty()) ++found;
  }
  return found >= kMost;
} catch (const RunTimeError& /*error*/) {
  return false;
}

void OwnTextLines::Next(std::string& line) {
  while (ready_.empty()) TakeLine();
  line = std::move(ready_.front().text);
  givenFrom_ = ready_.front().fileLine;
  ready_.pop_front();
}

void OwnTextLines::TakeLine() {
  try {
    files_.ReadLine(file_, line_);
  } catch (const RunTimeError&) {
    if (held_) links_.push_back(*std::exchange(held_, std::nullopt));
    if (links_.empty()) throw;
    ready_ = std::move(links_);
    links_.clear();
    return;
  }
  ++fileLine_;
  if (block_) {
    TakeInBlock();
  } else {
    (this->*section_)();
  }
}

void OwnTextLines::Give(std::string text) {
  if (!muted_) (linksHeld_ ? links_ : ready_).push_back({std::move(text), fileLine_});
}

void OwnTextLines::GiveEmptyList(std::string_view name) {
  Give(std::string(name));
  Give(EndOf(name));
}

bool OwnTextLines::BeginBlock(std::string_view opening, std::string_view given) {
  if (line_ != opening) return false;
  Give(std::string(given));
  block_ = Block{EndOf(opening), EndOf(given)};
  return true;
}

// A stored text is printed with its own last line end and that of the print, so that a line is
// empty in front of the closing one; a blank alone stands for no text.
void OwnTextLines::TakeInBlock() {
  const auto give = [this](Line& line) {
    if (!muted_) (linksHeld_ ? links_ : ready_).push_back(std::move(line));
  };
  if (line_ != block_->closing) {
    if (held_) give(*held_);
    held_ = Line{line_, fileLine_};
    ++block_->lines;
    return;
  }
  const bool isBlank = held_ && block_->lines == 1 && held_->text == " ";
  if (held_ && !held_->text.empty() && !isBlank) give(*held_);
  held_.reset();
  Give(block_->given);
  block_.reset();
}

void OwnTextLines::InSummary() {
  const std::string_view label = OneBlankLabel(line_);
  if (!label.empty()) {
    Give(line_.insert(label.size(), " "));
  } else if (!BeginBlock("  Description", line_) && !BeginBlock("  Property List", line_)) {
    BetweenPools();
  }
}

void OwnTextLines::BeginPool(std::string_view kind) {
  pool_ = kind;
  section_ = &OwnTextLines::InPool;
}

void OwnTextLines::BetweenPools() {
  const bool isProcesses = Is("Process Pool");
  const bool isObjects = Is("Object Pool");
  if (isObjects || Is("State Pool")) {
    if (!std::exchange(processesSeen_, true)) GiveEmptyList("Process Pool");
    if (!isObjects && !objectsSeen_) GiveEmptyList("Object Pool");
  }
  processesSeen_ = processesSeen_ || isProcesses;
  objectsSeen_ = objectsSeen_ || isObjects;
  for (const std::string_view pool : kTextPools) {
    if (!BeginBlock(pool, pool)) continue;
    section_ = &OwnTextLines::BetweenPools;
    return;
  }
  Give(line_);
  if (isProcesses) BeginPool("Process");
  if (isObjects) BeginPool("Object");
  if (Is("Fact Pool")) BeginPool("Fact");
  if (!Is("Scenario List")) return;
  Give("");
  section_ = &OwnTextLines::InScenarioList;
}

void OwnTextLines::InPool() {
  if (Is("End  " + pool_ + " Pool")) {
    Give(line_);
    section_ = &OwnTextLines::BetweenPools;
  } else if (Begins(pool_ + "  ")) {
    recordHead_ = line_;
    number_ = line_.substr(pool_.size() + 2);
    section_ = &OwnTextLines::InRecordHead;
  } else if (!IsEmpty()) {
    Give(line_);
  }
}

// A process stands there once for each of its units, and objects of other projects bear numbers
// that are taken.
bool OwnTextLines::IsNewRecord(const std::string& name) {
  if (pool_ == "Process") return processes_.emplace(number_, name).second;
  return pool_ != "Object" || objectNames_.emplace(number_, name).second;
}

void OwnTextLines::InRecordHead() {
  constexpr std::string_view kName = "  Name:  ";
  muted_ = !IsNewRecord(Begins(kName) ? line_.substr(kName.size()) : "");
  Give(recordHead_);
  section_ = &OwnTextLines::InRecord;
  InRecord();
}

void OwnTextLines::InRecord() {
  const bool isBlock =
      std::any_of(kRecordBlocks.begin(), kRecordBlocks.end(),
                  [this](std::string_view each) { return BeginBlock(each, each); });
  if (isBlock || IsEmpty()) return;
  const bool isEnd = Begins("End  ") && Begins("End  " + pool_ + " ");
  const bool isPoolEnd = isEnd && Is("End  " + pool_ + " Pool");
  if (!isPoolEnd) Give(line_);
  if (!isEnd) return;
  Give("");
  muted_ = false;
  section_ = &OwnTextLines::InPool;
  if (isPoolEnd) InPool();
}

}  // namespace merivane::neutraltext
