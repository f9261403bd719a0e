#include "pictures/scratch_model.h"

#include <filesystem>

#include "runtime/file_names.h"
#include "store/interim_db.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::pictures {

using namespace runtime;
using namespace translator;

namespace {

std::string TemporaryDatabase() {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) throw RunTimeError(kPathNotFound);
  return TemporaryNameIn(folder);
}

void Remove(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove(PathOf(path), ignored);
}

}  // namespace

ScratchModel::ScratchModel(Program& program)
    : state_(program.modelToProject), path_(TemporaryDatabase()) {
  program.workspace.CopyDatabase(program.desktop.TemplatePath(), path_);
  try {
    state_.takesOwnText = true;
    state_.gOverwriteDb = true;
    state_.gMspProjId = kProject;
    OpenInterimDb(program.workspace, state_.gMspConn, true, path_);
  } catch (const RunTimeError&) {
    Remove(path_);
    throw;
  }
}

ScratchModel::~ScratchModel() {
  ReleaseNeutralTextFile(state_);
  state_.takesOwnText = false;
  state_.gMspConn.reset();
  Remove(path_);
}

void ScratchModel::Read(const std::string& textFile) { ReadNeutralText(state_, textFile); }

void ScratchModel::Translate() { TranslateToProject(state_, ""); }

}  // namespace merivane::pictures
