// The batch program in process, on real files.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "batch/batch.h"
#include "changed_text.h"
#include "database_fixture.h"

namespace merivane::test {

using namespace batch;

namespace fs = std::filesystem;

class Batch : public ::testing::Test {
 protected:
  int Run(std::vector<std::string> arguments, const std::vector<std::string>& more = {}) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    out.str("");
    err.str("");
    return RunBatch(arguments, MERIVANE_BIN, out, err, setting);
  }
  void Succeed(const std::vector<std::string>& arguments,
               const std::vector<std::string>& more = {}) {
    EXPECT_EQ(Run(arguments, more), kDone) << err.str();
  }
  int ToProject(const std::string& model, const std::vector<std::string>& more = {}) {
    return Run({"to-project", model, "--database", plan}, more);
  }
  nlohmann::json Projects() {
    Succeed({"projects", plan, "--json"});
    return nlohmann::json::parse(out.str());
  }
  std::vector<nlohmann::json> Log() const {
    std::vector<nlohmann::json> lines;
    std::istringstream text(ReadFile(log));
    for (std::string line; std::getline(text, line);) lines.push_back(nlohmann::json::parse(line));
    return lines;
  }
  // Every file of the folder with its bytes.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder.Path(""))) {
      files[entry.path().filename().string()] = ReadFile(entry.path().string());
    }
    return files;
  }
  static std::string Sample(const std::string& name) { return MERIVANE_SAMPLES "/" + name; }
  void Replace(const std::string& path, const std::string& from, const std::string& to) const {
    const std::string text = With(ReadFile(path), {{from, to}});
    std::ofstream(path, std::ios::binary) << text;
  }

  TemporaryFolder folder;
  std::string plan = folder.Path("plan.mdb");
  std::string mpx = folder.Path("plan.mpx");
  std::string model = folder.Path("model.txt");
  std::string log = folder.Path("log.jsonl");
  std::ostringstream out, err;
  RunSetting setting;
};

}  // namespace merivane::test
