#include "runtime/code_page.h"
#include "runtime/text.h"
#include "shell/modOptions.h"

namespace merivane::shell {

namespace {

constexpr std::size_t kBufferSize =
    2000;  // of the look-up; a longer value is an error of the query

}  // namespace

std::string GetCommandPath(const Desktop& desktop, const std::string& keyName) {
  const auto value = desktop.RegistryDefault(keyName);
  if (!value || value->size() > kBufferSize) return "";
  const auto placeholder = static_cast<std::ptrdiff_t>(Find(*value, "%1"));
  return placeholder > 2 ? Left(*value, placeholder - 2) : *value;
}

void ExecuteApp(Desktop& desktop, const std::string& commandLine) {
  const std::string line = commandLine.substr(0, commandLine.find('\0'));
  if (!desktop.StartProgram(line)) {
    desktop.ShowMessage({"Unable to launch '" + FromUtf8(line)});
  }
}

bool HasInnerBlank(const std::string& name, std::size_t length) {
  const std::size_t blank = Find(name, " ");
  return blank >= 1 && blank < length;
}

}  // namespace merivane::shell
