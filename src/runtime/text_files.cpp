#include "runtime/text_files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <utility>

#include "runtime/code_page.h"
#include "runtime/file_names.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::runtime {

namespace {

constexpr std::int16_t kLastNumber = 511;
constexpr std::size_t kChunk = 131072;
constexpr std::size_t kLongestLine = 1 << 20;

[[noreturn]] void ThrowOpenFailure(int failure, const std::string& path, FileUse mode) {
  const bool noFile = failure == ENOENT && mode == FileUse::kRead && FolderExists(path);
  throw RunTimeError(noFile ? kFileNotFound : ErrorOfSystem(failure, kPathFileAccessError));
}

const char* FindByte(char byte, const char* from, const char* end) {
  const auto* found = std::memchr(from, byte, static_cast<std::size_t>(end - from));
  return found == nullptr ? end : static_cast<const char*>(found);
}

}  // namespace

struct TextFiles::File {
  // Opens `place`, which stands for the file `name`.
  File(const std::string& name, const std::string& place, FileUse openMode)
      : path(name), mode(openMode) {
    if (path.empty()) throw RunTimeError(kPathFileAccessError);
    if (path.find('\0') != std::string::npos) throw RunTimeError(kBadFileNumber);
    if (mode == FileUse::kRead) RefuseDevice(place);
    stream = OpenStream(place, mode);
    if (stream == nullptr) ThrowOpenFailure(errno, path, mode);
    std::setvbuf(stream, nullptr, _IONBF, 0);  // whole blocks pass between the file and `chunk`
  }
  ~File() {
    if (stream == nullptr) return;
    WriteOut();
    std::fclose(stream);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  // False at the end of the file, otherwise chunk[next] is the next byte.
  bool HasByte() {
    if (next < filled) return true;
    next = 0;
    filled = std::fread(chunk.get(), 1, kChunk, stream);
    if (filled == 0 && std::ferror(stream) != 0) throw RunTimeError(kDeviceIoError);
    return filled > 0;
  }

  void ReadLine(std::string& line) {
    line.clear();
    while (HasByte()) {
      const char* from = chunk.get() + next;
      const char* end = chunk.get() + filled;
      const char* stop = FindByte('\r', from, FindByte('\n', from, end));
      if (line.size() + static_cast<std::size_t>(stop - from) > kLongestLine) {
        throw RunTimeError(kPathFileAccessError,
                           "'" + FromUtf8(path) + "' has a line of more than 1 MB.");
      }
      line.append(from, stop);
      next = static_cast<std::size_t>(stop - chunk.get());
      if (stop != end) {
        SkipLineEnd();
        break;
      }
    }
  }

  void SkipLineEnd() {
    const bool carriageReturn = chunk[next++] == '\r';
    if (carriageReturn && HasByte() && chunk[next] == '\n') ++next;
  }

  void Print(std::string_view line) {
    for (std::string_view piece : {line, kCrLf}) {
      while (!piece.empty()) {
        if (filled == kChunk) WriteOut();
        const std::size_t size = std::min(piece.size(), kChunk - filled);
        std::copy_n(piece.data(), size, chunk.get() + filled);
        filled += size;
        piece.remove_prefix(size);
      }
    }
  }

  void Flush() {
    WriteOut();
    TellFailure();
  }

  void Close() {
    WriteOut();
    if (std::fclose(std::exchange(stream, nullptr)) != 0 && mode == FileUse::kWrite)
      KeepFailure(errno);
    TellFailure();
  }

  // Once a block is lost, the rest has no place in the file either.
  void WriteOut() {
    if (mode != FileUse::kWrite) return;
    if (failure == 0 && std::fwrite(chunk.get(), 1, filled, stream) != filled) KeepFailure(errno);
    filled = 0;
  }

  void KeepFailure(int number) {
    if (failure == 0) failure = number;
  }

  void TellFailure() {
    if (failure == 0 || std::exchange(told, true)) return;
    throw FileError(ErrorOfSystem(failure, kDeviceIoError), path);
  }

  std::string path;
  FileUse mode;
  std::FILE* stream = nullptr;
  // Memory that isn't touched costs nothing.
  std::unique_ptr<char[]> chunk = std::make_unique_for_overwrite<char[]>(kChunk);
  std::size_t next = 0;
  std::size_t filled = 0;
  int failure = 0;    // the system's number of the first write that failed
  bool told = false;  // and whether it was thrown already
};

TextFiles::TextFiles() = default;
TextFiles::~TextFiles() = default;

std::int16_t TextFiles::FreeFile() const {
  for (std::int16_t number = 1; number <= kLastNumber; ++number) {
    if (!IsOpen(number) && !reserved_.contains(number)) return number;
  }
  throw RunTimeError(kTooManyFiles);
}

void TextFiles::Reserve(std::int16_t number) { reserved_.insert(number); }

void TextFiles::Release(std::int16_t number) { reserved_.erase(number); }

void TextFiles::OpenForInput(std::int16_t number, const std::string& path) {
  RequireFree(number);
  files_[number] = std::make_unique<File>(path, path, FileUse::kRead);
}

void TextFiles::OpenForOutput(std::int16_t number, const std::string& path) {
  RequireFree(number);
  for (auto entry = files_.begin(); entry != files_.end();) {
    const auto current = entry++;
    if (current->second->path == path || IsSameFile(current->second->path, path))
      Close(current->first);
  }
  files_[number] = std::make_unique<File>(path, OutputOf(path).path, FileUse::kWrite);
}

void TextFiles::WriteThrough(const Output& output) { standIns_[output.name] = output.path; }

Output TextFiles::OutputOf(const std::string& path) const {
  const auto standIn = standIns_.find(path);
  return {path, standIn == standIns_.end() ? path : standIn->second};
}

bool TextFiles::IsOpen(std::int16_t number) const { return files_.contains(number); }

bool TextFiles::AtEnd(std::int16_t number) const {
  File& file = Opened(number);
  return file.mode == FileUse::kRead && !file.HasByte();
}

std::string TextFiles::ReadLine(std::int16_t number) {
  std::string line;
  ReadLine(number, line);
  return line;
}

void TextFiles::ReadLine(std::int16_t number, std::string& line) {
  File& file = Opened(number);
  if (file.mode != FileUse::kRead) throw RunTimeError(kBadFileMode);
  if (!file.HasByte()) throw RunTimeError(kInputPastEndOfFile);
  file.ReadLine(line);
}

void TextFiles::Print(std::int16_t number, std::string_view line) {
  File& file = Opened(number);
  if (file.mode != FileUse::kWrite) throw RunTimeError(kBadFileMode);
  file.Print(line);
}

void TextFiles::Flush(std::int16_t number) {
  if (IsOpen(number)) Opened(number).Flush();
}

void TextFiles::Close(std::int16_t number) {
  auto entry = files_.extract(number);
  if (!entry.empty()) entry.mapped()->Close();
}

void TextFiles::CloseAll() {
  std::exception_ptr failure;
  while (!files_.empty()) {
    try {
      Close(files_.begin()->first);
    } catch (const RunTimeError&) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
}

TextFiles::File& TextFiles::Opened(std::int16_t number) const {
  const auto entry = files_.find(number);
  if (entry == files_.end()) throw RunTimeError(kBadFileNumber);
  return *entry->second;
}

void TextFiles::RequireFree(std::int16_t number) const {
  if (number < 1 || number > kLastNumber) throw RunTimeError(kBadFileNumber);
  if (IsOpen(number)) throw RunTimeError(kFileAlreadyOpen);
}

std::int64_t CountLines(const std::string& path) {
  const std::filesystem::path name = PathOf(path);
  std::error_code error;
  if (!std::filesystem::is_regular_file(name, error)) return 0;
  std::ifstream file(name, std::ios::binary);
  const auto chunk = std::make_unique_for_overwrite<char[]>(kChunk);
  std::int64_t lines = 0;
  while (file.read(chunk.get(), kChunk), file.gcount() > 0) {
    const char* end = chunk.get() + file.gcount();
    for (const char* at = chunk.get(); (at = FindByte('\n', at, end)) != end; ++at) ++lines;
  }
  return lines;
}

}  // namespace merivane::runtime
