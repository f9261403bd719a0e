#include <utility>

#include "program/model_words.h"
#include "reader_lines.h"
#include "reader_records.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

using F = FieldVariables;

constexpr RecordColumn kHeadColumns[] = {{"Num", &F::Num},
                                         {"Name", &F::Name},
                                         {"Creator", &F::Creator},
                                         {"Date_Created", &F::Date_Created},
                                         {"Last_Modified", &F::Last_Modified},
                                         {"Glossary", &F::Glossary},
                                         {"Note_List", &F::Note_List},
                                         {"Source_List", &F::Source_List}};

constexpr RecordColumn kProcessColumns[] = {{"Property_List", &F::Property_List},
                                            {"ID", &F::ID},
                                            {"Ref", &F::Ref},
                                            {"Object_Occ_List", &F::Object_Occ_List},
                                            {"Fact_List", &F::Fact_List},
                                            {"Constraint_List", &F::Constraint_List}};

constexpr RecordColumn kObjectColumns[] = {
    {"Quantity", &F::Quantity},           {"Alias", &F::Alias},
    {"Property_List", &F::Property_List}, {"Dunmar_Type", &F::Dunmar_Type},
    {"Celvar_Type", &F::Celvar_Type},     {"Object_Occ_List", &F::Object_Occ_List},
    {"Fact_List", &F::Fact_List},         {"Constraint_List", &F::Constraint_List}};

constexpr RecordColumn kFactColumns[] = {{"Property_List", &F::Property_List}};

void ReadElaboration(ModelToProject& state) {
  KeepBlock(state, state.fields.Object_Occ_List, "    Object Occurrence List");
  KeepBlock(state, state.fields.Fact_List, "    Fact List");
  KeepBlock(state, state.fields.Constraint_List, "    Constraint List");
}

void ReadRestOfProcess(ModelToProject& state) {
  KeepBlock(state, state.fields.Property_List, "  Property List");
  KeepInteger(state, state.fields.ID, NextNumberField(state, 3));
  KeepNextField(state, state.fields.Ref, 3, 250);
  ReadElaboration(state);
}

// Quantity and alias stand behind a double blank among the object's properties.
void ReadQuantityOrAlias(ModelToProject& state) {
  constexpr std::size_t kLength = 10;
  const std::string_view line = state.gLine;
  const std::size_t blanks = Find(line, "  ");
  if (blanks == 0) return;
  if (line.substr(0, blanks - 1) == "Quantity:") {
    state.fields.Quantity = Number(state, Field(state, blanks, kLength));
  } else if (Holds(line, "Alias:")) {
    state.fields.Alias = Field(state, blanks, kLength);
  }
}

void ReadRestOfObject(ModelToProject& state) {
  constexpr std::string_view kProperties = "  Property List";
  SkipTo(state, kProperties);
  NextLine(state);
  std::string properties;
  const std::string end = EndOf(kProperties);
  for (Search(state, end); state.gLine != end; NextLine(state)) {
    ReadQuantityOrAlias(state);
    properties.append(state.gLine).append(kCrLf);
  }
  Keep(state.fields.Property_List, std::move(properties));
  KeepNextField(state, state.fields.Dunmar_Type, 3, 25);
  KeepNextField(state, state.fields.Celvar_Type, 3, 25);
  ReadElaboration(state);
}

void ReadRestOfFact(ModelToProject& state) {
  state.fields.Property_List = ReadBlock(state, "  Property List");
}

// What sets the pools apart.
struct Pool {
  std::string_view opening;
  ElementKind element;
  Record record;
  void (*validateName)(ModelToProject&, const std::string&) = nullptr;  // null: any name
  void (*readRest)(ModelToProject&);                                    // behind the source list
  int linesBehind;              // behind a record, up to the one in front of the next
  bool takesEmpty = false;      // empty text is taken too, instead of leaving the earlier value
  bool addedBeforeEnd = false;  // the row is there before the lines behind the record are read
};

constexpr Pool kProcessPool = {.opening = "Process Pool",
                               .element = ElementKind::kProcess,
                               .record = {.table = "Activity_Pool",
                                          .rows = &ModelToProject::rsActivityPool,
                                          .columns = kHeadColumns,
                                          .moreColumns = kProcessColumns,
                                          .key = &F::Num},
                               .validateName = ValidateUobName,
                               .readRest = ReadRestOfProcess,
                               .linesBehind = 3,
                               .addedBeforeEnd = true};

constexpr Pool kObjectPool = {.opening = "Object Pool",
                              .element = ElementKind::kObject,
                              .record = {.table = "Object_Pool",
                                         .rows = &ModelToProject::rsObjectPool,
                                         .columns = kHeadColumns,
                                         .moreColumns = kObjectColumns,
                                         .key = &F::Num},
                              .validateName = ValidateObjectName,
                              .readRest = ReadRestOfObject,
                              .linesBehind = 3};

constexpr Pool kFactPool = {.opening = "Fact Pool",
                            .element = ElementKind::kFact,
                            .record = {.table = "Fact_Pool",
                                       .rows = &ModelToProject::rsFactPool,
                                       .columns = kHeadColumns,
                                       .moreColumns = kFactColumns,
                                       .key = &F::Num},
                            .readRest = ReadRestOfFact,
                            .linesBehind = 2,
                            .takesEmpty = true};

void ReadHead(ModelToProject& state, const Pool& pool) {
  F& f = state.fields;
  const auto take = [&](FieldVariable& variable, std::string text) {
    if (pool.takesEmpty || !text.empty()) variable = std::move(text);
  };
  f.Num = Integer(state, NumberUse::kOwn, NumberField(state, 1));
  std::string name = NextField(state, 3, 250);
  if (pool.validateName != nullptr) pool.validateName(state, name);
  take(f.Name, std::move(name));
  take(f.Creator, NextField(state, 3, 100));
  take(f.Date_Created, NextField(state, 3, 25));
  take(f.Last_Modified, NextField(state, 3, 25));
  std::string glossary = ReadBlock(state, "  Glossary");
  if (pool.takesEmpty || glossary != kCrLf) take(f.Glossary, std::move(glossary));
  take(f.Note_List, ReadBlock(state, "  Note List"));
  take(f.Source_List, ReadBlock(state, "  Source List"));
}

void ReadPool(ModelToProject& state, const Pool& pool) {
  const std::string end = EndOf(pool.opening);
  SkipTo(state, pool.opening);
  NextLine(state);
  while (state.gLine != end) {
    BeginRecord(state, pool.element, end);
    ReadHead(state, pool);
    pool.readRest(state);
    if (pool.addedBeforeEnd) AddRecord(state, pool.record);
    LeaveRecord(state, pool.linesBehind, end);
    if (!pool.addedBeforeEnd) AddRecord(state, pool.record);
  }
}

}  // namespace

void ReadProcessPool(ModelToProject& state) { ReadPool(state, kProcessPool); }

void ReadObjectPool(ModelToProject& state) {
  // Proves that the plan's resources can be appended to, before any object is read.
  Recordset resources = Ask(state.gMspConn.get(), "Select * from MSP_RESOURCES");
  resources.MoveLast();
  ReadPool(state, kObjectPool);
  resources.Close();
}

void ReadFactPool(ModelToProject& state) { ReadPool(state, kFactPool); }

}  // namespace merivane::neutraltext
