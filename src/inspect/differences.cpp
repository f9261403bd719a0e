#include "inspect/differences.h"

#include <memory>

#include "difference_words.h"
#include "inspect/finding.h"
#include "memory_model.h"
#include "model_content.h"
#include "mspdi/plan_writer.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "scratch_folder.h"

namespace merivane::inspect {

using namespace mspdi;
using namespace roundtrip;

namespace {

// What a merge would stop at is read all the same.
class Anything : public MergeListener {
  void OnLine(std::size_t /*number*/, std::string& /*line*/) override {}
  bool OnTask(MergeStep /*step*/, std::int32_t /*planId*/) override { return true; }
  void OnStop(const MergeStop& /*stop*/) override {}
};

class ComparedContent {
 public:
  ComparedContent(const ComparedFile& file, const std::string& templatePath, Desktop* shown)
      : file_(file),
        kind_(KindOfFile(file.path).value_or(FileKind::kText)),
        templatePath_(templatePath),
        shown_(shown) {}

  bool IsText() const { return kind_ == FileKind::kText; }

  bool HoldsModel() const {
    if (kind_ != FileKind::kDatabase) return IsText();
    Workspace workspace;
    try {
      return translator::HoldsModel(workspace, Stored());
    } catch (const RunTimeError& error) {
      if (error.Number() == kUnknownTable) return false;
      throw Failure(error.Description());
    }
  }

  ModelContent Model() const try {
    MemoryModel model(templatePath_, shown_);
    if (IsText()) {
      if (!model.Read(file_.path)) throw Failure("It can't be read: " + model.Failure());
    } else {
      model.Take(Stored());
    }
    return ReadModelContent(model.Database(), MemoryModel::kProject);
  } catch (const RunTimeError& error) {
    throw Failure(error.Description());
  }

  PlanContent Plan() const try {
    switch (kind_) {
      case FileKind::kText:
        return PlanOfText();
      case FileKind::kDatabase:
        return PlanOfDatabase();
      case FileKind::kMpx:
      case FileKind::kXml:
        break;
    }
    return PlanOfFile(file_.path, kind_);
  } catch (const RunTimeError& error) {
    throw Failure(error.Description());
  }

 private:
  translator::StoredModel Stored() const { return {file_.path, file_.project.value_or(0)}; }

  RunTimeError Failure(const std::string& reason) const {
    const std::string path = FromUtf8(file_.path);
    const bool isNamed = reason.find(path) != std::string::npos;
    return {kDatabaseError, isNamed ? reason : path + ": " + reason};
  }

  PlanContent PlanOfText() const {
    MemoryModel model(templatePath_, shown_);
    if (!model.Read(file_.path)) throw Failure("It can't be read: " + model.Failure());
    const bool isTranslated = model.Translate();
    if (!model.Question().empty()) {
      throw Failure("It gives no plan before a scenario is chosen: " + model.Question() +
                    " Translate it into a database, with --choose, and compare that.");
    }
    if (!isTranslated) throw Failure("It can't be translated: " + model.Failure());
    return PlanOfTables(model.Database(), MemoryModel::kProject);
  }

  PlanContent PlanOfDatabase() const {
    Workspace workspace;
    Connection connection(workspace, file_.path, OpenMode::kReadOnly);
    return PlanOfTables(connection, file_.project.value_or(0));
  }

  // By way of the planning XML, which has what another program would get.
  PlanContent PlanOfTables(Connection& connection, std::int32_t project) const {
    constexpr DateTime kAnyDay = {2000, 1, 3, 0};
    const ScratchFolder folder;
    const std::string xml = folder.Path("plan.xml");
    WritePlan(connection, project, kAnyDay, xml);
    return PlanOfFile(xml, FileKind::kXml);
  }

  PlanContent PlanOfFile(const std::string& path, FileKind kind) const {
    constexpr std::int16_t kProject = 1;
    QuietDesktop desktop;
    if (shown_ != nullptr) desktop.ShowProgressOn(*shown_);
    Program program(desktop);
    const program::Progress::Run run(program.progress);
    ProjectToModel& state = program.projectToModel;
    state.gInterimConn =
        std::make_unique<Connection>(program.workspace, templatePath_, OpenMode::kCopy);
    state.gInterimProjId = kProject;
    Anything anything;
    bool isRead = false;
    try {
      isRead = kind == FileKind::kMpx ? ReadMpx(state, path, &anything)
                                      : ReadXml(state, path, &anything);
    } catch (const ProgramEnd&) {
      // Its box has told why.
    }
    program.files.CloseAll();
    desktop.ThrowMachineFault();
    if (isRead) return PlanThatCameIn(*state.gInterimConn, kProject);
    throw Failure("It can't be read: " +
                  (desktop.boxes.empty() ? "" : OneLine(desktop.boxes.back().text)));
  }

  const ComparedFile& file_;
  FileKind kind_;
  const std::string& templatePath_;
  Desktop* shown_;
};

}  // namespace

std::optional<FileKind> KindOfFile(const std::string& path) {
  const std::string ending = UpperCase(Right(path, 4));
  if (ending == ".TXT") return FileKind::kText;
  if (ending == ".MDB" || ending == ".MPD") return FileKind::kDatabase;
  if (ending == ".MPX") return FileKind::kMpx;
  if (ending == ".XML") return FileKind::kXml;
  return std::nullopt;
}

Differences CompareFiles(const ComparedFile& before, const ComparedFile& after,
                         const std::string& templatePath, Desktop* shown) {
  const ComparedContent first(before, templatePath, shown);
  const ComparedContent second(after, templatePath, shown);
  if ((first.IsText() || second.IsText()) && first.HoldsModel() && second.HoldsModel()) {
    return {true, DifferencesBetween(first.Model(), second.Model())};
  }
  return {false, DifferencesBetween(first.Plan(), second.Plan())};
}

}  // namespace merivane::inspect
