// The one error type of the program: a number and a description, as the user sees them.
#pragma once

#include <exception>
#include <string>
#include <system_error>

namespace merivane::runtime {

// Numbers of the language run time, and those of the database objects (3001 and above).
enum ErrorNumber : int {
  kInvalidProcedureCall = 5,
  kOverflow = 6,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kOutOfStackSpace = 28,
  kBadFileNumber = 52,
  kFileNotFound = 53,
  kBadFileMode = 54,
  kFileAlreadyOpen = 55,
  kDeviceIoError = 57,
  kDiskFull = 61,
  kInputPastEndOfFile = 62,
  kTooManyFiles = 67,
  kPermissionDenied = 70,
  kPathFileAccessError = 75,
  kPathNotFound = 76,
  kObjectNotSet = 91,
  kInvalidUseOfNull = 94,
  kInvalidFileFormat = 321,
  kNoCurrentRecord = 3021,
  kItemNotFound = 3265,
  kNotUpdatable = 3251,
  kObjectClosed = 3704,
  kObjectOpen = 3705,
  kConnectionInvalid = 3709,
  kDatabaseError = -2147467259,   // anything else that the engine refuses
  kStatementError = -2147217900,  // a statement that can't be parsed
  kUnknownName = -2147217904,     // a statement that names no column
  kUnknownTable = -2147217865,    // a statement that names no table
};

class RunTimeError : public std::exception {
 public:
  // Takes the usual description of the number ("Overflow", "Type mismatch", ...).
  explicit RunTimeError(int number);
  RunTimeError(int number, std::string description)
      : number_(number), description_(std::move(description)) {}

  int Number() const { return number_; }
  const std::string& Description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  int number_;
  std::string description_;
};

// The usual description of an error number; "Application-defined or object-defined error" for a
// number that has none.
std::string ErrorText(int number);

// The number for a failure of the system (errno); `otherwise` where none stands for it.
int ErrorOfSystem(int failure, int otherwise);
int ErrorOfSystem(const std::error_code& failure, int otherwise);

// An error with its usual description and the name of the file (UTF-8) that it is about.
RunTimeError FileError(int number, const std::string& path);

// True for what the machine refuses (disk, files, the database engine), whatever the data say.
bool IsMachineFault(int number);

}  // namespace merivane::runtime
