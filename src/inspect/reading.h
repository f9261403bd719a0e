// Reads a model with the program's own reader and keeps what it found, with its place.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "model.h"
#include "neutraltext/held_rows.h"
#include "platform/quiet_desktop.h"
#include "read_lines.h"

namespace merivane::inspect {

class Reading : public ReaderListener {
 public:
  // `textSize`: of the file, in bytes.
  explicit Reading(std::uintmax_t textSize) : lines_(textSize) {}

  void OnFileLine(std::size_t fileLine) override { fileLines_.push_back(fileLine); }
  void OnLine(const std::string& line) override;
  void OnSearch(std::string_view keyword) override;
  void OnRecord(ElementKind element, std::string_view listEnd) override;
  void OnField(std::size_t start, std::size_t length) override;
  void OnNumber(NumberUse use, const std::string& text, double value) override;
  std::optional<std::int16_t> OnBadNumber(NumberUse use, const std::string& text,
                                          const RunTimeError& error) override;
  bool OnBadLine(const RunTimeError& error) override;
  bool OnRefusedName(std::string_view rule) override;
  void OnCut(std::size_t length) override;
  bool OnRow(RowChange change, std::string_view table, std::span<const Cell> cells) override;

  // A box of the reader, in the midst of the reading.
  void OnMessage(const Message& message);
  // Once the reader has returned.
  void Finish();
  // What the reader would have written, as far as a translation asks for it. REQUIRES: called once.
  void StoreRowsIn(ModelToProject& state) { rows_.StoreIn(state); }

  const Model& GetModel() const { return model_; }
  const std::vector<Finding>& Findings() const { return findings_; }
  // The reader gave up before the end of the text, and a finding says so.
  bool HasStopped() const { return stopped_; }
  // The first finding after which a translation of the rows would tell nothing of the model.
  const std::optional<Finding>& Untranslatable() const { return untranslatable_; }
  std::size_t LineCount() const { return FileLine(lines_.Size()); }

 private:
  struct SearchRange {
    const std::string* keyword;
    std::uint32_t from;
    std::uint32_t to;  // the line of the keyword
  };
  using Cells = std::span<const Cell>;
  // Lists go into a plan, but what a translation does is the same whatever they say.
  static bool DecidesATranslation(std::string_view column);
  void RefuseLongRow(Cells cells);
  struct EndColumns {
    const char* what;
    std::string_view number;
    std::string_view type;
    std::string_view name;
    std::size_t linesBehind;  // the first line of the link
  };

  std::string_view Line(std::size_t number) const;  // from 1, as they were read; until Finish()
  std::size_t FileLine(std::size_t number) const;
  void CountByFileLines();

  void Add(Severity severity, std::string sentence, std::string advice);
  ElementName CurrentElement() const;
  std::string_view FieldText() const;
  const std::string* Keyword(std::string_view keyword);
  void EndSearch();
  bool ReportNearKeyword(const std::string& keyword, std::size_t from, std::size_t to);

  void Stop(std::string sentence, std::string advice);
  bool StartsWithItsWord() const;
  void StopAtNumber(const std::string& description);
  const char* FormOfLine() const;
  void MarkBadLine();
  void MarkUntranslatable();
  void CheckQuantity(const std::string& text, double value);
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
  LinkEnd EndOf(Cells cells, const EndColumns& columns);
  void ChangeUnit(Cells cells);
  void TakeCycleTime(UnitEntry& unit, const Cell& cell);
  bool IsOfInterest(std::size_t place, std::size_t from) const;
  std::vector<CarriedValue> TakeCarried(Cells cells, std::size_t place);
  void TakeNote(const std::vector<CarriedValue>& carried, std::size_t place);
  void ReportCarried();
  void ReportPassedKeywords();
  void ReportCharacters();
  void ReportControlCharacter(std::size_t number);

  Model model_;
  HeldRows rows_{DecidesATranslation};
  std::vector<Finding> findings_;
  bool stopped_ = false;
  bool isTooLong_ = false;  // a row, which ends a translation, so that it is told once
  bool foreign_ = false;    // the text does not begin as a model does
  std::optional<Finding> untranslatable_;
  std::unordered_set<std::size_t> badLines_;  // whose number of another element is none
  std::optional<std::int16_t> standIn_;       // for the number of the element in hand
  std::int16_t standIns_ = std::numeric_limits<std::int16_t>::min();  // the next one

  ReadLines lines_;                     // all of them, without their ends
  std::vector<std::size_t> fileLines_;  // of each line; empty where they are those of the file

  ElementKind element_ = ElementKind::kProcess;
  std::size_t elementLine_ = 0;  // 0: no element yet
  std::size_t useLine_ = 0;      // of the last object of a unit
  std::size_t unitPlace_ = 0;
  std::string listEnd_;
  std::size_t fieldLine_ = 0;
  std::size_t fieldStart_ = 0;

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
  std::map<std::tuple<std::size_t, ElementKind, std::string>, Carried> carried_;
};

// A program of its own that has read a model text, and can go on from there.
class ReadModelText {
 public:
  // The template gives the tables that the reader asks for; progress is shown on `shown`.
  // Failures: as CheckModel.
  ReadModelText(const std::string& path, const std::string& templatePath,
                platform::Desktop* shown = nullptr);

  const Reading& Result() const { return reading_; }

  // The program as it stands once the reader has written the rows, into a database in memory, as
  // far as a translation asks for them.
  // REQUIRES: called once.
  ModelToProject& WithRows();
  QuietDesktop& Desktop() { return desktop_; }

 private:
  QuietDesktop desktop_;
  Program program_{desktop_};
  std::optional<Progress::Run> run_;  // where progress is shown
  Reading reading_;
};

}  // namespace merivane::inspect
