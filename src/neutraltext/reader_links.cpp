#include "reader_lines.h"
#include "reader_records.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

using F = FieldVariables;

constexpr RecordColumn kLinkColumns[] = {{"Num", &F::Num},
                                         {"Scenario_Num", &ModelToProject::gScenarioNum},
                                         {"Origin_Num", &F::Origin_Num},
                                         {"Origin_Type", &F::Origin_Type},
                                         {"Origin_Name", &F::Origin_Name},
                                         {"Destination_Num", &F::Destination_Num},
                                         {"Destination_Type", &F::Destination_Type},
                                         {"Destination_Name", &F::Destination_Name},
                                         {"ID", &F::ID},
                                         {"Type", &F::Type},
                                         {"Glossary", &F::Glossary},
                                         {"Object_Occ_List", &F::Object_Occ_List},
                                         {"Fact_List", &F::Fact_List},
                                         {"Constraint_List", &F::Constraint_List},
                                         {"Property_List", &F::Property_List}};
constexpr Record kLink = {.table = "Links_in_Scenario",
                          .rows = &ModelToProject::rsLinks,
                          .columns = kLinkColumns,
                          .key = &F::Num};

struct LinkEnd {
  FieldVariable& number;
  FieldVariable& type;
  FieldVariable& name;
};

// "#", the number, two blanks, then "(", the type, ",", a blank, the name, ")". An end that lacks
// one of the marks is error 5.
void ReadLinkEnd(const std::string& end, const LinkEnd& fields) {
  const auto position = [&](std::string_view mark) {
    return static_cast<std::ptrdiff_t>(Find(end, mark));
  };
  const std::ptrdiff_t open = position("(");
  const std::ptrdiff_t comma = position(",");
  const std::ptrdiff_t close = position(")");
  Keep(fields.number, Mid(end, 2, position("  ") - 2));
  Keep(fields.type, Mid(end, open + 1, comma - open - 1));
  Keep(fields.name, Mid(end, comma + 2, close - comma - 2));
}

void ReadLinkHead(ModelToProject& state, std::string_view listEnd) {
  BeginRecord(state, ElementKind::kLink, listEnd);
  FieldVariables& f = state.fields;
  f.Num = Integer(state, NumberUse::kOwn, NumberField(state, 3));
  for (const LinkEnd& end : {LinkEnd{f.Origin_Num, f.Origin_Type, f.Origin_Name},
                             LinkEnd{f.Destination_Num, f.Destination_Type, f.Destination_Name}}) {
    const std::string text = NextField(state, 4, 250);
    TakeApart(state, [&] { ReadLinkEnd(text, end); });
  }
  KeepInteger(state, f.ID, NextField(state, 5, 10));
  KeepNextField(state, f.Type, 5, 25);
}

void ReadLinkBlocks(ModelToProject& state) {
  FieldVariables& f = state.fields;
  KeepBlock(state, f.Glossary, "    Glossary");
  KeepBlock(state, f.Object_Occ_List, "      Object Occurrence List");
  KeepBlock(state, f.Fact_List, "      Fact List");
  KeepBlock(state, f.Constraint_List, "      Constraint List");
  NextLines(state, 3);
  if (HoldsNoCase(state.gLine, "Property List")) {
    NextLine(state);
    Keep(f.Property_List, CollectTo(state, "  End  Property List"));
    NextLines(state, 2);
  }
}

}  // namespace

void ReadLinks(ModelToProject& state) {
  constexpr std::string_view kEnd = "  End  Link List";
  SkipTo(state, "  Link List");
  NextLine(state);
  while (state.gLine != kEnd) {
    ReadLinkHead(state, kEnd);
    ReadLinkBlocks(state);
    AddRecord(state, kLink);
  }
}

}  // namespace merivane::neutraltext
