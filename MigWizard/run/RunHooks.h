// Functions by which a run reports to its caller, and asks it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace mig {

struct TFileConversion;

// The progress of a run.
struct TRunProgress {
  int Done = 0;               // files done
  int Known = 0;              // files known so far; form files are added after their units have been read
  std::string_view FileName;  // full Windows path of the next file; empty after all files are converted
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

  void Report(const TRunProgress& progress) const {
    if (OnProgress) OnProgress(progress);
  }
  void Warn(std::string_view message) const {
    if (OnWarning) OnWarning(message);
  }
  bool IsExcluded(std::string_view fileName) const { return OnExclude && OnExclude(fileName); }
};

}  // namespace mig
