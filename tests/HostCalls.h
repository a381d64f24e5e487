// Makes one of the host's file functions fail, or the process die in it, by its number: the n-th call of the
// thread.
//
//   THostFault fault(3, ENOSPC);
//   EXPECT_FALSE(files.CopyFileA(source, target, false));
//   EXPECT_TRUE(fault.HasStruck());
//
// Works on every call that this program makes, through whatever library, because the functions are defined in
// it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tests {

// In place of an errno.
inline constexpr int kShortTransfer =
    -1;                           // read and write transfer half of the bytes, all other calls succeed
inline constexpr int kKill = -2;  // the process is killed before the call

// In force for its lifetime, on the thread that created it. There is one at a time.
class THostFault {
 public:
  // Strikes at the n-th call, counted from 1; with 0 at none.
  explicit THostFault(size_t n, int error = 0);
  ~THostFault();
  THostFault(const THostFault&) = delete;
  THostFault& operator=(const THostFault&) = delete;

  bool HasStruck() const { return FHasStruck; }
  // The names of the functions that were called.
  const std::vector<std::string>& Calls() const { return FCalls; }

  // Counts a call. Whether it is to fail, with errno set.
  bool Strikes(const char* function);
  // The number of bytes to transfer instead of `count`.
  size_t Transfer(size_t count);

 private:
  size_t FNumber;
  int FError;
  bool FHasStruck = false;
  std::vector<std::string> FCalls;
};

}  // namespace tests
