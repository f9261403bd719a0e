// The batch program in process, on real files.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "batch/batch.h"
#include "database_fixture.h"

namespace merivane::test {

using namespace batch;

namespace fs = std::filesystem;

class Batch : public ::testing::Test {
 protected:
  int Run(std::vector<std::string> arguments) {
    out.str("");
    err.str("");
    return RunBatch(arguments, MERIVANE_BIN, out, err);
  }
  int ToProject(const std::string& model, std::vector<std::string> more = {}) {
    std::vector<std::string> arguments = {"to-project", model, "--database", plan};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  }
  std::vector<nlohmann::json> Log() const {
    std::vector<nlohmann::json> lines;
    std::istringstream text(test::ReadFile(log));
    for (std::string line; std::getline(text, line);) lines.push_back(nlohmann::json::parse(line));
    return lines;
  }
  // Every file of the folder with its bytes.
  std::map<std::string, std::string> Files() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder.Path(""))) {
      files[entry.path().filename().string()] = test::ReadFile(entry.path().string());
    }
    return files;
  }
  static std::string Sample(const std::string& name) { return MERIVANE_SAMPLES "/" + name; }
  void Replace(const std::string& path, const std::string& from, const std::string& to) const {
    std::string text = test::ReadFile(path);
    const auto at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    std::ofstream(path, std::ios::binary) << text.replace(at, from.size(), to);
  }

  test::TemporaryFolder folder;
  std::string plan = folder.Path("plan.mdb");
  std::string mpx = folder.Path("plan.mpx");
  std::string model = folder.Path("model.txt");
  std::string log = folder.Path("log.jsonl");
  std::ostringstream out, err;
};

}  // namespace merivane::test
