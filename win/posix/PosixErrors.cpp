#include "win/posix/PosixErrors.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "win/Errors.h"

namespace win {
namespace {

struct TErrnoRow {
  int Number;
  uint32_t Code;
};

constexpr TErrnoRow kRows[] = {
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {ENXIO, ERROR_ACCESS_DENIED},  // a socket, or a pipe without a reader: never opened here
    {ENODEV, ERROR_ACCESS_DENIED},
    {EBADF, ERROR_INVALID_HANDLE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EROFS, ERROR_WRITE_PROTECT},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {EAGAIN, ERROR_SHARING_VIOLATION},  // the lock is held by another handle
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {EEXIST, ERROR_ALREADY_EXISTS},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {EXDEV, ERROR_NOT_SAME_DEVICE},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {EILSEQ, ERROR_INVALID_NAME},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {EFBIG, ERROR_DISK_FULL},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
    {EIO, ERROR_IO_DEVICE},
    {ESTALE, ERROR_FILE_INVALID},
};

}  // namespace

std::string HostErrorMessage(uint32_t /*code*/) {
  return {};
}

uint32_t ErrorOfErrno(int number) {
  const auto* const row = std::find_if(std::begin(kRows), std::end(kRows),
                                       [number](const TErrnoRow& r) { return r.Number == number; });
  return row != std::end(kRows) ? row->Code : ERROR_GEN_FAILURE;
}

bool Fail(uint32_t code) {
  SetLastError(code);
  return false;
}

bool FailErrno(int number) {
  return Fail(ErrorOfErrno(number));
}

}  // namespace win
