// The state of one program: what both directions share, and the variables of each under their given
// names. Nothing lives at namespace scope, so that two programs can stand side by side.
//
//   QuietDesktop desktop;
//   Program program(desktop);
//   ModelToProject& state = program.modelToProject;
//   state.gMspProjId = 1;
//   OpenInterimDb(program.workspace, state.gMspConn, state.gOverwriteDb, "plan.mdb");
//   ReadNeutralText(state, "model.txt");   // into the interim tables of gMspConn
//   TranslateToProject(state, "plan.mpx"); // into its MSP_ tables, and into the file
//
// Numbers of elements, projects and files are 16 bits wide as in the files, 0 where there is none
// yet. Texts are Windows-1252; paths are UTF-8, except gDatabaseName, which enters texts.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/desktop.h"
#include "program/progress.h"
#include "runtime/text_files.h"
#include "runtime/value.h"
#include "store/ask.h"
#include "store/connection.h"

namespace merivane::neutraltext {
class ReaderListener;
}

namespace merivane::translator {
class TranslationListener;
}

namespace merivane::program {

using namespace store;
using namespace platform;

// What both directions use. The Program owns it and outlives both; a procedure gets the struct of
// the direction that it works on, and with it all that it may touch.
struct Direction {
  Desktop& desktop;
  TextFiles& files;
  Workspace& workspace;
  Progress& progress;
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

// Where the reader's lines come from when they are not simply those of its file.
class LineSource {
 public:
  virtual ~LineSource() = default;

  // The next line in the place of what `line` held. Error 62 behind the last one.
  virtual void Next(std::string& line) = 0;
  // The line of the file, from 1, that the last one comes from.
  virtual std::size_t FileLine() const = 0;
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
  bool takesOwnText = false;               // in the written form too, told by its head
  std::unique_ptr<LineSource> lineSource;  // of such a text; null: the file
  std::string gLine;
  FieldVariables fields;
  std::int16_t gScenarioNum = 0;
  std::int16_t gUseNum = 0;
  std::int16_t gJunctionNum = 0;
  std::string gJunctionId;
  Recordset rsActivityPool, rsObjectPool, rsFactPool, rsMisc, rsScenario, rsActivityInScenario,
      rsObjectInActivity, rsJunctions, rsFactsInJunction, rsLinks, rsOstn;

  neutraltext::ReaderListener* readerListener = nullptr;  // null: nobody listens

  // Translator
  translator::TranslationListener* translationListener = nullptr;  // null: nobody listens
  std::int16_t mpxFileNo = 0;
  std::int16_t linkUID = 0;
  std::int16_t currentScenarioNum = 0;
  std::int16_t stopJunctionNum = 0;  // outlives a translation
  std::string chosenName;            // outlives a translation
  std::array<std::string, kJunctionQueueBound + 1> junctionQueue;
  std::int16_t junctionQueueTop = 0;
};

// The greatest numbers that a project has given out: to occurrences, junctions and links, and to
// activities.
struct GreatestNumbers {
  std::int16_t use = 0;
  std::int16_t activity = 0;
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
  std::optional<GreatestNumbers> greatestNumbers;  // empty: those of the project's row hold
  std::vector<std::int16_t> gFsPredecessors;
  std::vector<std::int16_t> gNewPredecessors;

  // MPX reader
  std::int16_t mpxInFileNo = 0;
  std::int16_t mpxLayout = 0;
  std::int16_t defaultDurationUnits = 0;
};

// One program: what it shares and both directions. Dropping it closes all files and commits, on
// every path, the end by ProgramEnd among them. The desktop outlives it. One thread uses it.
class Program {
 public:
  explicit Program(Desktop& theDesktop) : desktop(theDesktop), progress(theDesktop) {
    workspace.work = &progress;
  }
  ~Program() { workspace.CommitAllQuietly(); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Desktop& desktop;
  TextFiles files;
  Workspace workspace;
  Progress progress;
  std::int32_t codePage = 0;
  ModelToProject modelToProject{Direction{desktop, files, workspace, progress, codePage}};
  ProjectToModel projectToModel{Direction{desktop, files, workspace, progress, codePage}};
};

}  // namespace merivane::program
