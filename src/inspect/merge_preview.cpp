#include "inspect/merge_preview.h"

#include <optional>

#include "box_text.h"
#include "mpx/mpx_fields.h"
#include "platform/quiet_desktop.h"
#include "roundtrip/merge_listener.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "scratch_folder.h"
#include "store/recordset.h"

namespace merivane::inspect {

using namespace roundtrip;

namespace {

// The line of the file, or the task, that the merge had come to when it stopped.
class Progress : public MergeListener {
 public:
  void OnLine(const std::string& line) override {
    line_ = line;
    ++lineNumber_;
  }
  void OnTask(MergeStep step, const Value& planId) override {
    step_ = step;
    task_ = ToInt32(planId);
  }
  void OnRefusedName() override { nameRefused_ = true; }
  bool NameRefused() const { return nameRefused_; }
  MergeStep Step() const { return step_; }
  std::optional<std::int32_t> Task() const { return task_; }
  const std::string& Line() const { return line_; }
  std::size_t LineNumber() const { return lineNumber_; }

 private:
  std::string line_;
  std::size_t lineNumber_ = 1;
  bool nameRefused_ = false;
  MergeStep step_ = MergeStep::kTask;
  std::optional<std::int32_t> task_;
};

struct PlanTask {
  std::string name;
  std::string predecessors;
};

PlanTask TaskOf(Connection& connection, std::int32_t task, std::int32_t project) {
  Recordset rows;
  rows.OpenStatic("Select * from ProjectAct where PID = " + std::to_string(task) +
                      " and Msp_ProjID = " + std::to_string(project),
                  &connection);
  if (rows.Eof()) return {};
  return {Joined(rows.Field("Name")), Joined(rows.Field("Predecessor"))};
}

struct Explanation {
  std::string sentence;
  std::string advice;
};

// A box as one sentence of a line.
std::string SentenceOf(const std::string& box) {
  const std::string text = OneLine(box);
  return text.empty() || text.back() == '.' ? text : text + '.';
}

Explanation ExplainTask(const Message& box) {
  if (box.error == kTypeMismatch) {
    return {"The task was moved under another summary task, which stops the merge.",
            "Move it back to where it was, or build a new model by overwriting."};
  }
  if (box.error == kNoCurrentRecord) {
    return {"The task is indented below no summary task, which stops the merge.",
            "Put it back on its outline level, or build a new model by overwriting."};
  }
  return {"The task can't be taken over: " + SentenceOf(box.text),
          "Mend the task in the plan, or build a new model by overwriting."};
}

Explanation ExplainLinks(const PlanTask& task, const Message& box) {
  const bool alone = !Holds(task.predecessors, ",");
  if (alone && HoldsNoCase(task.predecessors, "SS")) {
    return {"Its only predecessor '" + task.predecessors +
                "' is of the kind start-to-start, which stops the merge.",
            "Give the task a second predecessor, or take this one out."};
  }
  if (alone && box.error == kNoCurrentRecord) {
    return {"Its new predecessor '" + task.predecessors +
                "' stops the merge, since the task's only link in the model comes straight from a "
                "unit.",
            "Take the predecessor out and draw the link in the model, or keep the old predecessor "
            "beside the new one."};
  }
  if (box.error == kOutOfStackSpace) {
    return {"The junctions in front of it run in a circle, which stops the merge.",
            "Take the circle out of the model, or the predecessors '" + task.predecessors +
                "' out of the plan."};
  }
  return {"Its predecessors '" + task.predecessors + "' stop the merge: " + SentenceOf(box.text),
          "Put the predecessors back as they were, or build a new model by overwriting."};
}

// A resource or a task of an MPX file, by the number that its line begins with.
ElementName ElementIn(const std::string& line) {
  constexpr std::int16_t kResource = 50;
  constexpr std::int16_t kTask = 70;
  const std::int16_t record = mpx::RecordNumber(line);
  if (record != kResource && record != kTask) return {"plan", std::nullopt, ""};
  ElementName element{record == kTask ? "task" : "resource", std::nullopt, ""};
  const mpx::FoundField field = mpx::GetField(line, 2);
  const auto* number = std::get_if<std::string>(&field);
  if (number != nullptr && IsNumericText(*number)) element.number = ToInt32(*number);
  return element;
}

Explanation ExplainLine(const ElementName& element, const Progress& progress, const Message& box) {
  constexpr const char* kChange = "Change it in the plan, and save the plan anew.";
  if (element.kind == "resource" && Holds(progress.Line(), "'")) {
    return {"Its name holds an apostrophe, which stops the merge.", kChange};
  }
  if (progress.NameRefused()) return {SentenceOf(box.text), kChange};
  return {"A value in this line can't be taken over: " + SentenceOf(box.text),
          "Look at the numbers in it; mend the plan, and save it anew."};
}

// While the plan was read. Planning XML tells its rows itself.
MergeChange StopInReading(const Progress& progress, const Message& box) {
  if (progress.Line().empty()) {
    return {ChangeKind::kStop,
            {"plan", std::nullopt, ""},
            SentenceOf(box.text),
            "Mend the plan, and try again."};
  }
  const ElementName element = ElementIn(progress.Line());
  const Explanation why = ExplainLine(element, progress, box);
  return {ChangeKind::kStop, element,
          "In line " + std::to_string(progress.LineNumber()) + " of the file: " + why.sentence,
          why.advice, element.number};
}

MergeChange StopOf(const Progress& progress, Connection& connection, std::int32_t project,
                   const Message& box) {
  if (!progress.Task() || !connection.IsOpen()) {
    return StopInReading(progress, box);
  }
  const PlanTask task = TaskOf(connection, *progress.Task(), project);
  const Explanation why =
      progress.Step() == MergeStep::kTask ? ExplainTask(box) : ExplainLinks(task, box);
  return {ChangeKind::kStop,
          {"task", progress.Task(), task.name},
          why.sentence,
          why.advice,
          progress.Task()};
}

void OpenWork(ProjectToModel& state, const std::string& database, std::int32_t project,
              const std::string& text) {
  state.gInterimConn = std::make_unique<Connection>(state.workspace);
  state.gInterimConn->Open(ConnectionText(database));
  state.gInterimProjId = project;
  state.gRoundTripMerge = true;
  state.gOutFile = state.files.FreeFile();
  state.files.OpenForOutput(state.gOutFile, text);
}

bool Merge(ProjectToModel& state, const std::string& planPath, Progress& progress) {
  constexpr std::int16_t kMerge = -1;
  try {
    if (HoldsNoCase(Right(planPath, 4), ".xml")) {
      return TranslateXml(state, planPath, kMerge, &progress);
    }
    return TranslateMpx(state, planPath, "", kMerge, &progress);
  } catch (const ProgramEnd&) {
    return false;
  }
}

}  // namespace

MergePreview PreviewMerge(const std::string& planPath, const std::string& interimPath,
                          std::int32_t project, Desktop* shown) {
  const ScratchFolder folder;
  const std::string database = folder.Path("interim.mdb");
  MergePreview preview;
  QuietDesktop desktop;
  if (shown != nullptr) desktop.ShowProgressOn(*shown);
  Program program(desktop);
  const program::Progress::Run run(program.progress);
  program.workspace.CopyDatabase(interimPath, database);
  ProjectToModel& state = program.projectToModel;
  OpenWork(state, database, project, folder.Path("model.txt"));
  const ModelSnapshot before = ReadSnapshot(*state.gInterimConn, project);
  Progress progress;
  preview.merged = Merge(state, planPath, progress);
  if (preview.merged) {
    preview.changes = ChangesBetween(before, ReadSnapshot(*state.gProjectConn, project));
  } else {
    preview.changes.push_back(StopOf(progress, *state.gInterimConn, project,
                                     desktop.boxes.empty() ? Message{} : desktop.boxes.back()));
  }
  program.files.CloseAll();
  preview.boxes = std::move(desktop.boxes);
  return preview;
}

}  // namespace merivane::inspect
