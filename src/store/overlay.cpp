#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <unordered_map>

#include "hardening.h"
#include "open_database.h"

namespace merivane::store {

namespace {

struct SqliteFree {
  void operator()(char* memory) const noexcept { sqlite3_free(memory); }
};
using Page = std::unique_ptr<char, SqliteFree>;

// SQLite's view of the file; what stands behind it in memory is the file that is read.
struct OverlayFile {
  sqlite3_file base;
  sqlite3_file* below;
  std::unordered_map<sqlite3_int64, Page>* pages;  // by their offsets
  sqlite3_int64 pageSize;                          // 0 until a page is written
  sqlite3_int64 size;                              // of file and pages; -1 until it is asked
  bool isLocked;
};

OverlayFile& Of(sqlite3_file* file) { return *reinterpret_cast<OverlayFile*>(file); }

sqlite3_vfs* Below() { return sqlite3_vfs_find(nullptr); }

int FindSize(OverlayFile& overlay) {
  if (overlay.size >= 0) return SQLITE_OK;
  return overlay.below->pMethods->xFileSize(overlay.below, &overlay.size);
}

int Close(sqlite3_file* file) {
  OverlayFile& overlay = Of(file);
  delete overlay.pages;
  if (overlay.isLocked) overlay.below->pMethods->xUnlock(overlay.below, SQLITE_LOCK_NONE);
  return overlay.below->pMethods->xClose(overlay.below);
}

// A part of one page, or a page.
int Read(sqlite3_file* file, void* to, int count, sqlite3_int64 from) {
  OverlayFile& overlay = Of(file);
  const sqlite3_int64 inPage = overlay.pageSize == 0 ? 0 : from % overlay.pageSize;
  const auto page = overlay.pages->find(from - inPage);
  if (page != overlay.pages->end()) {
    std::memcpy(to, page->second.get() + inPage, static_cast<std::size_t>(count));
    return SQLITE_OK;
  }
  if (const int result = FindSize(overlay); result != SQLITE_OK) return result;
  if (from >= overlay.size) {
    std::memset(to, 0, static_cast<std::size_t>(count));
    return SQLITE_IOERR_SHORT_READ;
  }
  return overlay.below->pMethods->xRead(overlay.below, to, count, from);
}

int Write(sqlite3_file* file, const void* from, int count, sqlite3_int64 to) {
  OverlayFile& overlay = Of(file);
  if (overlay.pageSize == 0) overlay.pageSize = count;
  if (count != overlay.pageSize || to % overlay.pageSize != 0) return SQLITE_IOERR_WRITE;
  if (const int result = FindSize(overlay); result != SQLITE_OK) return result;
  try {
    Page& page = (*overlay.pages)[to];
    if (page == nullptr) {
      page.reset(static_cast<char*>(sqlite3_malloc64(static_cast<sqlite3_uint64>(count))));
    }
    if (page == nullptr) {
      overlay.pages->erase(to);
      return SQLITE_IOERR_NOMEM;
    }
    std::memcpy(page.get(), from, static_cast<std::size_t>(count));
  } catch (const std::bad_alloc&) {
    return SQLITE_IOERR_NOMEM;
  }
  overlay.size = std::max(overlay.size, to + count);
  return SQLITE_OK;
}

int Truncate(sqlite3_file* file, sqlite3_int64 size) {
  OverlayFile& overlay = Of(file);
  std::erase_if(*overlay.pages, [&](const auto& page) { return page.first >= size; });
  overlay.size = size;
  return SQLITE_OK;
}

int Sync(sqlite3_file* /*file*/, int /*flags*/) { return SQLITE_OK; }

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
  const int result = FindSize(Of(file));
  *size = Of(file).size;
  return result;
}

// Nobody else may write to the file as long as pages of it stand in memory.
int Lock(sqlite3_file* file, int /*level*/) {
  OverlayFile& overlay = Of(file);
  if (overlay.isLocked) return SQLITE_OK;
  const int result = overlay.below->pMethods->xLock(overlay.below, SQLITE_LOCK_SHARED);
  overlay.isLocked = result == SQLITE_OK;
  return result;
}

int Unlock(sqlite3_file* /*file*/, int /*level*/) { return SQLITE_OK; }

int IsReserved(sqlite3_file* /*file*/, int* isReserved) {
  *isReserved = 0;
  return SQLITE_OK;
}

int Control(sqlite3_file* /*file*/, int /*operation*/, void* /*argument*/) {
  return SQLITE_NOTFOUND;
}

int SectorSize(sqlite3_file* file) {
  sqlite3_file* below = Of(file).below;
  return below->pMethods->xSectorSize(below);
}

int Characteristics(sqlite3_file* /*file*/) { return 0; }

constexpr sqlite3_io_methods kMethods = {
    1,       Close,      Read,    Write,      Truncate,        Sync,    FileSize, Lock,
    Unlock,  IsReserved, Control, SectorSize, Characteristics, nullptr, nullptr,  nullptr,
    nullptr, nullptr,    nullptr};

int Open(sqlite3_vfs* /*self*/, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  if ((flags & SQLITE_OPEN_MAIN_DB) == 0)
    return Below()->xOpen(Below(), name, file, flags, outFlags);
  OverlayFile& overlay = Of(file);
  overlay.base.pMethods = nullptr;  // of a file that isn't open
  overlay.below = reinterpret_cast<sqlite3_file*>(&overlay + 1);
  constexpr int kToRead = SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB;
  const int result = Below()->xOpen(Below(), name, overlay.below, kToRead, nullptr);
  if (result != SQLITE_OK) return result;
  overlay.pages = new (std::nothrow) std::unordered_map<sqlite3_int64, Page>;
  if (overlay.pages == nullptr) {
    overlay.below->pMethods->xClose(overlay.below);
    return SQLITE_NOMEM;
  }
  overlay.pageSize = 0;
  overlay.size = -1;
  overlay.isLocked = false;
  overlay.base.pMethods = &kMethods;
  if (outFlags != nullptr) *outFlags = flags;
  return SQLITE_OK;
}

// What stands beside the file is another's: this database's own journal is in memory.
int Access(sqlite3_vfs* /*self*/, const char* /*name*/, int /*flags*/, int* isThere) {
  *isThere = 0;
  return SQLITE_OK;
}

constexpr const char* kOverlay = "merivane-overlay";

void Register() {
  static sqlite3_vfs overlay = [] {
    sqlite3_vfs made = *Below();
    made.zName = kOverlay;
    made.szOsFile = static_cast<int>(sizeof(OverlayFile)) + Below()->szOsFile;
    made.xOpen = Open;
    made.xAccess = Access;
    made.pNext = nullptr;
    return made;
  }();
  sqlite3_vfs_register(&overlay, 0);
}

}  // namespace

DatabaseHandle OpenOverlay(const std::string& name, const std::string& path) {
  Register();
  sqlite3* raw = nullptr;
  const int result =
      sqlite3_open_v2(name.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, kOverlay);
  DatabaseHandle database(raw);
  if (result != SQLITE_OK) throw DatabaseError(raw, path);
  sqlite3_extended_result_codes(raw, 1);
  Harden(raw);
  return database;
}

}  // namespace merivane::store
