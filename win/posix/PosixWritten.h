// What was written and has not been brought to the disk yet.
//
// Bringing it there can mean two things: asking for each file by itself (fsync), or for all that waits on a
// device (syncfs). The first costs a journal commit a file: 0.3 ms on a good disk, where a thousand files
// take 300 ms that way and 60 ms the other, and many times that on a slow one. The second waits for what
// other programs have written to the device too, which can be any amount. So a handful of files is asked for
// one by one, and more of them by device.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <sys/types.h>
#include <vector>

#include "win/posix/PosixFd.h"
#include "win/posix/PosixPlace.h"

namespace win {

// Brings one file or folder to the disk. On failure returns false, with errno. Kinds of files and folders that
// cannot be asked for are no failure.
[[nodiscard]] bool FlushFile(int fd);

class TWrittenFiles {
 public:
  // All that the process has written, by whatever thread.
  static TWrittenFiles& OfProcess();

  // The file open as `fd`, which lies on `device` at `place`, was written or is about to be.
  void Note(int fd, dev_t device, const TPlace& place);

  // Closing a file that was noted failed with errno `number`: some systems tell only then that what was
  // written could not be stored. The next Flush fails with it.
  void NoteFailure(int number);

  // Brings all that was noted to the disk, and the entries of the folders with it. False, with errno, if the
  // system could not; then it is open what has reached the disk. Afterwards nothing is noted any more.
  [[nodiscard]] bool Flush();

  // Forgets what was noted, which is left to the system, and closes it.
  void Drop();

  // Grows with each Flush and Drop. Who goes on writing to a file behind one must note it again.
  uint64_t Epoch() const { return FEpoch.load(std::memory_order_relaxed); }

 private:
  struct TNoted {
    TUniqueFd File;
    TUniqueFd Folder;
  };

  void ForgetAll();

  std::mutex FMutex;                    // for what follows
  std::vector<TNoted> FFiles;           // as long as there are few
  std::map<dev_t, TUniqueFd> FDevices;  // a file on each device
  bool FMany = false;
  bool FEverything = false;  // a descriptor could not be kept: only asking for all devices is left
  int FFailure = 0;
  std::atomic<uint64_t> FEpoch = 0;
};

}  // namespace win
