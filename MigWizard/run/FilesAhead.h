// The files of a run, read a little ahead of the walk and converted by two threads.
//
// The walk does everything that can be seen from outside, one file after the other: log, temporary files, undo
// list. Converting a file needs nothing but its bytes, so the worker of the queue can do it before the walk
// comes to the file. Which files are read when depends on their number and size only, not on the speed of a
// thread: every run does the same things in the same order.
//
// The worker takes the file that was read last, the walk needs the one that was read first, so they rarely
// meet. A file that the worker has not started when the walk needs it is converted by the walk.
#pragma once

#include <atomic>
#include <deque>
#include <exception>
#include <memory>
#include <string>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/FileVersion.h"
#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/StringList.h"

namespace mig {

// The conversion of one file, done by the thread that claims it first.
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
};

class TFilesAhead {
 public:
  // Reads the files of `names` from the first on; names may be appended to the list meanwhile. The converters
  // must be alike: Take uses `converter`, the worker `other`. No argument is owned; the converters must
  // outlive the queue.
  TFilesAhead(const rtl::TStringList& names, TWorkQueue& queue, TFileConverter& converter,
              TFileConverter& other);

  // Keeps files from index `end` on from being read. At first all files may be read.
  void ReadUpTo(int end) { FEnd = end; }

  // Returns the conversion of the next file; it is valid until the next call. Raises what reading the file
  // raised.
  [[nodiscard]] const TFileConversion& Take();
  // What the file was that Take returned last.
  const TFileVersion& Version() const { return FTaken.Version; }

 private:
  struct TFile {
    std::shared_ptr<TClaimedConversion> Conversion;
    std::exception_ptr Failure;  // if it could not be read; there is no conversion then
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
  int FNext = 0;           // index of the first file that was not read yet
  size_t FBytesAhead = 0;  // of the files in FFiles
  std::deque<TFile> FFiles;
  TFile FTaken;
};

}  // namespace mig
