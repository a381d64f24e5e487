// Reads the files of a run a little ahead of the walk, and converts them with two threads.
//
// The walk does everything with a visible effect, one file after the other: log, temporary files, undo list.
// Converting a file needs only its bytes, so the worker of the queue can do it before the walk reaches the
// file. Which files are read when depends only on their number and size, not on the speed of a thread: every
// run does the same things in the same order.
//
// The worker takes the file that was read last and the walk needs the one that was read first, so they rarely
// compete. If the worker has not started a file when the walk needs it, the walk converts it.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/FileVersion.h"
#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/StringList.h"

namespace mig {

// The conversion of one file, done by the first thread that claims it.
class TClaimedConversion {
 public:
  TClaimedConversion(const std::string& fileName, std::string bytes)
      : FFileName(fileName), FBytes(std::move(bytes)) {}

  // Converts the file, unless the other thread has claimed it.
  void DoUnlessClaimed(TFileConverter& converter);
  // Converts the file, or waits until the other thread has converted it.
  const TFileConversion& Get(TFileConverter& converter);

 private:
  enum class TState { Free, Claimed, Done };

  const std::string FFileName;
  std::string FBytes;
  TFileConversion FResult;
  std::atomic<TState> FState = TState::Free;
  // Not std::atomic::wait: where the system has no futex, that of g++ 12 can miss the notification.
  std::mutex FMutex;
  std::condition_variable FDone;
};

class TFilesAhead {
 public:
  // Reads the files of `names` in order; names may be appended to the list later. The converters must have
  // the same settings: Take uses `converter`, the worker `other`. No argument is owned; the converters must
  // outlive the queue.
  TFilesAhead(const rtl::TStringList& names, TWorkQueue& queue, TFileConverter& converter,
              TFileConverter& other);

  // Keeps files with an index of `end` or more from being read. Without a call, all files may be read.
  void ReadUpTo(int end) { FEnd = end; }

  // Returns the conversion of the next file, valid until the next call. Passes on exceptions of reading the
  // file.
  [[nodiscard]] const TFileConversion& Take();
  // Returns the version of the file that Take returned last.
  const TFileVersion& Version() const { return FTaken.Version; }

 private:
  struct TFile {
    std::shared_ptr<TClaimedConversion> Conversion;
    std::exception_ptr Failure;  // if the file could not be read; there is no conversion then
    TFileVersion Version;
    size_t Size = 0;  // bytes
  };

  void ReadAhead();
  static TFile Read(const std::string& fileName);

  const rtl::TStringList& FNames;
  TWorkQueue& FQueue;
  TFileConverter& FConverter;
  TFileConverter& FOther;
  int FEnd;
  int FNext = 0;           // index of the first file not read yet
  size_t FBytesAhead = 0;  // of the files in FFiles
  std::deque<TFile> FFiles;
  TFile FTaken;
};

}  // namespace mig
