#include "win/windows/WindowsErrors.h"

#include <iterator>
#include <string>

#include "win/windows/WindowsText.h"

namespace win {
namespace {

constexpr DWORD kWaits[] = {10, 30, 90, 180};  // milliseconds

constexpr uint32_t kLockViolation = 33;  // a part of the file is locked
constexpr uint32_t kUserMapped = 1224;   // a program has the file in its memory
constexpr uint32_t kBadPathName = 161;
constexpr uint32_t kBadNetPath = 53;
constexpr uint32_t kBadNetName = 67;

// Returns the code of win/Errors.h that callers know for one of the system's.
uint32_t UsualCode(uint32_t code) {
  switch (code) {
    case kLockViolation:
    case kUserMapped:
      return ERROR_SHARING_VIOLATION;
    case kBadPathName:
      return ERROR_INVALID_NAME;
    case kBadNetPath:
    case kBadNetName:
      return ERROR_PATH_NOT_FOUND;
    default:
      return code;
  }
}

}  // namespace

bool Fail(uint32_t code) {
  SetLastError(UsualCode(code));
  return false;
}

bool FailLast() {
  return Fail(::GetLastError());
}

bool WaitForRetry(int attempt, uint32_t code, TInUse inUse) {
  const bool isInUse = UsualCode(code) == ERROR_SHARING_VIOLATION ||
                       (inUse == TInUse::SharingOrDenied && code == ERROR_ACCESS_DENIED);
  if (!isInUse || attempt > static_cast<int>(std::size(kWaits))) return false;
  Sleep(kWaits[attempt - 1]);
  return true;
}

std::string HostErrorMessage(uint32_t code) {
  wchar_t text[512];
  const DWORD flags =
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
  DWORD length = 0;
  // English, like all other texts of the program, where the system has it.
  for (const int language :
       {MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT)}) {
    if (length == 0)
      length =
          FormatMessageW(flags, nullptr, code, static_cast<DWORD>(language), text, std::size(text), nullptr);
  }
  while (length > 0 && text[length - 1] <= L' ') --length;
  return ToUtf8OrReplaced({text, length});
}

}  // namespace win
