// A file descriptor with an owner.
#pragma once

#include <unistd.h>
#include <utility>

namespace win {

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
  // Closes, and reports what only comes to light then: False, with errno, where written data could not be
  // stored. Without an open file, True.
  bool Close() { return FFd < 0 || close(std::exchange(FFd, -1)) == 0; }

 private:
  void Reset() {
    if (FFd >= 0) close(std::exchange(FFd, -1));
  }

  int FFd = -1;
};

}  // namespace win
