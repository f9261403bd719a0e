// Text files by number, as the language run time numbers them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "runtime/new_file.h"

namespace merivane::runtime {

// Owned by the program: closing it, or dropping it, flushes and closes every file.
//
// A line that is read ends with CR LF, a lone CR or a lone LF and comes without its end. Each line
// that is printed ends with CR LF; the text inside goes out as it is. Paths are UTF-8.
//
// Failures are RunTimeErrors: 52 a number that is not open, 53 no such file, 54 reading an output
// file or printing to an input file, 55 opening a number that is open, 57 or 61 a failed write, 62
// reading past the end, 67 no number left, 70 refused, 75 a path that is no file or a line of more
// than 1 MB, 76 no such folder. A failed write is told once, with the file's name, when the file is
// flushed or closed; what is printed behind it is dropped, and the file is closed all the same.
class TextFiles {
 public:
  TextFiles();
  ~TextFiles();
  TextFiles(const TextFiles&) = delete;
  TextFiles& operator=(const TextFiles&) = delete;

  // The lowest number from 1 that is neither open nor reserved. Taking it does not reserve it.
  std::int16_t FreeFile() const;

  // A reserved number is not given out by FreeFile, whether its file is open or closed.
  void Reserve(std::int16_t number);
  void Release(std::int16_t number);

  void OpenForInput(std::int16_t number, const std::string& path);
  // Empties or makes the file. A file that is open under another number is closed first.
  void OpenForOutput(std::int16_t number, const std::string& path);

  // From now on the output's path is opened for output in place of its name.
  void WriteThrough(const Output& output);
  // Where an output of that name is written.
  Output OutputOf(const std::string& path) const;

  bool IsOpen(std::int16_t number) const;
  bool AtEnd(std::int16_t number) const;  // False for an output file
  std::string ReadLine(std::int16_t number);
  void ReadLine(std::int16_t number, std::string& line);  // takes the place of what `line` held
  void Print(std::int16_t number, std::string_view line);

  void Flush(std::int16_t number);  // nothing where the number is not open
  void Close(std::int16_t number);  // nothing where the number is not open
  void CloseAll();

 private:
  struct File;
  File& Opened(std::int16_t number) const;
  void RequireFree(std::int16_t number) const;

  std::map<std::int16_t, std::unique_ptr<File>> files_;
  std::set<std::int16_t> reserved_;
  std::map<std::string, std::string> standIns_;
};

// Lines of a file by their LF; 0 where it isn't a file that can be read twice.
std::int64_t CountLines(const std::string& path);

}  // namespace merivane::runtime
