// The batch program in process, on real files.
#pragma once

#include <gmock/gmock.h>

#include <iomanip>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "batch/batch.h"
#include "changed_text.h"
#include "database_fixture.h"

namespace merivane::test {

using namespace batch;

namespace fs = std::filesystem;

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class Batch : public ::testing::Test {
 protected:
  struct Failure {
    std::string line;
    int status;
    std::string told;
  };

  // A command line: '@' stands for the folder, '%' for that of the samples, and a word with blanks
  // is in single quotes.
  int Run(const std::string& line) {
    std::vector<std::string> words;
    std::istringstream text(line);
    for (std::string word; text >> std::quoted(word, '\'', '\0');) {
      for (const auto& [mark, place] :
           {std::pair{'@', folder.Path("")}, {'%', MERIVANE_SAMPLES "/"}}) {
        const std::size_t at = word.find(mark);
        if (at != std::string::npos) word.replace(at, 1, place);
      }
      words.push_back(word);
    }
    return RunWords(words);
  }
  int RunWords(const std::vector<std::string>& words) {
    out.str("");
    err.str("");
    return RunBatch(words, MERIVANE_BIN, out, err, setting);
  }
  void Succeed(const std::string& line) { EXPECT_EQ(Run(line), kDone) << line << err.str(); }
  // Each of the runs ends as told and leaves every file as it was.
  void ExpectFailures(std::initializer_list<Failure> failures) {
    const auto before = Files();
    for (const auto& [line, status, told] : failures) {
      EXPECT_EQ(Run(line), status) << line << '\n' << err.str();
      EXPECT_THAT(out.str() + err.str(), AllOf(Not(""), HasSubstr(told))) << line;
      EXPECT_TRUE(Files() == before) << line;
    }
  }

  nlohmann::json Json() const { return nlohmann::json::parse(out.str()); }
  nlohmann::json Projects() {
    Succeed("projects @plan.mdb --json");
    return Json();
  }
  std::vector<nlohmann::json> Log() const {
    std::vector<nlohmann::json> lines;
    std::istringstream text(Read("log.jsonl"));
    for (std::string line; std::getline(text, line);) lines.push_back(nlohmann::json::parse(line));
    return lines;
  }
  // Every file of the folder with its bytes.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder.Path(""))) {
      if (!entry.is_regular_file()) continue;
      files[entry.path().filename().string()] = ReadFile(entry.path().string());
    }
    return files;
  }
  std::string Read(const std::string& name) const { return ReadFile(folder.Path(name)); }
  bool IsThere(const std::string& name) const { return fs::exists(folder.Path(name)); }
  void Copy(const std::string& name, const std::string& to) const {
    fs::copy_file(folder.Path(name), folder.Path(to));
  }
  void Replace(const std::string& name, const std::string& from, const std::string& to) const {
    folder.Write(name, With(Read(name), {{from, to}}));
  }
  void Sql(const std::string& sql, const std::string& name = "plan.mdb") const {
    EXPECT_EQ(RawDatabase(folder.Path(name)).Run(sql), SQLITE_OK) << sql;
  }
  // The database with the first page of a table or an index overwritten.
  static std::string WithoutPageOf(const std::string& object, const std::string& database) {
    const std::string root = RawDatabase(database).Ask(
        "select rootpage from sqlite_master where name = '" + object + "'");
    std::string bytes = ReadFile(database);
    return bytes.replace((std::stoul(root) - 1) * 4096, 8, 8, '\xFF');
  }

  TemporaryFolder folder;
  std::ostringstream out, err;
  RunSetting setting;
};

// Beside the plan of a model stand its files.
class BatchWithPlan : public Batch {
 protected:
  BatchWithPlan() {
    Succeed("to-project %onboarding.txt --database @plan.mdb --mpx @plan.mpx --xml @plan.xml");
  }
};

}  // namespace merivane::test
