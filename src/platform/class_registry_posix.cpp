#include "platform/class_registry.h"
#include "reg_text.h"
#include "system_files.h"

namespace merivane::platform {

std::optional<std::string> ReadClassDefault(const std::string& key) {
  const auto lines = ReadSystemLines(UserFolder() / "classes.reg");
  if (!lines) return std::nullopt;
  auto value = RegText(*lines).Default(key);
  if (value) *value += '\0';
  return value;
}

}  // namespace merivane::platform
