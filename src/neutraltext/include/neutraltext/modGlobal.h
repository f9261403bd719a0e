// Shared state of the two directions, the helpers that every part calls, and the reader's entry
// points. A Program owns one of each; nothing lives at namespace scope.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop.h"
#include "runtime/run_time_error.h"
#include "runtime/text_files.h"
#include "runtime/value.h"
#include "store/connection.h"
#include "store/recordset.h"

namespace merivane {

class PathListener;
class ReaderListener;

// What both directions use. The referred objects outlive the direction.
struct Direction {
  Desktop& desktop;
  TextFiles& files;
  Workspace& workspace;
  std::int32_t& codePage;  // set by the model-to-project pass, read by both; 0 before
};

// A field variable of the reader: Null until assigned, never cleared between records, sections or
// reads. `fresh`: assigned since a listener was told of the last row with it.
struct FieldVariable : Value {
  template <typename Assigned>
  FieldVariable& operator=(Assigned&& value) {
    Value::operator=(Value(std::forward<Assigned>(value)));
    fresh = true;
    return *this;
  }
  mutable bool fresh = false;
};

struct FieldVariables {
  FieldVariable Num, Name, Creator, Date_Created, Last_Modified, Glossary, Note_List, Source_List,
      Property_List, ID, Ref, Object_Occ_List, Fact_List, Constraint_List, Quantity, Alias,
      Dunmar_Type, Celvar_Type;
  FieldVariable Description;         // of the project and of scenarios
  FieldVariable Parent_Num, Parent;  // of a scenario
  FieldVariable Scenario_Type;       // kept apart from the type of junctions and links
  FieldVariable Revision_Number, Review_Status, Purpose, Viewpoint, Context, Referent_List;
  FieldVariable Process_Num, Use_Num, Column, Row;
  FieldVariable Object_Occ_Num, Object_Name, Duration, Labor_Rule;
  FieldVariable Cardinality, Type;  // of junctions and links
  FieldVariable Fact_Num, Fact_Name;
  FieldVariable Origin_Num, Origin_Type, Origin_Name, Destination_Num, Destination_Type,
      Destination_Name;
};

inline constexpr int kJunctionQueueBound = 100;

// From a Neutral Text file to a plan.
struct ModelToProject : Direction {
  explicit ModelToProject(const Direction& shared) : Direction(shared) {}

  std::unique_ptr<Connection> gMspConn;  // null: not set
  bool gOverwriteDb = false;
  std::int16_t gMspProjId = 0;  // 0: not settled
  std::string gDatabaseName;    // Windows-1252

  // Reader
  std::int16_t gTextFile = 0;
  std::string gLine;
  FieldVariables fields;
  std::int16_t gScenarioNum = 0;
  std::int16_t gUseNum = 0;
  std::int16_t gJunctionNum = 0;
  std::string gJunctionId;
  Recordset rsActivityPool, rsObjectPool, rsFactPool, rsMisc, rsScenario, rsActivityInScenario,
      rsObjectInActivity, rsJunctions, rsFactsInJunction, rsLinks, rsOstn;

  ReaderListener* readerListener = nullptr;  // null: nobody listens

  // Translator
  PathListener* pathListener = nullptr;  // null: nobody listens
  std::int16_t mpxFileNo = 0;
  std::int16_t linkUID = 0;
  std::int16_t currentScenarioNum = 0;
  std::int16_t stopJunctionNum = 0;  // outlives a translation
  std::string chosenName;            // outlives a translation
  std::array<std::string, kJunctionQueueBound + 1> junctionQueue;
  std::int16_t junctionQueueTop = 0;
};

// From a plan to a Neutral Text file.
struct ProjectToModel : Direction {
  explicit ProjectToModel(const Direction& shared) : Direction(shared) {}

  std::unique_ptr<Connection> gProjectConn;  // null: nothing
  std::unique_ptr<Connection> gInterimConn;  // null: nothing
  std::int32_t gInterimProjId = 0;
  bool gRoundTripMerge = false;
  std::int16_t gRebuildModel = 0;
  std::int16_t gOutFile = 0;

  // Writers
  std::int16_t nextElementNum = 0;
  std::int16_t scenarioCounter = 0;

  // Merge
  std::int16_t gCurrentScenario = 0;
  std::int16_t gOriginUse = 0;
  std::int16_t gDestinationUse = 0;
  std::int16_t gNoTopScenario = 0;
  std::vector<std::int16_t> gFsPredecessors;
  std::vector<std::int16_t> gNewPredecessors;

  // MPX reader
  std::int16_t mpxInFileNo = 0;
  std::int16_t mpxLayout = 0;
  std::int16_t defaultDurationUnits = 0;
};

// One program: what it shares and both directions. Dropping it closes all files and commits.
class Program {
 public:
  explicit Program(Desktop& desktop);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Desktop& desktop;
  TextFiles files;
  Workspace workspace;
  std::int32_t codePage = 0;
  ModelToProject modelToProject;
  ProjectToModel projectToModel;
};

// General reporter: beeps, shows the description and CR LF (exclamation, title "Error"); after
// error 70 a second box advises to close the file.
void ReportError(Desktop& desktop, const RunTimeError& error);

// Last resort of the reader and the translator: pointer to 1, the error's text (critical, title
// "IDEF3 to Project"), then the program ends.
[[noreturn]] void FatalAbort(Desktop& desktop, const RunTimeError& error);

void RestoreMousePointer(Desktop& desktop);

// A box with a description alone, no icon and no title: what most guards show.
void ShowDescription(Desktop& desktop, const RunTimeError& error);

// Up to `length` characters behind the first double blank at or behind position `start` of the
// line; empty without one. Nothing is trimmed.
std::string FieldAfterBlanks(std::string_view line, std::size_t start, std::size_t length);

// Puts zeros in front of a text of 0 to 4 characters up to five; any other stays.
void PadToFiveDigits(std::string& text);

// Name rules of the reader: a box and the end of the program for a name that breaks them.
void ValidateUobName(Desktop& desktop, const std::string& name);
void ValidateObjectName(Desktop& desktop, const std::string& name);

// Loads a Neutral Text file into the interim tables of gMspConn under gMspProjId. A failure while
// reading is reported and leaves the rows so far and the file open; a file that can't be opened
// ends the program.
void ReadNeutralText(ModelToProject& state, const std::string& fileName);

// Opens the file as gTextFile and reads its first line. False, with a box, for a file of another
// kind; it is read all the same.
bool CheckNeutralTextHeader(ModelToProject& state, const std::string& fileName);
void ReadModel(ModelToProject& state);

// Gives back the input's file number, which stays taken from CheckNeutralTextHeader until the
// translation is over so that no other file gets it, and closes the file if a failed read left it
// open. For the driver's end on every path; nothing where no number is held.
void ReleaseNeutralTextFile(ModelToProject& state);

}  // namespace merivane
