#include "runtime/run_time_error.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "runtime/code_page.h"

namespace merivane::runtime {

namespace {

struct Description {
  int number;
  const char* text;
};

constexpr Description kDescriptions[] = {
    {kInvalidProcedureCall, "Invalid procedure call or argument"},
    {kOverflow, "Overflow"},
    {kSubscriptOutOfRange, "Subscript out of range"},
    {kTypeMismatch, "Type mismatch"},
    {kOutOfStackSpace, "Out of stack space"},
    {kBadFileNumber, "Bad file name or number"},
    {kFileNotFound, "File not found"},
    {kBadFileMode, "Bad file mode"},
    {kFileAlreadyOpen, "File already open"},
    {kDeviceIoError, "Device I/O error"},
    {kDiskFull, "Disk full"},
    {kInputPastEndOfFile, "Input past end of file"},
    {kTooManyFiles, "Too many files"},
    {kPermissionDenied, "Permission denied"},
    {kPathFileAccessError, "Path/File access error"},
    {kPathNotFound, "Path not found"},
    {kObjectNotSet, "Object variable or With block variable not set"},
    {kInvalidUseOfNull, "Invalid use of Null"},
    {kInvalidFileFormat, "Invalid file format"},
    {kNoCurrentRecord,
     "Either BOF or EOF is True, or the current record has been deleted. Requested operation "
     "requires a current record."},
    {kItemNotFound,
     "Item cannot be found in the collection corresponding to the requested name or ordinal."},
    {kNotUpdatable,
     "Current Recordset does not support updating. This may be a limitation of the provider, or "
     "of the selected locktype."},
    {kObjectClosed, "Operation is not allowed when the object is closed."},
    {kObjectOpen, "Operation is not allowed when the object is open."},
    {kConnectionInvalid,
     "The connection cannot be used to perform this operation. It is either closed or invalid in "
     "this context."},
    {kDatabaseError, "Unspecified error"},
    {kStatementError, "Syntax error in the statement."},
    {kUnknownName, "No value given for one or more required parameters."},
    {kUnknownTable, "The database engine cannot find the input table or query."},
};

}  // namespace

std::string ErrorText(int number) {
  const auto* found =
      std::find_if(std::begin(kDescriptions), std::end(kDescriptions),
                   [number](const Description& entry) { return entry.number == number; });
  return found == std::end(kDescriptions) ? "Application-defined or object-defined error"
                                          : found->text;
}

int ErrorOfSystem(int failure, int otherwise) {
  switch (failure) {
    case ENOSPC:
    case EFBIG:
#ifdef EDQUOT
    case EDQUOT:
#endif
      return kDiskFull;
    case EIO:
      return kDeviceIoError;
    case ENOENT:
    case ENOTDIR:
      return kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return kPermissionDenied;
    case EMFILE:
    case ENFILE:
      return kTooManyFiles;
    case EISDIR:
      return kPathFileAccessError;
    default:
      return otherwise;
  }
}

int ErrorOfSystem(const std::error_code& failure, int otherwise) {
  return ErrorOfSystem(failure.default_error_condition().value(), otherwise);
}

RunTimeError FileError(int number, const std::string& path) {
  return {number, ErrorText(number) + ": '" + FromUtf8(path) + "'"};
}

bool IsMachineFault(int number) {
  constexpr int kFaults[] = {kFileNotFound, kDeviceIoError,    kDiskFull,
                             kTooManyFiles, kPermissionDenied, kPathFileAccessError,
                             kPathNotFound, kNotUpdatable,     kDatabaseError};
  return std::find(std::begin(kFaults), std::end(kFaults), number) != std::end(kFaults);
}

RunTimeError::RunTimeError(int number) : RunTimeError(number, ErrorText(number)) {}

}  // namespace merivane::runtime
