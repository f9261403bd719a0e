// The way of a file from its name to its place: it is made beside what stands there, and takes that
// place once it is whole. Every text, plan, picture, page and list that is written goes this way. A
// database has a way of its own, Workspace::ReplaceDatabase, for the locks on it. Paths are UTF-8.
//
//   NewFile page("page.html");
//   Write(page.Target());
//   page.Prepare();
//   page.KeepOld();
//   page.TakePlace();
//   page.Settle();      // without it, what stood before comes back
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace merivane::runtime {

// Where an output is written, and the name that its errors call it by: what the user gave.
struct Output {
  Output(std::string file) : name(file), path(std::move(file)) {}  // NOLINT: as it stands
  Output(std::string ofUser, std::string place) : name(std::move(ofUser)), path(std::move(place)) {}

  std::string name;
  std::string path;
};

// The bytes of an output on their way to where it is written. Nothing more is written behind a
// failure, which is told at the next Flush() or Close().
class OutputFile {
 public:
  // Empties the file or makes it. Error of the system, or 70.
  explicit OutputFile(Output output);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(std::string_view bytes);
  // Nothing of it stays in this process. Both: error of the system, or 57.
  void Flush();
  void Close();

 private:
  void Note(bool done);
  void Check() const;

  Output output_;
  std::FILE* stream_;
  int failure_ = 0;  // the system's number of the first write that failed; -1 without one
};

// Empties the output or makes it, and writes the bytes; see OutputFile for the errors.
void WriteOutput(const Output& output, std::string_view bytes);

// Removes the file, if it can.
void RemoveFile(const std::filesystem::path& path) noexcept;

// A file that goes with this object unless it is let go of.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::string path);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  const std::string& Path() const { return path_; }
  void LetGo() { place_.clear(); }

 private:
  std::string path_;
  std::filesystem::path place_;  // the same; at the end there may be no memory to make it
};

// One output. Several of a run are prepared before the first of them takes its place, so that all
// of them do or none. Errors name the output as the user did.
class NewFile {
 public:
  // The place is the one behind every link. A pipe, a device or a folder is no place to take: it is
  // written as it stands. Error 70 where a file stands there that may not be written.
  explicit NewFile(const std::string& name);
  ~NewFile();  // puts back, unless it is settled
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  const std::string& Name() const { return target_.name; }
  const Output& Target() const { return target_; }

  // Brings what was written to the disk, and gives it the mode of what stands in its place. Nothing
  // where nothing was written. Errors of SyncFile.
  void Prepare();
  // Gives what stands there a second name, by which PutBack finds it; where the disk knows no
  // second names, it is lost behind TakePlace.
  void KeepOld();
  // Error of the system, or 70, and what stood there stands as it was. REQUIRES: prepared.
  void TakePlace();
  // What was written stays.
  void Settle() noexcept;
  // What stood before stands again; where nothing did, nothing does. Where it can't, gives the name
  // under which it is kept, and empty otherwise.
  std::string PutBack() noexcept;

 private:
  Output target_;
  std::filesystem::path place_;  // empty: none is taken
  std::filesystem::path old_;    // the second name of what stood there; empty without one
  bool stood_ = false;
  bool moved_ = false;
};

}  // namespace merivane::runtime
