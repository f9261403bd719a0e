#include <exception>
#include <string>

#include "access_process.h"
#include "access_tables.h"

namespace merivane::store {

// There is no fork here: the copy is made by this process, without limits.
std::string CopyAccessTablesAside(const std::string& path, const std::string& sqlitePath,
                                  Work& work) {
  try {
    CopyAccessTables(path, sqlitePath, work);
    return {};
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace merivane::store
