// The files of a run's walk, read a little ahead of it and converted by two threads.
//
// The walk does everything that others can see, one file behind the other: the log, the temporary files, the
// undo list. To convert a file takes nothing but its bytes, so that can be done before the walk is there, on
// another processor. Which files are read when depends on their number and size alone, not on how fast a
// thread is: a run does the same things in the same order every time.
//
// The helper takes the file that was read last, the walk needs the one that was read first; so they rarely
// meet. What the helper has not begun when the walk needs it, the walk converts itself, and waits for
// nothing.
#pragma once

#include <atomic>
#include <deque>
#include <exception>
#include <memory>
#include <string>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/Team.h"
#include "rtl/text/StringList.h"

namespace mig {

// One file's conversion, done by whoever claims it first.
class TClaimedConversion {
 public:
  TClaimedConversion(const std::string& fileName, std::string bytes)
      : FFileName(fileName), FBytes(std::move(bytes)) {}

  // Converts the file, unless somebody else has claimed that.
  void DoUnlessClaimed(TFileConverter& converter);
  // Converts the file, or waits until it is converted.
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
  // Reads `names` from the first on; the list may grow at its end. The two converters do the same;
  // `converter` is used by calls of Take alone, `other` by the helper. All four are not owned; the converters
  // must live as long as the team.
  TFilesAhead(const rtl::TStringList& names, TTeam& team, TFileConverter& converter, TFileConverter& other);

  // Files from index `end` on may not be read yet. Without it, all may.
  void ReadUpTo(int end) { FEnd = end; }

  // What is made of the next file; it holds until the next call. Raises what reading the file raised.
  [[nodiscard]] const TFileConversion& Take();

 private:
  struct TFile {
    std::shared_ptr<TClaimedConversion> Conversion;
    std::exception_ptr Failure;  // why it could not be read; there is no conversion then
    size_t Size = 0;             // bytes
  };

  void ReadAhead();
  static TFile Read(const std::string& fileName);

  const rtl::TStringList& FNames;
  TTeam& FTeam;
  TFileConverter& FConverter;
  TFileConverter& FOther;
  int FEnd;
  int FNext = 0;           // the index of the first name that was not read yet
  size_t FBytesAhead = 0;  // of the files in FFiles
  std::deque<TFile> FFiles;
  TFile FTaken;
};

}  // namespace mig
