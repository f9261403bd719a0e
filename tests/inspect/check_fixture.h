// Models to check, plans to merge, and what the real translation makes of them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "database_fixture.h"
#include "inspect/check.h"
#include "inspect/model_snapshot.h"
#include "model_parts.h"
#include "neutraltext/modGlobal.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::test {

inline std::vector<std::string> LinesOf(const std::string& model) {
  std::vector<std::string> lines(1);
  for (const char character : model) {
    if (character == '|') {
      lines.emplace_back();
    } else {
      lines.back() += character;
    }
  }
  return lines;
}

inline std::string Shown(const inspect::MergeChange& change) {
  constexpr const char* kWords[] = {
      "added: ", "changed: ", "removed: ", "kept: ", "not taken: ", "stop: ", ""};
  const std::string row = change.planRow ? std::to_string(*change.planRow) + ": " : "";
  return kWords[static_cast<int>(change.kind)] + row + Described(change.element) + ": " +
         change.sentence;
}

inline std::vector<std::string> Shown(const std::vector<inspect::MergeChange>& changes) {
  std::vector<std::string> lines;
  for (const inspect::MergeChange& change : changes) lines.push_back(Shown(change));
  return lines;
}

// Passages of a file, each with what takes its place.
using Edits = std::vector<std::pair<std::string, std::string>>;

inline std::string Edited(std::string text, const Edits& edits) {
  for (const auto& [passage, other] : edits) text = With(text, {{passage, other}});
  return text;
}

class CheckFixture : public DatabaseFixture {
 protected:
  std::string Write(const std::string& model) {
    return folder.Write("model.txt", FileText(model + "|"));
  }
  std::vector<inspect::Finding> Check(const std::string& model) {
    return inspect::CheckModel(Write(model), TemplateDatabase());
  }

  bool TranslationStumbles(const std::string& model) {
    OpenForModel();
    return EndsProgram([&] {
             neutraltext::ReadNeutralText(program->modelToProject, Write(model));
             translator::TranslateToProject(program->modelToProject, "");
           }) ||
           !desktop.boxes.empty();
  }

  // A sample in the database of the fixture, and its plan beside it.
  std::string MakePlan(const std::string& sample = "onboarding") {
    std::string mpx = folder.Path("plan.mpx");
    OpenForModel();
    neutraltext::ReadNeutralText(program->modelToProject, MERIVANE_SAMPLES "/" + sample + ".txt");
    translator::TranslateToProject(program->modelToProject, mpx);
    program = std::make_unique<Program>(desktop);
    return mpx;
  }
};

// Units 1 to 4: 1 forks at J11 to 2 and 3, which meet at J12 in front of 4.
inline std::string Fork(const std::string& type, const std::string& facts = "",
                        const std::string& more = "") {
  return Scenario(
      "1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand") + Unit("3", "Cut") + Unit("4", "Sand"),
      Junction("11", "J11", "Fan Out", type, facts) + Junction("12", "J12", "Fan In", type),
      Link("21", "1", "J11") + Link("22", "J11", "2", "2") + Link("23", "J11", "3", "3") +
          Link("24", "2", "J12") + Link("25", "3", "J12") + Link("26", "J12", "4") + more);
}

inline const std::string kPathFact = "        1  (PathAt)|";
inline std::string Path(const std::string& link, const std::string& junction) {
  return Fact("1", "PathAt", "Take L" + link + " until J" + junction + "|");
}

}  // namespace merivane::test
