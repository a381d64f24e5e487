// What a run tells its caller while it works, and asks it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace mig {

struct TFileConversion;

// How far a run has come.
struct TRunProgress {
  int Done = 0;               // files that are done
  int Known = 0;              // files known so far; form files are added when their units have been read
  std::string_view FileName;  // full Windows path of the next file; empty when all files are converted
};

// A file or folder that a run left as it is because it could not be read or converted.
struct TLeftOut {
  std::string Name;     // full Windows path, or a bare name if nothing more is known
  std::string Message;  // the reason, with the name
};

// All functions may be empty. They are called on the thread that called Replace or Restore.
class TRunHooks {
 public:
  // Called before each file of a run, and before the originals are replaced. An exception stops the run.
  std::function<void(const TRunProgress&)> OnProgress;
  // Called with a line for the user about something that does not stop the run. An exception stops it.
  std::function<void(std::string_view message)> OnWarning;
  // Returns True if the file, a full Windows path, is to be left out of a run.
  std::function<bool(std::string_view fileName)> OnExclude;

  // Called for each file after it was converted, in the order of the walk. `isChanged`: the run replaces the file, by
  // the bytes in `conversion`. Those are valid during the call only.
  std::function<void(const std::string& fileName, const TFileConversion& conversion, bool isChanged)>
      OnConverted;
  // Called for each form file that a unit names and that does not exist, before the unit's OnConverted.
  std::function<void(const std::string& formName)> OnMissingForm;
  // Called after the walk for each form that no unit of the run names, with the number of its objects of classes of the
  // map. Forms are looked for only if this is set and findings are collected.
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
