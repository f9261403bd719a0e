// merivane-access SOURCE COPY: copies the tables of an Access file for the program that started it,
// which tells it when to stop. Why it failed goes to the standard output, in UTF-8.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>

#include "access_copy.h"
#include "runtime/file_names.h"
#include "store/work_listener.h"

namespace {

// Nothing of it is needed to read a file.
void GiveUpRights() {
  SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
  PROCESS_MITIGATION_EXTENSION_POINT_DISABLE_POLICY extensions{};
  extensions.DisableExtensionPoints = 1;
  SetProcessMitigationPolicy(ProcessExtensionPointDisablePolicy, &extensions, sizeof extensions);
  PROCESS_MITIGATION_DYNAMIC_CODE_POLICY code{};
  code.ProhibitDynamicCode = 1;
  SetProcessMitigationPolicy(ProcessDynamicCodePolicy, &code, sizeof code);
  PROCESS_MITIGATION_IMAGE_LOAD_POLICY images{};
  images.NoRemoteImages = 1;
  images.NoLowMandatoryLabelImages = 1;
  images.PreferSystem32Images = 1;
  SetProcessMitigationPolicy(ProcessImageLoadPolicy, &images, sizeof images);
}

}  // namespace

int wmain(int count, wchar_t** words) {
  if (count != 3) return 2;
  GiveUpRights();
  // Each would change how texts are read, or print among the words that are waited for.
  for (const char* variable : {"MDBICONV=", "MDB_JET3_CHARSET=", "MDBOPTS=", "MDBPATH="}) {
    _putenv(variable);
  }
  try {
    merivane::store::WorkListener nobody;
    merivane::store::CopyAccessTables(merivane::runtime::Utf8Of(words[1]),
                                      merivane::runtime::Utf8Of(words[2]), nobody);
    return 0;
  } catch (const std::exception& error) {
    std::fputs(error.what(), stdout);
    return 1;
  }
}
