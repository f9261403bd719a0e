// merivane-access SOURCE COPY: copies the tables of an Access file for the program that started it,
// which tells it when to stop. Why it failed goes to the standard output, in UTF-8.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>
#include <string>

#include "access_copy.h"
#include "runtime/file_names.h"
#include "runtime/helper_process.h"
#include "store/work_listener.h"

int wmain(int count, wchar_t** words) {
  if (count != 3) return 2;
  merivane::runtime::GiveUpRights();
  // Each would change how texts are read, or print among the words that are waited for.
  for (const char* variable : {"MDBICONV=", "MDB_JET3_CHARSET=", "MDBOPTS=", "MDBPATH="}) {
    _putenv(variable);
  }
  try {
    merivane::store::WorkListener nobody;
    merivane::store::CopyAccessTables(merivane::runtime::Utf8Of(words[1]),
                                      merivane::runtime::Utf8Of(words[2]), nobody);
    return 0;
  } catch (const std::bad_alloc&) {
    std::fputs(merivane::store::kTooLarge, stdout);
    return 1;
  } catch (const std::exception& error) {
    std::fputs(error.what(), stdout);
    return 1;
  }
}
