#include "pictures/scratch_model.h"

#include <optional>
#include <span>
#include <string_view>

#include "neutraltext/modGlobal.h"
#include "runtime/file_names.h"
#include "store/interim_db.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::pictures {

using namespace runtime;
using namespace translator;

namespace {

// Where in the text the reader is.
class ReaderPosition : public ReaderListener {
 public:
  std::string Sentence() const {
    return "Read in part: the text breaks off in line " + std::to_string(line_) + ", in " +
           (scenarios_ == 0 ? "front of its scenarios."
                            : "scenario " + std::to_string(scenarios_) + " of the text.");
  }

 private:
  void OnFileLine(std::size_t fileLine) override { fileLine_ = fileLine; }
  void OnLine(const std::string& /*line*/) override {
    line_ = fileLine_ > 0 ? fileLine_ : line_ + 1;
  }
  void OnSearch(std::string_view /*keyword*/) override {}
  void OnRecord(ElementKind element, std::string_view /*listEnd*/) override {
    if (element == ElementKind::kScenario) ++scenarios_;
  }
  void OnField(std::size_t /*start*/, std::size_t /*length*/) override {}
  void OnNumber(NumberUse /*use*/, const std::string& /*text*/, double /*value*/) override {}
  std::optional<std::int16_t> OnBadNumber(NumberUse /*use*/, const std::string& /*text*/,
                                          const RunTimeError& /*error*/) override {
    return std::nullopt;
  }
  bool OnBadLine(const RunTimeError& /*error*/) override { return false; }
  bool OnRefusedName(std::string_view /*rule*/) override { return false; }
  void OnCut(std::size_t /*length*/) override {}
  bool OnRow(RowChange /*change*/, std::string_view /*table*/,
             std::span<const Cell> /*cells*/) override {
    return true;
  }

  std::size_t line_ = 0;
  std::size_t fileLine_ = 0;
  std::size_t scenarios_ = 0;
};

}  // namespace

ScratchModel::ScratchModel(Program& program)
    : state_(program.modelToProject), database_(TemporaryName()) {
  program.workspace.CopyDatabase(program.desktop.TemplatePath(), database_.Path());
  state_.gOverwriteDb = true;
  state_.gMspProjId = kProject;
  OpenInterimDb(program.workspace, state_.gMspConn, state_.gOverwriteDb, database_.Path());
  state_.takesOwnText = true;
}

ScratchModel::~ScratchModel() {
  ReleaseNeutralTextFile(state_);
  state_.takesOwnText = false;
  state_.gMspConn.reset();
}

void ScratchModel::Read(const std::string& textFile) {
  ReaderPosition place;
  state_.readerListener = &place;
  breaksOff_ = "The model was not read to its end.";
  try {
    ReadNeutralText(state_, textFile);
  } catch (...) {
    state_.readerListener = nullptr;
    breaksOff_ = place.Sentence();
    throw;
  }
  state_.readerListener = nullptr;
  // A reading that fails leaves the file open.
  breaksOff_ = state_.files.IsOpen(state_.gTextFile) ? place.Sentence() : "";
}

void ScratchModel::Translate() { TranslateToProject(state_, ""); }

}  // namespace merivane::pictures
