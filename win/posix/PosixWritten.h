// Tracks the files that were written but not flushed to the disk yet.
//
// The system can flush each file separately (fsync), or everything that is pending for a device (syncfs).
// The first costs one journal commit a file: 300 ms for a thousand files on a good disk, many times that on a
// slow one, where the second takes 60 ms. But the second also waits for what other programs have written to
// the device, which can be any amount. So a few files are flushed one by one, and more of them by device.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <sys/types.h>
#include <vector>

#include "win/posix/PosixFd.h"
#include "win/posix/PosixPath.h"

namespace win {

// Flushes one file or folder to the disk. On failure returns false, with errno. Succeeds for kinds of files
// and folders that cannot be flushed.
[[nodiscard]] bool FlushFile(int fd);

class TWrittenFiles {
 public:
  // Returns the object for all files that the process writes, on any thread.
  static TWrittenFiles& OfProcess();

  // Notes that the file open as `fd`, on `device` at `place`, was written or is about to be.
  void Note(int fd, dev_t device, const THostPath& place);

  // Notes that a file on `device` was renamed to `place`, or is about to be. On failure returns false, with
  // errno, and nothing is noted.
  [[nodiscard]] bool NoteName(dev_t device, const THostPath& place);

  // Records that closing a file failed with errno `number`. Some systems report write errors only then. The
  // next Flush fails with this number.
  void NoteFailure(int number);

  // Flushes all recorded files, and the entries of their folders, to the disk, and clears the list. On
  // failure returns false, with errno; it is unknown how much was written.
  [[nodiscard]] bool Flush();

  // Clears the list and closes its files without flushing them.
  void Discard();

  // Returns a number that grows with each Flush and Discard. Files written after such a call must be noted
  // again.
  uint64_t Epoch() const { return FEpoch.load(std::memory_order_relaxed); }

 private:
  struct TNoted {
    TUniqueFd File;
    TUniqueFd Folder;
  };

  void ForgetAll();

  std::mutex FMutex;                    // guards the members below
  std::vector<TNoted> FFiles;           // unless FMany
  std::map<dev_t, TUniqueFd> FDevices;  // one file of each device
  bool FMany = false;
  bool FEverything = false;  // a descriptor could not be kept, so all devices must be flushed
  int FFailure = 0;
  std::atomic<uint64_t> FEpoch = 0;
};

}  // namespace win
