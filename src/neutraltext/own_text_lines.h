// Turns a text from the written form into the read form while the reader takes it, line by line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "program/program.h"

namespace merivane::neutraltext {

using namespace program;

// The lines of an open file, as the reader wants them: each at its place, pools and lists that the
// writers leave out as empty ones, the referents in front of the links, ends of links, parents and
// objects with their names, and no record twice. What stands inside a block stays as it is. A text
// that is no whole model comes through as far as it is one.
class OwnTextLines : public LineSource {
 public:
  OwnTextLines(TextFiles& files, std::int16_t file) : files_(files), file_(file) {}

  void Next(std::string& line) override;
  std::size_t FileLine() const override { return givenFrom_; }

 private:
  struct Line {
    std::string text;
    std::size_t fileLine;
  };
  struct Block {
    std::string closing;  // as it is written
    std::string given;    // and as it is given
    std::size_t lines = 0;
  };
  // What is told of a scenario's head, up to its ID.
  struct Head {
    std::string parent;
    std::string type;
    std::string creator;
  };
  using Section = void (OwnTextLines::*)();

  void TakeLine();
  void TakeInBlock();
  void Give(std::string text);
  void GiveEmptyList(std::string_view name);
  // False where the line isn't the opening of the block; `given`: what is given in its place.
  bool BeginBlock(std::string_view opening, std::string_view given);
  bool BeginElementBlock(const std::string& line);
  bool Is(std::string_view text) const { return line_ == text; }
  bool Begins(std::string_view text) const { return line_.starts_with(text); }
  bool IsEmpty() const { return line_.empty(); }

  void InSummary();
  void BetweenPools();
  void BeginPool(std::string_view kind);
  void InPool();
  void InRecordHead();
  bool IsNewRecord(const std::string& name);
  void InRecord();

  void InScenarioList();
  void InScenarioHead();
  void GiveHead();
  void InUnits();
  bool TakeUnitName();
  void InUnit();
  void InObjects();
  void BetweenLists();
  void GiveHeldLinks();
  void InJunctions();
  void InJunction();
  std::string OwnId(const std::string& id);
  void InLinks();
  void InLink();
  void GiveEnd();

  TextFiles& files_;
  std::int16_t file_;
  std::string line_;  // as it is written
  std::size_t fileLine_ = 0;
  std::size_t givenFrom_ = 0;
  std::deque<Line> ready_;

  Section section_ = &OwnTextLines::InSummary;
  std::optional<Block> block_;
  std::optional<Line> held_;  // the last line of a block, which may be the end of its print alone

  std::string pool_;  // "Process", "Object" or "Fact"
  bool processesSeen_ = false;
  bool objectsSeen_ = false;
  std::string recordHead_;
  std::set<std::pair<std::string, std::string>> processes_;  // number and name
  bool muted_ = false;                                       // a record that was there before
  std::unordered_map<std::string, std::string> objectNames_;

  bool inFirstScenario_ = true;
  Head head_;
  std::string number_;     // of the unit or junction in hand
  bool isStored_ = false;  // the junction in hand, by a model
  std::unordered_map<std::string, std::string> unitNames_;
  std::unordered_map<std::string, std::string> junctionIds_;
  std::set<std::string> idsTaken_;
  bool referentsSeen_ = false;
  bool linksHeld_ = false;
  std::deque<Line> links_;
};

}  // namespace merivane::neutraltext
