// An owning file descriptor.
#pragma once

#include <cerrno>
#include <cstddef>
#include <sys/types.h>
#include <unistd.h>
#include <utility>

namespace win {

// Calls a function of the host, which returns a negative number and sets errno on failure. Repeats the call
// while a signal interrupts it: Retry<openat>(base, path, flags).
template <auto Function, class... TArguments>
auto Retry(TArguments... arguments) {
  for (;;) {
    const auto result = Function(arguments...);
    if (result >= 0 || errno != EINTR) return result;
  }
}

class TUniqueFd {
 public:
  TUniqueFd() = default;
  explicit TUniqueFd(int fd) : FFd(fd) {}
  TUniqueFd(TUniqueFd&& other) noexcept : FFd(std::exchange(other.FFd, -1)) {}
  TUniqueFd& operator=(TUniqueFd&& other) noexcept {
    if (this != &other) {
      Reset();
      FFd = std::exchange(other.FFd, -1);
    }
    return *this;
  }
  ~TUniqueFd() { Reset(); }

  int Get() const { return FFd; }
  bool IsOpen() const { return FFd >= 0; }
  int Release() { return std::exchange(FFd, -1); }
  // Closes the file. Returns false, with errno, if written bytes could not be stored, which some file
  // systems report only then. Without an open file returns true. A signal is no failure, because the file is
  // closed anyway.
  bool Close() { return FFd < 0 || close(std::exchange(FFd, -1)) == 0 || errno == EINTR; }

 private:
  void Reset() {
    if (FFd >= 0) close(std::exchange(FFd, -1));
  }

  int FFd = -1;
};

// Reads up to `count` bytes. Returns the number of bytes read, 0 at the end of the file, -1, with errno, on
// failure.
[[nodiscard]] inline ssize_t ReadSome(int fd, void* buffer, size_t count) {
  return Retry<read>(fd, buffer, count);
}

// Writes all `count` bytes. On failure returns false, with errno, and any number of them may have been
// written.
[[nodiscard]] inline bool WriteAll(int fd, const void* buffer, size_t count) {
  for (const char* from = static_cast<const char*>(buffer); count > 0;) {
    const ssize_t written = Retry<write>(fd, from, count);
    if (written == 0) errno = EIO;
    if (written <= 0) return false;
    from += written;
    count -= static_cast<size_t>(written);
  }
  return true;
}

}  // namespace win
