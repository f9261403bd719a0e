#include <dlfcn.h>

#include <string>
#include <string_view>

#include "modules.h"
#include "platform/program_run.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::pictures {

using namespace runtime;

const Module& OpenModule(const std::string& name) {
  const auto fail = [](const std::string& why) {
    throw RunTimeError(kDeviceIoError,
                       FromUtf8("start Merivane again, or install it again: " + why));
  };
  const std::string path = platform::ProgramFolder("") + "/" + name;
  void* opened = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (opened == nullptr) fail(dlerror());
  const auto* module = static_cast<const Module*>(dlsym(opened, "merivane_module"));
  if (module == nullptr || module->version != std::string_view(MERIVANE_VERSION)) {
    fail(path + " is not of version " MERIVANE_VERSION);
  }
  return *module;
}

}  // namespace merivane::pictures
