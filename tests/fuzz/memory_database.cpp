#include "memory_database.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace merivane::fuzz {
namespace {

void Copy(sqlite3* from, sqlite3* to) {
  sqlite3_backup* copy = sqlite3_backup_init(to, "main", from, "main");
  const int step = sqlite3_backup_step(copy, -1);
  sqlite3_backup_finish(copy);
  if (step == SQLITE_DONE) return;
  std::fprintf(stderr, "the database can't be made anew: %d\n", step);
  std::abort();
}

}  // namespace

MemoryDatabase::MemoryDatabase(const std::string& path) : path_(path) {
  sqlite3* file = nullptr;
  sqlite3_open_v2(path.c_str(), &file, SQLITE_OPEN_READONLY, "unix");
  sqlite3_open(":memory:", &image_);
  Copy(file, image_);
  sqlite3_close(file);
  sqlite3_vfs_register(sqlite3_vfs_find("memdb"), 1);
  sqlite3_open(path_.c_str(), &keeper_);
  Reset();
}

MemoryDatabase::~MemoryDatabase() {
  sqlite3_close(keeper_);
  sqlite3_close(image_);
}

void MemoryDatabase::KeepAsImage() { Copy(keeper_, image_); }

void MemoryDatabase::Reset() { Copy(image_, keeper_); }

std::unique_ptr<MemoryDatabase> TemplateInMemory() {
  namespace fs = std::filesystem;
  const fs::path folder = fs::temp_directory_path() / ("merivane-fuzz-" + std::to_string(getpid()));
  fs::create_directories(folder);
  const fs::path path = folder / "plan.mdb";
  fs::copy_file(MERIVANE_BIN "/MerivaneTemplate.mdb", path, fs::copy_options::overwrite_existing);
  auto database = std::make_unique<MemoryDatabase>(path.string());
  std::atexit([] {
    std::error_code ignored;
    fs::remove_all(fs::temp_directory_path() / ("merivane-fuzz-" + std::to_string(getpid())),
                   ignored);
  });
  return database;
}

}  // namespace merivane::fuzz
