// Models to plans and back, through databases and files of their own.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "database_fixture.h"
#include "mspdi/plan_writer.h"
#include "neutraltext/modGlobal.h"
#include "neutraltext/modProjectToIDEF3.h"
#include "random_model.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "translator/modIDEF3ToProject.h"
#include "translator/multi.h"

namespace merivane::test {

using namespace mspdi;
using namespace neutraltext;
using namespace roundtrip;
using namespace translator;

class RoundFixture : public DatabaseFixture {
 protected:
  RoundFixture() {
    desktop.onModalForm = [](ModalForm& form) { dynamic_cast<multi&>(form).Choose(0); };
  }

  ModelToProject& State() { return program->modelToProject; }
  std::string Numbered(const std::string& end) {
    return folder.Path(std::to_string(++file_) + end);
  }

  // A fresh program with a fresh database open.
  void Begin() {
    program = std::make_unique<Program>(desktop);
    databasePath = Numbered(".mdb");
    std::filesystem::copy_file(TemplateDatabase(), databasePath);
    OpenForModel();
    State().takesOwnText = takesOwnText;
    State().gDatabaseName = "plan.mdb";
  }

  // The database of a model that was translated.
  void Translate(const std::string& model, const std::string& mpx = "") {
    Begin();
    ReadNeutralText(State(), model);
    TranslateToProject(State(), mpx);
    State().gMspConn.reset();
  }

  // A fresh database of the model that stands in this one.
  void TranslateAgain(const std::string& mpx = "") {
    const StoredModel stored{databasePath, 1};
    EXPECT_TRUE(HoldsModel(program->workspace, stored));
    Begin();
    TakeStoredModel(State(), stored);
    TranslateToProject(State(), mpx);
    TakeStartDate(State(), stored);
    State().gMspConn.reset();
    EXPECT_TRUE(desktop.boxes.empty());
  }

  std::string WriteText() {
    ProjectToModel& state = program->projectToModel;
    state.gProjectConn = Connect(OpenMode::kReadOnly);
    state.gInterimProjId = 1;
    std::string text = OpenOutput(state);
    EXPECT_TRUE(GenerateTextFromProject(state));
    return text;
  }
  std::string OpenOutput(ProjectToModel& state) {
    std::string text = Numbered(".txt");
    state.gOutFile = program->files.FreeFile();
    program->files.OpenForOutput(state.gOutFile, text);
    return text;
  }

  // The plan of the database as XML.
  std::string WritePlan() {
    const std::string plan = Numbered(".xml");
    mspdi::WritePlan(*Connect(OpenMode::kReadOnly), 1, desktop.today, plan);
    return ReadFile(plan);
  }

  // Merges the plan into the database, or builds a model from it. The text; nothing where the
  // merge stops.
  std::optional<std::string> BringBack(const std::string& plan, std::int16_t mergeFlag) {
    ProjectToModel& state = program->projectToModel;
    state.gInterimConn = Connect();
    state.gInterimProjId = 1;
    const std::string text = OpenOutput(state);
    const bool merged = TranslateXml(state, folder.Write("plan.xml", plan), mergeFlag);
    program = std::make_unique<Program>(desktop);
    desktop.boxes.clear();
    return merged ? std::optional(text) : std::nullopt;
  }

  bool takesOwnText = false;

 private:
  int file_ = 0;
};

// Of the environment variable MERIVANE_MODELS, where it is set.
inline std::uint32_t ModelsOfAGroup(std::uint32_t inTheSuite) {
  const char* models = std::getenv("MERIVANE_MODELS");
  return models == nullptr ? inTheSuite : static_cast<std::uint32_t>(std::atoi(models));
}

// Groups of seeds, which run beside each other.
template <typename Fixture>
class OfRandomModels : public Fixture, public testing::WithParamInterface<std::uint32_t> {
 protected:
  template <typename Round>
  void ForSeeds(std::uint32_t count, Round round) {
    const std::uint32_t first = this->GetParam() * count;
    for (std::uint32_t seed = first; seed < first + count; ++seed) {
      SCOPED_TRACE("seed " + std::to_string(seed));
      round(this->folder.Write("model.txt", RandomModel(seed).Text()));
      if (this->HasFailure()) return;
    }
  }
};

}  // namespace merivane::test
