// Plans that a test writes into a database by SQL, and the texts that come out of them.
#pragma once

#include <algorithm>

#include "database_fixture.h"
#include "neutraltext/modProjectToIDEF3.h"

namespace merivane::test {

using namespace neutraltext;

class WriterFixture : public DatabaseFixture {
 protected:
  ProjectToModel& state = program->projectToModel;

  // A script of the folder "models".
  void SqlFile(const std::string& name) {
    Sql(ReadFile(MERIVANE_SAMPLES "/../tests/neutraltext/models/" + name));
  }

  // A database that another program made: the plan's tables alone, without the model's columns.
  void UsePlanOfAnotherProgram() {
    std::filesystem::remove(databasePath);
    SqlFile("tables_of_another_program.sql");
  }

  void AddTask(int uid, const std::string& outline, const std::string& name = "") {
    const auto level = std::count(outline.begin(), outline.end(), '.') + 1;
    Sql("insert into MSP_TASKS (PROJ_ID, TASK_UID, TASK_ID, TASK_NAME, TASK_OUTLINE_LEVEL,"
        " TASK_OUTLINE_NUM) values (1, " +
        std::to_string(uid) + ", " + std::to_string(uid + 70) + ", '" + name + "', " +
        std::to_string(level) + ", '" + outline + "')");
  }

  void AddLink(int uid, int predecessor, int successor, int type) {
    Sql("insert into MSP_LINKS (PROJ_ID, LINK_UID, LINK_PRED_UID, LINK_SUCC_UID, LINK_TYPE)"
        " values (1, " +
        std::to_string(uid) + ", " + std::to_string(predecessor) + ", " +
        std::to_string(successor) + ", " + std::to_string(type) + ")");
  }

  // As the dialog leaves it: the database and the output are open, project 1 is picked.
  void OpenPlan() {
    state.gProjectConn = Connect(OpenMode::kReadOnly);
    state.gInterimProjId = 1;
    state.gOutFile = program->files.FreeFile();
    program->files.OpenForOutput(state.gOutFile, folder.Path("model.txt"));
  }

  // The written text, with LF as line end.
  std::string Written() {
    program->files.CloseAll();
    std::string text = ReadFile(folder.Path("model.txt"));
    EXPECT_EQ(std::ranges::count(text, '\r'), std::ranges::count(text, '\n'));
    std::erase(text, '\r');
    return text;
  }

  // A whole example as it must come out.
  static std::string Expected(const std::string& name) {
    return ReadFile(MERIVANE_SAMPLES "/../tests/neutraltext/expected/" + name);
  }

  std::string Generate() {
    OpenPlan();
    result = GenerateTextFromProject(state);
    return Written();
  }

  // From the first `from` up to, not including, the next `to`; to the end without one.
  static std::string Part(const std::string& text, const std::string& from,
                          const std::string& to = "") {
    const std::size_t begin = text.find(from);
    if (begin == std::string::npos) return "";
    const std::size_t end = to.empty() ? to.npos : text.find(to, begin + from.size());
    return text.substr(begin, end == text.npos ? end : end - begin);
  }

  bool result = false;
};

}  // namespace merivane::test
