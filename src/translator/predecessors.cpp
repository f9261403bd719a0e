#include <optional>

#include "runtime/text.h"
#include "translation_steps.h"

namespace merivane::translator {

namespace {

constexpr int kFinishToFinish = 0;
constexpr int kFinishToStart = 1;
constexpr int kStartToStart = 3;

// Without a type the row takes the table's default.
void AddLink(Pass& pass, Recordset& links, const Value& predUID, const Value& succUID,
             std::optional<int> type) {
  ModelToProject& state = pass.state;
  state.linkUID = AddInt16(state.linkUID, 1);
  const std::int32_t successor = ToInt32(succUID);  // the text of a relation may name no task
  if (!pass.IsStored(PlanRow::kLink)) return;
  links.AddNew();
  links.SetField("PROJ_ID", state.gMspProjId);
  links.SetField("LINK_UID", state.linkUID);
  links.SetField("LINK_PRED_UID", predUID);
  links.SetField("LINK_SUCC_UID", successor);
  if (type) links.SetField("LINK_TYPE", *type);
  links.SetField("EXT_EDIT_REF_DATA", 1);
  links.Update();
}

// The mark stays, so one write in a pass serves all links.
void MarkProjectEdited(Pass& pass) {
  if (pass.projectMarked) return;
  Recordset project = Ask(pass.state.gMspConn.get(),
                          "select * from MSP_PROJECTS Where PROJ_ID = ", pass.state.gMspProjId);
  project.SetField("PROJ_EXT_EDITED", -1);
  project.Update();
  pass.projectMarked = true;
}

// The predecessor item of a UOB in the plan, with its MSP_LINKS row; nothing for any other.
std::string LinkFromActivity(Pass& pass, const Value& origin, const Value& succUID,
                             std::optional<int> type) {
  Recordset activity =
      Ask(pass.state.gMspConn.get(),
          "Select * from Activity_in_Scenario where Msp_ProjID = ", pass.state.gMspProjId,
          " and send_to_project = 1 and use_num = ", origin);
  if (activity.Eof()) return {};
  const Value projectId = activity.Field("Project_ID");
  MarkProjectEdited(pass);
  Recordset& links = pass.Opened(pass.links, "select * from MSP_LINKS");
  AddLink(pass, links, projectId, succUID, type);
  return Joined(projectId) + ",";
}

bool JunctionExists(ModelToProject& state, const Value& name) {
  return !Ask(state.gMspConn.get(),
              "select * from Junctions_in_Scenario where Msp_ProjID = ", state.gMspProjId,
              " and ID = '", name, "'")
              .Eof();
}

std::string LinkFromOrigin(Pass& pass, Recordset& link, const Value& succUID) {
  const std::string type = Joined(link.Field("Origin_Type"));
  if (type == kProcessOccurrence) {
    return LinkFromActivity(pass, link.Field("Origin_Num"), succUID, kFinishToStart);
  }
  if (type != kJunction) return {};
  const Value name = link.Field("Origin_Name");
  if (!JunctionExists(pass.state, name)) return {};
  StartJunctionQueue(pass.state, Joined(name));
  return CollectJunctionPredecessors(pass, succUID);
}

// In MSP_LINKS the task comes before the one that the relation names, while in the file the item
// stands among the task's own predecessors.
std::string LinkRelations(Pass& pass, const Value& relations, const Value& projectId,
                          std::string_view suffix, int type) {
  if (relations.IsNull()) return {};
  const std::string text = Joined(relations);
  const int items = CountCommas(text) + 1;
  Recordset& links = pass.Opened(pass.links, "select * from MSP_LINKS");
  std::size_t start = 1;
  for (int item = 0; item < items; ++item) {
    const std::size_t found = Find(text, suffix, start);
    const auto length = static_cast<std::ptrdiff_t>(found) - static_cast<std::ptrdiff_t>(start);
    AddLink(pass, links, projectId, Mid(text, static_cast<std::ptrdiff_t>(start), length), type);
    start = found + 3;
  }
  return text + ",";
}

}  // namespace

std::string WriteLinksOfTask(Pass& pass, Recordset& task) {
  const Value projectId = task.Field("Project_ID");
  std::string predecessors;
  Recordset links = LinksTo(pass.state, task.Field("Use_Num"));
  for (; !links.Eof(); links.MoveNext()) predecessors += LinkFromOrigin(pass, links, projectId);
  links.Close();
  predecessors += LinkRelations(pass, task.Field("SSRels"), projectId, "SS", kStartToStart);
  predecessors += LinkRelations(pass, task.Field("FFRels"), projectId, "FF", kFinishToFinish);
  return predecessors;
}

std::string CollectJunctionPredecessors(Pass& pass, const Value& succUID) {
  ModelToProject& state = pass.state;
  std::string predecessors;
  for (std::size_t i = 0; i <= static_cast<std::size_t>(state.junctionQueueTop); ++i) {
    Recordset links = Ask(state.gMspConn.get(),
                          "Select * from Links_in_Scenario where Msp_ProjID = ", state.gMspProjId,
                          " and Destination_Name = '", state.junctionQueue[i], "'");
    for (; !links.Eof(); links.MoveNext()) {
      const std::string type = Joined(links.Field("Origin_Type"));
      if (type == kProcessOccurrence) {
        predecessors += LinkFromActivity(pass, links.Field("Origin_Num"), succUID, std::nullopt);
      } else if (type == kJunction) {
        const Value name = links.Field("Origin_Name");
        if (JunctionExists(state, name)) QueueJunction(state, Joined(name));
      }
    }
  }
  return predecessors;
}

std::int16_t CountCommas(const std::string& text) {
  std::int16_t count = 0;
  for (std::size_t comma = Find(text, ","); comma > 1; comma = Find(text, ",", comma + 1)) {
    count = AddInt16(count, 1);
  }
  return count;
}

}  // namespace merivane::translator
