#include <string_view>

#include "merge_statements.h"
#include "merge_steps.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

namespace {

constexpr std::string_view kIntoJunction = "Destination_num";
constexpr std::string_view kOutOfJunction = "Origin_num";

void OpenJunctions(ProjectToModel& state, Recordset& junctions) {
  junctions.OpenDynamic("Select * from Junctions_in_Scenario" + WhereMspProjId(state),
                        state.gInterimConn.get());
}

void OpenLinks(ProjectToModel& state, std::string_view end, const Value& junction,
               Recordset& links) {
  links.OpenDynamic("Select * from Links_in_Scenario Where " + std::string(end) + " = " +
                        Joined(junction) + AndMspProjId(state),
                    state.gInterimConn.get());
}

bool HasLink(ProjectToModel& state, std::string_view end, const Value& junction) {
  Recordset links;
  OpenLinks(state, end, junction, links);
  return !links.Eof();
}

// Leaves `links` on the only link; false where there is none or more than one.
bool OpenOnlyLink(ProjectToModel& state, std::string_view end, const Value& junction,
                  Recordset& links) {
  OpenLinks(state, end, junction, links);
  if (links.Eof()) return false;
  links.MoveNext();
  if (!links.Eof()) return false;
  links.MoveFirst();
  return true;
}

void Collapse(ProjectToModel& state, Recordset& junctions) {
  const Value number = junctions.Field("Num");
  Recordset incoming;
  Recordset outgoing;
  if (!OpenOnlyLink(state, kIntoJunction, number, incoming)) return;
  if (!OpenOnlyLink(state, kOutOfJunction, number, outgoing)) return;
  incoming.SetField("Destination_Num", outgoing.Field("destination_num"));
  outgoing.Delete();
  junctions.Delete();
  incoming.Update();
}

}  // namespace

void RemoveDanglingJunctions(ProjectToModel& state) {
  Recordset junctions;
  for (OpenJunctions(state, junctions); !junctions.Eof(); junctions.MoveNext()) {
    const Value number = junctions.Field("Num");
    const bool dangling =
        !HasLink(state, kOutOfJunction, number) || !HasLink(state, kIntoJunction, number);
    if (dangling && state.gRebuildModel == 1) junctions.Delete();
  }
}

void CollapseJunctions(ProjectToModel& state) {
  Recordset junctions;
  for (OpenJunctions(state, junctions); !junctions.Eof(); junctions.MoveNext()) {
    Collapse(state, junctions);
  }
}

}  // namespace merivane::roundtrip
