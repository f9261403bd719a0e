#include "memory_model.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "inspect/finding.h"
#include "neutraltext/modGlobal.h"
#include "program/error_boxes.h"
#include "reconcile/complete_merge.h"
#include "translator/modIDEF3ToProject.h"
#include "translator/multi.h"

namespace merivane::inspect {

using namespace neutraltext;

namespace {

std::string QuestionOf(const multi& form) {
  std::string names;
  for (const std::string& name : form.List1) names += (names.empty() ? "'" : ", '") + name + "'";
  return "One of " + names + " has to be chosen.";
}

}  // namespace

MemoryModel::MemoryModel(const std::string& templatePath, Desktop* shown)
    : program_(desktop_), run_(program_.progress) {
  if (shown != nullptr) desktop_.ShowProgressOn(*shown);
  desktop_.onModalForm = [this](ModalForm& form) {
    const auto* chooser = dynamic_cast<multi*>(&form);
    if (chooser != nullptr && question_.empty()) question_ = QuestionOf(*chooser);
  };
  ModelToProject& state = program_.modelToProject;
  state.gMspConn = std::make_unique<Connection>(program_.workspace, templatePath, OpenMode::kCopy);
  state.gMspProjId = kProject;
  state.takesOwnText = true;
}

template <typename Step>
bool MemoryModel::Succeeds(Step step) {
  bool isEnded = false;
  try {
    step();
  } catch (const ProgramEnd&) {
    isEnded = true;  // its box has told why
  }
  desktop_.ThrowMachineFault();
  const auto& boxes = desktop_.boxes;
  auto box = std::ranges::find_if(boxes, [](const Message& each) { return each.error != 0; });
  if (box == boxes.end() && isEnded && !boxes.empty()) box = std::prev(boxes.end());
  if (box != boxes.end()) failure_ = OneLine(box->text);
  return box == boxes.end();
}

bool MemoryModel::Read(const std::string& textPath) {
  return Succeeds([&] { ReadNeutralText(program_.modelToProject, textPath); });
}

void MemoryModel::Take(const StoredModel& model) {
  TakeStoredModel(program_.modelToProject, model);
}

void MemoryModel::ChooseAsBefore(Connection& stored, std::int32_t project) {
  reconcile::ChooseAsBefore(desktop_, stored, project);
}

bool MemoryModel::Translate() {
  return Succeeds([&] { TranslateToProject(program_.modelToProject, ""); });
}

}  // namespace merivane::inspect
