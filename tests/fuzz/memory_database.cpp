#include "memory_database.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "engine.h"
#include "memory_file.h"
#include "store/connection.h"

namespace merivane::fuzz {

using namespace store;

std::shared_ptr<Engine>& EngineOf(Connection& connection);
std::string& NameOf(Connection& connection);

// What is private may be named where a template is instantiated.
template <auto engine, auto name>
struct Inside {
  friend std::shared_ptr<Engine>& EngineOf(Connection& connection) { return connection.*engine; }
  friend std::string& NameOf(Connection& connection) { return connection.*name; }
};
template struct Inside<&Connection::engine_, &Connection::databaseName_>;

namespace {

struct KeptEngine {
  std::string path;
  OpenMode mode;
  std::shared_ptr<Engine> engine;
};

std::vector<KeptEngine>& KeptEngines() {
  static std::vector<KeptEngine> engines;
  return engines;
}

// What takes time for nothing here: locks between threads, and pieces of memory under guard.
void Configure() {
  constexpr int kPage = 4096 + 512;  // with what SQLite keeps beside it
  constexpr int kMostPages = 1000;
  static std::vector<char> pages(std::size_t{kPage} * kMostPages);
  sqlite3_config(SQLITE_CONFIG_SINGLETHREAD);
  sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  sqlite3_config(SQLITE_CONFIG_PAGECACHE, pages.data(), kPage, kMostPages);
  KeepEngineMemory();
}

void Check(int result) {
  if (result == SQLITE_OK) return;
  std::fprintf(stderr, "the database can't be made anew: %d\n", result);
  std::abort();
}

}  // namespace

void OpenKept(Connection* connection, const std::string& text,
              OpenMode mode) asm("__wrap_" MERIVANE_CONNECTION_OPEN);
void OpenReally(Connection* connection, const std::string& text,
                OpenMode mode) asm("__real_" MERIVANE_CONNECTION_OPEN);

// The linker calls this in the place of Connection::Open.
void OpenKept(Connection* connection, const std::string& text, OpenMode mode) {
  for (const KeptEngine& kept : KeptEngines()) {
    if (kept.mode != mode || ConnectionText(kept.path) != text || kept.engine.use_count() > 1) {
      continue;
    }
    EngineOf(*connection) = kept.engine;
    NameOf(*connection) = kept.path;
    return;
  }
  OpenReally(connection, text, mode);
  const auto& engine = EngineOf(*connection);
  engine->OnBusy({});  // no connection waits for another one here
  KeptEngines().push_back({NameOf(*connection), mode, engine});
}

MemoryDatabase::MemoryDatabase(const std::string& path) : path_(path), image_(Content(path)) {
  Configure();
  KeptEngines();  // there from now on, and at the end still
  sqlite3_vfs_register(sqlite3_vfs_find("memdb"), 1);
  Check(sqlite3_open(path_.c_str(), &keeper_));
  Check(sqlite3_file_control(keeper_, "main", SQLITE_FCNTL_FILE_POINTER, &file_));
  Reset();
}

MemoryDatabase::~MemoryDatabase() {
  KeptEngines().clear();
  sqlite3_close(keeper_);
}

void MemoryDatabase::KeepAsImage() {
  sqlite3_int64 size = 0;
  Check(file_->pMethods->xFileSize(file_, &size));
  image_.resize(static_cast<std::size_t>(size));
  Check(file_->pMethods->xRead(file_, image_.data(), static_cast<int>(size), 0));
}

// Every connection takes a number of changes that it hasn't seen yet for the work of another one,
// and reads the pages again.
void MemoryDatabase::Reset() {
  constexpr std::size_t kChanges = 24;  // where the file counts its changes
  constexpr std::size_t kChangesAgain = 92;
  constexpr std::uint32_t kMostChanges = 1000;  // of a case
  constexpr std::uint32_t kMostCases = 1000;    // some statements will never be asked again
  if (++cases_ % kMostCases == 0) KeptEngines().clear();
  const std::uint32_t version = cases_ * kMostChanges;
  for (std::size_t byte = 0; byte < sizeof version; ++byte) {
    const auto digit = static_cast<char>(version >> 8 * (sizeof version - 1 - byte));
    image_[kChanges + byte] = image_[kChangesAgain + byte] = digit;
  }
  Check(file_->pMethods->xWrite(file_, image_.data(), static_cast<int>(image_.size()), 0));
  Check(file_->pMethods->xTruncate(file_, std::ssize(image_)));
}

std::unique_ptr<MemoryDatabase> TemplateInMemory() {
  namespace fs = std::filesystem;
  static const fs::path folder =
      fs::temp_directory_path() / ("merivane-fuzz-" + std::to_string(getpid()));
  fs::create_directories(folder);
  const fs::path path = folder / "plan.mdb";
  fs::copy_file(MERIVANE_BIN "/MerivaneTemplate.mdb", path, fs::copy_options::overwrite_existing);
  std::atexit([] {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  });
  return std::make_unique<MemoryDatabase>(path.string());
}

}  // namespace merivane::fuzz
