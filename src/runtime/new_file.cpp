#include "runtime/new_file.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::runtime {

namespace {

namespace fs = std::filesystem;

bool IsThere(const fs::path& path) noexcept {
  std::error_code error;
  return fs::exists(path, error);
}

}  // namespace

OutputFile::OutputFile(Output output)
    : output_(std::move(output)), stream_(OpenStream(output_.path, FileUse::kWrite)) {
  if (stream_ == nullptr) throw FileError(ErrorOfSystem(errno, kPermissionDenied), output_.name);
  constexpr std::size_t kBuffer = 1 << 16;
  std::setvbuf(stream_, nullptr, _IOFBF, kBuffer);
}

OutputFile::~OutputFile() {
  if (stream_ != nullptr) std::fclose(stream_);
}

void OutputFile::Write(std::string_view bytes) {
  if (failure_ == 0) Note(std::fwrite(bytes.data(), 1, bytes.size(), stream_) == bytes.size());
}

void OutputFile::Flush() {
  if (failure_ == 0) Note(std::fflush(stream_) == 0);
  Check();
}

void OutputFile::Close() {
  const bool done = std::fclose(std::exchange(stream_, nullptr)) == 0;
  if (failure_ == 0) Note(done);
  Check();
}

void OutputFile::Note(bool done) {
  if (!done) failure_ = errno == 0 ? -1 : errno;
}

void OutputFile::Check() const {
  if (failure_ != 0) throw FileError(ErrorOfSystem(failure_, kDeviceIoError), output_.name);
}

void WriteOutput(const Output& output, std::string_view bytes) {
  OutputFile file(output);
  file.Write(bytes);
  file.Close();
}

void RemoveFile(const fs::path& path) noexcept {
  std::error_code ignored;
  fs::remove(path, ignored);
}

TemporaryFile::TemporaryFile(std::string path) : path_(std::move(path)), place_(PathOf(path_)) {}

TemporaryFile::~TemporaryFile() {
  if (!place_.empty()) RemoveFile(place_);
}

NewFile::NewFile(const std::string& name) : target_(name) {
  std::error_code error;
  const fs::path given = PathOf(name);
  const fs::file_status status = fs::status(given, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) return;
  if (fs::exists(status) && !MayBeReplaced(name)) throw FileError(kPermissionDenied, name);
  const std::string place = Followed(name);
  target_.path = TemporaryNameBeside(place);
  place_ = PathOf(place);
}

NewFile::~NewFile() { PutBack(); }

void NewFile::Prepare() {
  const fs::path made = PathOf(target_.path);
  if (place_.empty() || !IsThere(made)) return;
  try {
    SyncFile(target_.path);
  } catch (const RunTimeError& failure) {
    throw FileError(failure.Number(), Name());
  }
  std::error_code error;
  const fs::file_status status = fs::status(place_, error);
  stood_ = fs::exists(status);
  if (stood_) fs::permissions(made, status.permissions(), error);
}

void NewFile::KeepOld() {
  if (!stood_) return;
  std::error_code error;
  fs::path old = PathOf(TemporaryNameBeside(Utf8Of(place_)));
  fs::create_hard_link(place_, old, error);
  if (!error) old_ = std::move(old);
}

void NewFile::TakePlace() {
  const fs::path made = PathOf(target_.path);
  if (place_.empty() || !IsThere(made)) return;
  if (const std::error_code failure = MoveInPlace(made, place_)) {
    throw FileError(ErrorOfSystem(failure, kPermissionDenied), Name());
  }
  moved_ = true;
}

void NewFile::Settle() noexcept {
  if (!old_.empty()) RemoveFile(old_);
  place_.clear();
}

std::string NewFile::PutBack() noexcept try {
  if (place_.empty()) return {};
  const fs::path place = std::exchange(place_, fs::path());
  if (!moved_ || !stood_) RemoveFile(moved_ ? place : PathOf(target_.path));
  if (old_.empty()) return {};
  if (moved_ && MoveInPlace(old_, place)) return Utf8Of(old_);
  RemoveFile(old_);
  return {};
} catch (...) {
  return {};
}

}  // namespace merivane::runtime
