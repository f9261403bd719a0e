#include "model_content.h"

#include <array>
#include <span>
#include <utility>

#include "reconcile/plan_content.h"
#include "store/recordset.h"

namespace merivane::inspect {

using namespace reconcile;

namespace {

struct ContentColumn {
  const char* name;
  const char* word;
  FieldForm form = FieldForm::kText;
};

constexpr ContentColumn kGlossary = {"Glossary", "note"};
constexpr ContentColumn kFacts = {"Fact_List", "list of facts"};
constexpr ContentColumn kConstraints = {"Constraint_List", "list of constraints"};
constexpr ContentColumn kNotes = {"Note_List", "list of notes"};
constexpr ContentColumn kSources = {"Source_List", "list of sources"};
constexpr ContentColumn kProperties = {"Property_List", "list of properties"};

constexpr auto kOfProcess =
    std::to_array<ContentColumn>({kGlossary, kNotes, kSources, kProperties, kFacts, kConstraints});
constexpr auto kOfObject =
    std::to_array<ContentColumn>({{"Quantity", "quantity", FieldForm::kCount},
                                  {"Alias", "alias", FieldForm::kPhrase},
                                  {"Dunmar_Type", "type", FieldForm::kPhrase},
                                  {"Celvar_Type", "kind", FieldForm::kPhrase},
                                  kGlossary,
                                  kNotes,
                                  kSources,
                                  kProperties,
                                  kFacts,
                                  kConstraints});
constexpr auto kOfFact = std::to_array<ContentColumn>({kGlossary, kNotes, kSources, kProperties});
constexpr auto kOfScenario = std::to_array<ContentColumn>({{"Type", "type", FieldForm::kPhrase},
                                                           {"Purpose", "purpose"},
                                                           {"Viewpoint", "viewpoint"},
                                                           {"Context", "context"},
                                                           {"Description", "description"},
                                                           kFacts,
                                                           kConstraints,
                                                           kNotes,
                                                           kSources});
constexpr auto kOfUnit = std::to_array<ContentColumn>(
    {{"Duration", "duration", FieldForm::kDays}, kFacts, kConstraints});
constexpr auto kOfJunction =
    std::to_array<ContentColumn>({{"Cardinality", "cardinality", FieldForm::kPhrase},
                                  {"Type", "type", FieldForm::kPhrase},
                                  kGlossary,
                                  kFacts,
                                  kConstraints,
                                  kNotes,
                                  kProperties});

struct Table {
  ElementKind kind;
  const char* name;
  const char* number;
  const char* label;  // the column of its name
  const char* owner;  // null: it has none
  std::span<const ContentColumn> columns;
};

constexpr auto kTables = std::to_array<Table>(
    {{ElementKind::kProcess, "Activity_Pool", "Num", "Name", nullptr, kOfProcess},
     {ElementKind::kObject, "Object_Pool", "Num", "Name", nullptr, kOfObject},
     {ElementKind::kFact, "Fact_Pool", "Num", "Name", nullptr, kOfFact},
     {ElementKind::kScenario, "Scenario", "Num", "Name", "Parent_Num", kOfScenario},
     {ElementKind::kUnit, "Activity_in_Scenario", "Use_Num", "Name", "Scenario_Num", kOfUnit},
     {ElementKind::kJunction, "Junctions_in_Scenario", "Num", "ID", "Scenario_Num", kOfJunction}});

class ContentReader {
 public:
  ContentReader(Connection& connection, std::int32_t project)
      : connection_(connection), project_(std::to_string(project)) {}

  ModelContent Read() {
    for (const Table& table : kTables) ReadEntries(table);
    ForEach("Links_in_Scenario", [&](Recordset& row) {
      const auto origin = NumberIn(row.Field("Origin_Num"));
      const auto end = NumberIn(row.Field("Destination_Num"));
      const auto scenario = NumberIn(row.Field("Scenario_Num"));
      if (scenario && origin && end) model_.links.emplace(*scenario, *origin, *end);
    });
    ForEach("Object_in_Activity_in_Scenario", [&](Recordset& row) {
      const auto unit = NumberIn(row.Field("Activity_Num"));
      const auto object = NumberIn(row.Field("Object_Occ_Num"));
      if (!unit || !object) return;
      model_.uses[{*unit, *object}] = {Joined(row.Field("Object_Name")), Joined(row.Field("Qty")),
                                       Joined(row.Field("Labor_Rule"))};
    });
    return std::move(model_);
  }

 private:
  template <typename Take>
  void ForEach(const std::string& table, Take take) {
    Recordset rows;
    rows.OpenStatic("Select * from " + table + " where Msp_ProjID = " + project_, &connection_);
    for (; !rows.Eof(); rows.MoveNext()) take(rows);
  }

  void ReadEntries(const Table& table) {
    ForEach(table.name, [&](Recordset& row) {
      const auto number = NumberIn(row.Field(table.number));
      if (!number) return;
      ModelContent::Entry entry{*number, Joined(row.Field(table.label)), 0, {}};
      if (table.owner != nullptr) entry.owner = NumberIn(row.Field(table.owner)).value_or(0);
      for (const ContentColumn& column : table.columns) {
        entry.fields.push_back(
            {column.word, column.form, NoteText(Joined(row.Field(column.name)))});
      }
      model_.entries[table.kind].push_back(std::move(entry));
    });
  }

  Connection& connection_;
  std::string project_;
  ModelContent model_;
};

}  // namespace

ModelContent ReadModelContent(Connection& connection, std::int32_t project) {
  const ReadScope scope(&connection);
  return ContentReader(connection, project).Read();
}

}  // namespace merivane::inspect
