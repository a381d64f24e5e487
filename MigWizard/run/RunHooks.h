// Functions by which a run reports to its caller, and asks it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace mig {

struct TFileConversion;
struct TFileReport;

// The phases of a run, in order. The number of files of a phase is known when it begins.
enum class TRunPhase {
  Units,      // converts units
  Reading,    // a project run only: reads all forms for their databases
  Forms,      // converts forms
  Flushing,   // writes the changed files and the backups to the disk
  Replacing,  // copies the changed files over the originals
  Removing,   // deletes the temporary folder, also if the run has failed or was stopped
  Restoring,  // copies backups over the originals; the only phase of a restore
};

// Returns a name of the phase for the user.
const char* NameOf(TRunPhase phase);
// Returns True if a run can be stopped in this phase, because no original has been touched.
inline bool CanStop(TRunPhase phase) {
  return phase < TRunPhase::Flushing;
}

// The progress of a run.
struct TRunProgress {
  int Done = 0;               // files done
  int Known = 0;              // files known so far; form files are added after their units have been read
  std::string_view FileName;  // full Windows path of the next file; empty after all files are converted
  TRunPhase Phase = TRunPhase::Units;
  int PhaseDone = 0;   // files of the phase that are done
  int PhaseTotal = 0;  // files of the phase
};

// A file or folder that a run left out because it could not be read or converted.
struct TLeftOut {
  std::string Name;     // full Windows path, or a bare name if no path is known
  std::string Message;  // the reason, with the name
};

// All functions may be empty. They are called on the thread that called Replace or Restore.
class TRunHooks {
 public:
  // Called before each file of a run, and before the originals are replaced. An exception stops the run.
  std::function<void(const TRunProgress&)> OnProgress;
  // Called before Flushing and Replacing, and about 20 times a second or more often from then on, with the
  // number of files done. For Removing, whose files are not counted, both numbers are 0. Must not raise.
  std::function<void(TRunPhase phase, int done, int total)> OnReplacing;
  // Called with a line for the user about a problem that does not stop the run. An exception stops the run.
  std::function<void(std::string_view message)> OnWarning;
  // Returns True if the run has to leave out the file, a full Windows path.
  std::function<bool(std::string_view fileName)> OnExclude;

  // Called for each file after its conversion, in the order of the walk. `isChanged`: the run replaces the
  // file by the bytes in `conversion`, which is valid during the call only.
  std::function<void(const std::string& fileName, const TFileConversion& conversion, bool isChanged)>
      OnConverted;
  // Called for each missing form file that a unit names, before the unit's OnConverted.
  std::function<void(const std::string& formName)> OnMissingForm;
  // Called after the walk for each form that no unit of the run names, with the number of its objects of
  // mapped classes. Such forms are searched for only if this is set and findings are collected.
  std::function<void(const std::string& formName, size_t mappedObjects)> OnOtherForm;

  // Called after the conversion, before originals are replaced, with the results. Only a run that is observed
  // (MigWizard/expert/RunObserver.h) calls it. `files` is valid during the call.
  std::function<void(const std::vector<TFileReport>& files)> OnCollected;

  void Report(const TRunProgress& progress) const {
    if (OnProgress) OnProgress(progress);
  }
  void ReportReplacing(TRunPhase phase, int done, int total) const {
    if (OnReplacing) OnReplacing(phase, done, total);
  }
  void Warn(std::string_view message) const {
    if (OnWarning) OnWarning(message);
  }
  bool IsExcluded(std::string_view fileName) const { return OnExclude && OnExclude(fileName); }
};

}  // namespace mig
