#include "win/Errors.h"

#include <algorithm>
#include <iterator>

namespace win {
namespace {

uint32_t& LastError() {
  thread_local uint32_t code = ERROR_SUCCESS;
  return code;
}

struct TErrorText {
  uint32_t Code;
  const char* Text;
};

constexpr TErrorText kTexts[] = {
    {ERROR_SUCCESS, "The operation completed successfully."},
    {ERROR_FILE_NOT_FOUND, "The system cannot find the file specified."},
    {ERROR_PATH_NOT_FOUND, "The system cannot find the path specified."},
    {ERROR_TOO_MANY_OPEN_FILES, "The system cannot open the file."},
    {ERROR_ACCESS_DENIED, "Access is denied."},
    {ERROR_INVALID_HANDLE, "The handle is invalid."},
    {ERROR_NOT_ENOUGH_MEMORY, "Not enough memory resources are available to process this command."},
    {ERROR_NOT_SAME_DEVICE, "The system cannot move the file to a different disk drive."},
    {ERROR_NO_MORE_FILES, "There are no more files."},
    {ERROR_WRITE_PROTECT, "The media is write protected."},
    {ERROR_GEN_FAILURE, "A device attached to the system is not functioning."},
    {ERROR_SHARING_VIOLATION,
     "The process cannot access the file because it is being used by another process."},
    {ERROR_FILE_EXISTS, "The file exists."},
    {ERROR_INVALID_PARAMETER, "The parameter is incorrect."},
    {ERROR_DISK_FULL, "There is not enough space on the disk."},
    {ERROR_INVALID_NAME, "The filename, directory name, or volume label syntax is incorrect."},
    {ERROR_DIR_NOT_EMPTY, "The directory is not empty."},
    {ERROR_ALREADY_EXISTS, "Cannot create a file when that file already exists."},
    {ERROR_FILENAME_EXCED_RANGE, "The filename or extension is too long."},
    {ERROR_DIRECTORY, "The directory name is invalid."},
    {ERROR_FILE_INVALID,
     "The volume for a file has been externally altered so that the opened file is no longer valid."},
    {ERROR_IO_DEVICE, "The request could not be performed because of an I/O device error."},
    {ERROR_CANT_RESOLVE_FILENAME, "The name of the file cannot be resolved by the system."},
};

}  // namespace

uint32_t GetLastError() {
  return LastError();
}

void SetLastError(uint32_t code) {
  LastError() = code;
}

std::string SysErrorMessage(uint32_t code) {
  const auto* const row = std::find_if(std::begin(kTexts), std::end(kTexts),
                                       [code](const TErrorText& text) { return text.Code == code; });
  if (row != std::end(kTexts)) return row->Text;
  std::string text = HostErrorMessage(code);
  return text.empty() ? "System error " + std::to_string(code) + "." : text;
}

}  // namespace win
