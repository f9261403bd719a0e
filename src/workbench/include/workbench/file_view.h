// An opened file as the workbench shows it: an outline of elements, each with its places in the
// diagram, in the chart and in the text, so that what is chosen in one is found in all others.
//
//   const FileView view = ViewPlanFile("plan.xml", desktop);
//   for (const Element& element : view.elements) ...
//   if (const auto unit = ElementOfFigure(view, 0, "unit-3")) ...
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/differences.h"
#include "inspect/model_snapshot.h"
#include "pictures/diagram.h"
#include "pictures/picture.h"
#include "pictures/process_model.h"
#include "platform/desktop.h"
#include "store/connection.h"

namespace merivane::workbench {

using namespace inspect;
using namespace pictures;

// Texts are Windows-1252.
struct Property {
  std::string name;
  std::string text;  // lines are parted by '\n'; never empty
};

// A unit and the task that it became are one element.
struct Element {
  enum class Kind { kScenario, kUnit, kTask };
  Kind kind = Kind::kUnit;
  std::int32_t number = 0;  // of the scenario or the unit; of a task without one its ID
  std::string name;
  std::size_t level = 0;  // of the outline; what belongs to an element follows, one level deeper
  std::size_t line = 0;   // of the text, from 1; 0: in none
  std::optional<std::size_t> scenario = {};  // where it is drawn, an index of the model's scenarios
  std::optional<std::size_t> decomposed = {};  // the first scenario that decomposes it, likewise
  std::string figure = {};                     // its id there; empty: it isn't drawn
  std::string bar = {};                        // its id in the chart; empty: it has none
  std::string whyOut = {};  // why it stays out of the plan; empty for what is in it
  std::int64_t task = 0;    // its place in the plan's list; 0: it isn't in it
  Mark mark = Mark::kNone;  // what a merge would make of it
  std::vector<Property> properties = {};
};

// What the check found, a unit that stays out of the plan, or what a merge would change.
struct Note {
  enum class Kind { kError, kWarning, kNote, kLeftOut };
  Kind kind = Kind::kNote;
  std::size_t line = 0;  // of the text, from 1; 0: in none
  std::string about;     // the element in words; empty: the file as a whole
  std::string sentence;
  std::string advice = {};
  std::optional<std::size_t> element = {};  // where a click goes to
  std::optional<ChangeKind> change = {};    // of a merge; it stands in the place of the kind
  std::optional<std::int32_t> row = {};     // of a merge: in the plan
};

// What a translation asks for: one of several scenarios.
struct ScenarioChoice {
  std::string question;
  std::vector<std::string> names;
  std::size_t chosen = 0;
};

struct FileView {
  ProcessModel model;  // without scenarios where the file holds none
  std::vector<Element> elements;
  std::vector<Note> notes;
  std::vector<ScenarioChoice> choices;
  std::optional<Picture> chart;
  std::string whyNoChart;          // where there is none
  std::vector<std::string> lines;  // what else is to be told of the file, a sentence each
};

// The diagram of one scenario, or of all where none is named, which are drawn when they are looked
// at. `work` is told that it goes on.
std::vector<Diagram> DrawScenarios(const FileView& view, std::optional<std::size_t> scenario,
                                   WorkListener& work);

// The element that a figure of these diagrams stands for (a junction: its scenario), or a bar of
// the chart; nothing where there is none.
std::optional<std::size_t> ElementOfFigure(const FileView& view,
                                           std::optional<std::size_t> scenario,
                                           std::string_view figure);
std::optional<std::size_t> ElementOfBar(const FileView& view, std::string_view bar);

// The same element in the view that a file gives when it is read or translated again.
std::optional<std::size_t> SameElement(const Element& element, const FileView& view);

using namespace platform;

// By the ending. A database of Microsoft Project may bear any: what is none of the others is held
// for one, and opening it tells whether it is.
FileKind KindOfOpened(const std::string& path);

// One project of an open database, with the model where it holds one. What a table lacks or can't
// be read stays out, and a line tells why. Errors of the database come up only where it holds
// neither a model nor a plan that can be read.
FileView ViewDatabase(Connection& connection, std::int32_t project, const DateTime& today);

// An MPX file or planning XML, brought into a temporary database, which is gone on return. What the
// reader shows is told in lines. Progress is shown on `shown`, from where RunCancelled comes up.
// Errors: a file that can't be opened, or of which no task can be read; the description is what the
// reader shows then.
FileView ViewPlanFile(const std::string& path, Desktop& shown);

struct PlannedMerge {
  std::string plan;      // UTF-8, so below
  std::string database;  // that holds the model
  std::int32_t project = 0;
  bool isComplete = false;
  bool operator==(const PlannedMerge&) const = default;
};

// Tries the merge in a copy; nothing of the user's is touched. Notes tell what its preview tells,
// and elements, diagrams and chart have marks of it. Where the merge stops, what it would change
// without the stops is shown; where nothing comes of it, the model as it is. Pictures that can't be
// made are told in a line. Progress is shown on `shown`, from where RunCancelled comes up. Errors
// are those of the preview.
FileView ViewMerge(const PlannedMerge& merge, Desktop& shown);

}  // namespace merivane::workbench
