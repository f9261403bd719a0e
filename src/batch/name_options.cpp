#include "name_options.h"

#include "runtime/text.h"

namespace merivane::batch {

using namespace runtime;

CLI::Option* AddName(CLI::App* command, const char* option, std::string& name,
                     const char* description) {
  const CLI::Validator trimmed(
      [](std::string& given) {
        given = Trim(given);
        return std::string(given.empty() ? "the name is empty" : "");
      },
      "");
  return command->add_option(option, name, description)->transform(trimmed);
}

}  // namespace merivane::batch
