// Reads a model with the program's own reader and keeps what it found, with its place.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model.h"
#include "neutraltext/held_rows.h"
#include "platform/scripted_desktop.h"

namespace merivane::inspect {

// Where the reader gave up, and what could be put there so that it goes on.
struct Stop {
  enum class Kind { kNone, kName, kNumber, kFinal };
  Kind kind = Kind::kNone;
  std::size_t line = 0;
  std::size_t start = 0;  // of the name or number in the line, from 0
  std::size_t length = 0;
};

class Reading : public ReaderListener {
 public:
  // `textSize`: of the file, in bytes.
  explicit Reading(std::uintmax_t textSize) { text_.reserve(textSize); }

  void OnLine(const std::string& line) override;
  void OnSearch(std::string_view keyword) override;
  void OnRecord(Element element, std::string_view listEnd) override;
  void OnField(std::size_t start, std::size_t length) override;
  void OnCut(std::size_t length) override;
  bool OnRow(RowChange change, std::string_view table, std::span<const Cell> cells) override;

  // A box of the reader, in the midst of the reading.
  void OnMessage(const Message& message);
  // Once the reader has returned.
  void Finish();
  // What the reader would have written. REQUIRES: called once.
  void StoreRowsIn(ModelToProject& state) { rows_.StoreIn(state); }

  const Model& GetModel() const { return model_; }
  const std::vector<Finding>& Findings() const { return findings_; }
  const Stop& StoppedAt() const { return stop_; }
  const std::optional<Finding>& StopFinding() const { return stopFinding_; }
  std::size_t LineCount() const { return ends_.size(); }
  std::string_view Line(std::size_t number) const;  // from 1

 private:
  struct SearchRange {
    const std::string* keyword;
    std::size_t from;
    std::size_t to;  // the line of the keyword
  };
  using Cells = std::span<const Cell>;

  void Add(Severity severity, std::string sentence, std::string advice);
  ElementName CurrentElement() const;
  std::string_view FieldText() const;
  const std::string* Keyword(std::string_view keyword);
  void EndSearch();

  void StopHere(Stop::Kind kind);
  void StopAtName(const std::string& text);
  bool StartsWithItsWord() const;
  void StopAtNumber(const std::string& description, bool beyond);
  void StopAtMark();
  void StopAtEnd();

  std::size_t AddPlace(Cells cells, std::string_view numberColumn, std::string_view nameColumn);
  void AddProcess(Cells cells);
  void AddObject(Cells cells);
  void AddScenario(Cells cells);
  void AddUnit(Cells cells);
  void AddObjectUse(Cells cells);
  void AddJunction(Cells cells);
  void AddLink(Cells cells);
  void CheckLinkId(Cells cells);
  LinkEnd EndOf(Cells cells, std::string_view number, std::string_view type);
  void ChangeUnit(Cells cells);
  bool IsOfInterest(std::size_t place, std::size_t from) const;
  std::vector<CarriedValue> TakeCarried(Cells cells, std::size_t place);
  void TakeNote(const std::vector<CarriedValue>& carried, std::size_t place);
  void ReportCarried();
  void ReportPassedKeywords();
  void ReportCharacters();

  Model model_;
  HeldRows rows_;
  std::vector<Finding> findings_;
  Stop stop_;
  bool foreign_ = false;                // the text does not begin as a model does
  std::optional<Finding> stopFinding_;  // what to say of it; among the findings as well

  std::string text_;               // all lines read, without their ends
  std::vector<std::size_t> ends_;  // of each line in text_

  Element element_ = Element::kProcess;
  std::size_t elementLine_ = 0;  // 0: no element yet
  std::size_t unitPlace_ = 0;
  std::string listEnd_;
  std::size_t fieldLine_ = 0;
  std::size_t fieldStart_ = 0;
  std::size_t fieldLength_ = 0;

  std::set<std::string, std::less<>> keywords_;
  const std::string* searched_ = nullptr;
  std::size_t searchedFrom_ = 0;
  std::size_t foundAt_ = 0;  // the line that ended the last search
  std::vector<SearchRange> ranges_;
  bool cut_ = false;  // the search that follows passes over the rest of the cut block

  std::unordered_map<const FieldVariable*, std::size_t> owners_;  // place of the last assignment

  // The elements of one kind that take over the same values of one element are told together.
  struct Carried {
    std::size_t first;  // place
    std::size_t more = 0;
  };
  std::map<std::tuple<std::size_t, Element, std::string>, Carried> carried_;
};

// A program of its own that has read a model text, and can go on from there.
class ReadModelText {
 public:
  // The template gives the tables that the reader asks for. Failures: as CheckModel.
  ReadModelText(const std::string& path, const std::string& templatePath);

  const Reading& Result() const { return reading_; }

  // The program as it stands once the reader has written all rows, into a database in memory.
  // REQUIRES: called once.
  ModelToProject& WithRows();
  ScriptedDesktop& Desktop() { return desktop_; }

 private:
  ScriptedDesktop desktop_;
  Program program_{desktop_};
  Reading reading_;
};

}  // namespace merivane::inspect
