// A desktop whose user and system play a script, and that records what was asked of it.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/quiet_desktop.h"
#include "runtime/run_time_error.h"

namespace merivane::test {

using namespace platform;

class ScriptedDesktop : public QuietDesktop {
 public:
  // The script. Members may be set at any time.
  std::deque<std::string> fileNames;  // answers of AskFileName; then every one is cancelled
  std::function<void(const RunProgress&)> onProgress;
  std::function<bool()> onBreath;  // False cancels the run
  DateTime today = QuietDesktop::Today();
  std::optional<RunTimeError> oemCodePageFailure;
  std::map<std::string, std::string> registry;  // key to default value, without the NUL
  std::map<std::pair<std::string, std::string>, std::string> profile;  // (section, key) to value
  bool startResult = true;
  int webPageResult = kLowestSuccess;
  int pointer = kPointerDefault;

  // The record, in order of the calls.
  std::vector<std::string> startedCommands;
  int beeps = 0;

  void Beep() override { ++beeps; }
  std::string AskFileName(const FileDialog& /*dialog*/) override {
    if (fileNames.empty()) return {};
    std::string name = std::move(fileNames.front());
    fileNames.pop_front();
    return name;
  }
  int MousePointer() const override { return pointer; }
  void SetMousePointer(int value) override { pointer = value; }
  void ShowProgress(const RunProgress& progress) override {
    if (onProgress) onProgress(progress);
  }
  bool Breathe() override { return !onBreath || onBreath(); }
  DateTime Today() const override { return today; }
  std::int32_t OemCodePage() const override {
    if (oemCodePageFailure) throw RunTimeError(*oemCodePageFailure);
    return QuietDesktop::OemCodePage();
  }
  std::optional<std::string> RegistryDefault(const std::string& key) const override {
    const auto entry = registry.find(key);
    if (entry == registry.end()) return std::nullopt;
    return entry->second + '\0';
  }
  bool StartProgram(const std::string& commandLine) override {
    startedCommands.push_back(commandLine);
    return startResult;
  }
  int OpenWebPage(const std::string& /*url*/) override { return webPageResult; }
  std::string ProfileString(const std::string& section, const std::string& key,
                            const std::string& fallback,
                            const std::string& /*iniFile*/) const override {
    const auto entry = profile.find({section, key});
    return entry == profile.end() ? fallback : entry->second;
  }
};

}  // namespace merivane::test
