// The files of a run's walk, read a little ahead of it and converted by two threads.
//
// The walk does everything that others can see, one file behind the other: the log, the temporary files, the backups.
// To convert a file takes nothing but its bytes, so that can be done before the walk is there, on another processor.
// Which files are read when depends on their number and size alone, not on how fast a thread is: a run does the same
// things in the same order every time.
//
// The thread takes the file that was read last, the walk needs the one that was read first; so they rarely meet. What
// the thread has not begun when the walk needs it, the walk converts itself, and waits for nothing.
#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "MigWizard/FileConversion.h"
#include "rtl/StringList.h"
#include "rtl/Streams.h"

namespace mig {

// A file that was read.
struct TFileInWork {
  std::string Name;
  std::unique_ptr<rtl::TFileStream> File;  // open as long as this lives
  std::exception_ptr Failure;              // why it could not be opened or read; nothing below is set then
  size_t Size = 0;                         // bytes
  std::string Bytes;                       // until they are converted
  TFileConversion Conversion;
  enum class TState { Waits, InWork, Done } State = TState::Waits;
};

class TFilesAhead {
 public:
  // Reads `names` from the first on; the list may grow at its end. The two converters do the same; `converter` is used
  // by calls of Take alone, `other` by the thread. All three must live as long.
  TFilesAhead(const rtl::TStringList& names, TFileConverter& converter, TFileConverter& other);
  // Waits for the file that is being converted, and drops the others.
  ~TFilesAhead();
  TFilesAhead(const TFilesAhead&) = delete;
  TFilesAhead& operator=(const TFilesAhead&) = delete;

  // Files from index `end` on may not be read yet. Without it, all may.
  void ReadUpTo(int end) { FEnd = end; }

  // The next file, converted. Raises what reading it raised.
  [[nodiscard]] std::unique_ptr<TFileInWork> Take();

 private:
  using TFile = std::unique_ptr<TFileInWork>;

  void ReadAhead();
  static TFile Read(const std::string& fileName);
  void Work();

  const rtl::TStringList& FNames;
  TFileConverter& FConverter;
  TFileConverter& FOther;
  int FEnd;
  int FNext = 0;           // the index of the first name that was not read yet
  size_t FBytesAhead = 0;  // of the files in FFiles
  std::deque<TFile> FFiles;

  std::mutex FMutex;  // for what follows, and the state of each file
  std::condition_variable FCame, FDone;
  std::deque<TFileInWork*> FWaiting;  // in the order of reading
  bool FEnds = false;
  std::thread FThread;
};

}  // namespace mig
