// Makes one of the host's file functions fail, kills the process in it, or does something else before it: at
// the n-th call of the thread.
//
//   THostFault fault(3, ENOSPC);
//   EXPECT_FALSE(files.CopyFileA(source, target, false));
//   EXPECT_TRUE(fault.HasStruck());
//
// It affects every call made by this program, from any library, because the program defines the functions.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tests {

// Special values of `error`.
inline constexpr int kShortTransfer =
    -1;                           // read and write transfer half of the bytes, all other calls succeed
inline constexpr int kKill = -2;  // the process is killed before the call

// Active for its lifetime, on the thread that created it. Only one can exist at a time.
class THostFault {
 public:
  // Strikes at the n-th call, counted from 1; never if `n` is 0.
  explicit THostFault(size_t n, int error = 0);
  // Calls `action` before the n-th call, which then succeeds.
  THostFault(size_t n, std::function<void()> action);
  ~THostFault();
  THostFault(const THostFault&) = delete;
  THostFault& operator=(const THostFault&) = delete;

  bool HasStruck() const { return FHasStruck; }
  // Returns the names of the functions that were called.
  const std::vector<std::string>& Calls() const { return FCalls; }

  // Counts a call. Returns whether it must fail, with errno set.
  bool Strikes(const char* function);
  // Returns the number of bytes to transfer instead of `count`.
  size_t Transfer(size_t count);

 private:
  size_t FNumber;
  int FError;
  std::function<void()> FAction;
  bool FHasStruck = false;
  std::vector<std::string> FCalls;
};

}  // namespace tests
