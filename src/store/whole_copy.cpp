
#include <algorithm>
#include <fstream>
#include <string_view>
#include <vector>

#include "database_file.h"
#include "open_database.h"
#include "runtime/new_file.h"
#include "runtime/run_time_error.h"

namespace merivane::store {

namespace {

constexpr std::size_t kBlock = 1U << 18U;

// The bytes of a file, a block at a time; empty behind the last one.
class Blocks {
 public:
  virtual ~Blocks() = default;
  virtual std::string_view Next() = 0;
  virtual std::int64_t Size() = 0;

 protected:
  std::vector<char> block_ = std::vector<char>(kBlock);
};

class FileBlocks : public Blocks {
 public:
  explicit FileBlocks(const std::string& path)
      : path_(path), file_(PathOf(path), std::ios::binary) {
    if (!file_) throw FileError(kPermissionDenied, path);
  }
  std::string_view Next() override {
    file_.read(block_.data(), std::ssize(block_));
    if (file_.bad()) throw FileError(kDeviceIoError, path_);
    return {block_.data(), static_cast<std::size_t>(file_.gcount())};
  }
  std::int64_t Size() override {
    std::error_code error;
    const auto size = std::filesystem::file_size(PathOf(path_), error);
    return error ? 0 : static_cast<std::int64_t>(size);
  }

 private:
  std::string path_;
  std::ifstream file_;
};

// Read by SQLite's own handle of the file: closing another one would free SQLite's locks.
class OpenDatabaseBlocks : public Blocks {
 public:
  OpenDatabaseBlocks(sqlite3* database, std::string path) : path_(std::move(path)) {
    sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file_);
    if (file_->pMethods->xFileSize(file_, &size_) != SQLITE_OK) Fail();
  }
  std::string_view Next() override {
    const std::int64_t size = std::min<std::int64_t>(size_ - at_, std::ssize(block_));
    const int result =
        size == 0 ? SQLITE_OK
                  : file_->pMethods->xRead(file_, block_.data(), static_cast<int>(size), at_);
    if (result != SQLITE_OK) Fail();
    at_ += size;
    return {block_.data(), static_cast<std::size_t>(size)};
  }

  std::int64_t Size() override { return size_; }

 private:
  [[noreturn]] void Fail() const { throw FileError(kDeviceIoError, path_); }

  std::string path_;
  sqlite3_file* file_ = nullptr;
  sqlite3_int64 size_ = 0;
  sqlite3_int64 at_ = 0;
};

void Sync(const std::string& path, const std::string& shown) try {
  SyncFile(path);
} catch (const RunTimeError& error) {
  throw FileError(error.Number(), shown);
}

bool AreSame(Blocks& left, Blocks& right, WorkListener& work) {
  for (;;) {
    work.Step();
    const std::string_view block = left.Next();
    if (block != right.Next()) return false;
    if (block.empty()) return true;
  }
}

// A great file goes to the disk little by little, since nothing else is done while it does.
void WriteBlocks(Blocks& source, const std::string& to, const std::string& shown,
                 WorkListener& work) {
  constexpr int kBlocksBetweenSyncs = 32;
  constexpr int kTimes = 2;  // written, then compared
  work.Begin(kCopying, kTimes * source.Size() / std::int64_t{kBlock});
  OutputFile target({shown, to});
  int blocks = 0;
  for (std::string_view block = source.Next(); !block.empty(); block = source.Next()) {
    target.Write(block);
    work.Step();
    if (++blocks % kBlocksBetweenSyncs != 0) continue;
    target.Flush();
    Sync(to, shown);
  }
  target.Close();
  Sync(to, shown);
}

void Compare(Blocks& source, const std::string& to, const std::string& shown, WorkListener& work) {
  FileBlocks copy(to);
  if (!AreSame(source, copy, work)) throw FileError(kDeviceIoError, shown);
}

}  // namespace

void CopyBytes(const std::string& from, const std::string& to, const std::string& shown,
               WorkListener& work) {
  FileBlocks source(from);
  WriteBlocks(source, to, shown, work);
  FileBlocks again(from);
  Compare(again, to, shown, work);
}

bool HaveSameBytes(const std::string& a, const std::string& b) {
  FileBlocks left(a);
  FileBlocks right(b);
  WorkListener nobody;
  return AreSame(left, right, nobody);
}

bool HasBytesOf(sqlite3* database, const std::string& path, const std::string& other) {
  OpenDatabaseBlocks left(database, path);
  FileBlocks right(other);
  WorkListener nobody;
  return AreSame(left, right, nobody);
}

void CopyOpenDatabaseBytes(sqlite3* database, const std::string& from, const std::string& to,
                           const std::string& shown, WorkListener& work) {
  OpenDatabaseBlocks source(database, from);
  WriteBlocks(source, to, shown, work);
  OpenDatabaseBlocks again(database, from);
  Compare(again, to, shown, work);
}

void CopyDatabasePages(sqlite3* database, const std::string& from, const std::string& to,
                       const std::string& shown, WorkListener& work) {
  std::int64_t size = 0;
  try {
    const DatabaseHandle target = OpenHandle(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    CopyPages(database, target.get(), from, work);
    const StatementHandle pages = PrepareStatement(
        target.get(), "select page_count * page_size from pragma_page_count, pragma_page_size", to);
    if (sqlite3_step(pages.get()) == SQLITE_ROW) size = sqlite3_column_int64(pages.get(), 0);
  } catch (const RunTimeError& error) {
    const bool ofTarget = error.Number() == kDiskFull || error.Number() == kDeviceIoError;
    if (ofTarget) throw FileError(error.Number(), shown);
    throw;
  }
  Sync(to, shown);
  std::error_code error;
  if (std::filesystem::file_size(PathOf(to), error) != static_cast<std::uintmax_t>(size)) {
    throw FileError(kDeviceIoError, shown);
  }
}

}  // namespace merivane::store
