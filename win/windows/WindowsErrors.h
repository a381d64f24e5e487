// Errors of the system's functions, and further attempts where another program is using a file.
#pragma once

#include "win/Errors.h"
#include "win/windows/WindowsApi.h"

namespace win {

// Sets the last error and returns false: `return Fail(ERROR_ACCESS_DENIED);`
bool Fail(uint32_t code);
// The same with the reason of the system's last call that failed.
bool FailLast();

// Closes a handle of the system.
class THandle {
 public:
  THandle() = default;
  explicit THandle(HANDLE handle) : FHandle(handle) {}
  ~THandle() { Close(); }
  THandle(THandle&& other) noexcept : FHandle(other.FHandle) { other.FHandle = INVALID_HANDLE_VALUE; }
  THandle& operator=(THandle&& other) noexcept {
    if (this != &other) {
      Close();
      FHandle = other.FHandle;
      other.FHandle = INVALID_HANDLE_VALUE;
    }
    return *this;
  }
  THandle(const THandle&) = delete;
  THandle& operator=(const THandle&) = delete;

  bool IsOpen() const { return FHandle != INVALID_HANDLE_VALUE && FHandle != nullptr; }
  HANDLE Get() const { return FHandle; }
  void Close() {
    if (IsOpen()) CloseHandle(FHandle);
    FHandle = INVALID_HANDLE_VALUE;
  }

 private:
  HANDLE FHandle = INVALID_HANDLE_VALUE;
};

// Which failures are worth another attempt. Virus scanners, indexers and the IDE open a file for moments; a
// file that is to be replaced while they have it open is ERROR_ACCESS_DENIED.
enum class TInUse { Sharing, SharingOrDenied };

// Waits before attempt number `attempt`, counted from 1, which follows a failure with the system's error
// `code`. Returns false, at once, if there is to be no further attempt.
bool WaitForRetry(int attempt, uint32_t code, TInUse inUse);

// Calls `operation`, which returns false and leaves the reason in the system's last error, until it
// succeeds or there is to be no further attempt: for a third of a second at most. On failure returns false
// and sets the last error.
template <class TOperation>
bool Retry(const TOperation& operation, TInUse inUse = TInUse::Sharing) {
  for (int attempt = 1;; ++attempt) {
    if (operation()) return true;
    const uint32_t code = ::GetLastError();
    if (!WaitForRetry(attempt, code, inUse)) return Fail(code);
  }
}

}  // namespace win
