// The plan of a run, with the changes to each file, and a selection from it.
//
//   TRunPlan plan;
//   replacer.Preview(&plan);                  // writes nothing
//   TRunSelection selection(plan);            // everything
//   selection.LeaveOutGroup(plan.Files()[0].Group);
//   selection.LeaveOut(fileName, place);
//   replacer.SetSelection(&selection);
//   replacer.Replace();
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "MigWizard/passes/EditSelection.h"
#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/FileVersion.h"

namespace mig {

// A file that the run read.
struct TPlannedFile {
  std::string FileName;  // full Windows path
  TFileVersion Version;
  bool IsChanged = false;          // the run replaces it
  size_t Group = 0;                // equal for a unit and the forms that it names, which belong together
  std::vector<TListedEdit> Edits;  // in the order of the file; may be empty if only its completion changes it
};

class TRunPlan {
 public:
  // Returns the files in the order of the run, each once.
  const std::vector<TPlannedFile>& Files() const { return FFiles; }

  // Adds a file of a run; units come before their forms. Used by the run.
  void Add(const std::string& fileName, const TFileVersion& version, const TFileConversion& conversion,
           bool isChanged);

 private:
  void Join(size_t group, size_t other);

  std::vector<TPlannedFile> FFiles;
  std::unordered_map<std::string, size_t> FIndices;     // by upper-cased full name
  std::unordered_map<std::string, size_t> FFormGroups;  // of the forms that units name, likewise
};

class TRunSelection {
 public:
  // Selects everything in `plan`, which must outlive the object.
  explicit TRunSelection(const TRunPlan& plan);

  // Leave out a file, all files of a group, and an edit of a file. Names are those of the plan.
  void LeaveOut(const std::string& fileName);
  void LeaveOutGroup(size_t group);
  void LeaveOut(const std::string& fileName, size_t place);

  // --- For the run. ---
  // Returns the edits of the file that are left out, or null if none are.
  const TEditSelection* Find(const std::string& fileName) const;
  // Raises EFileEdited if the run read a file, in the version `version`, that is not in the plan or was
  // changed after the preview.
  void RequireSame(const std::string& fileName, const TFileVersion& version) const;
  // Raises EFileEdited for the first file of the plan that is not on the disk as it was then.
  void RequireUnchanged() const;

 private:
  [[noreturn]] static void RaiseChanged(const std::string& fileName);

  const TRunPlan& FPlan;
  std::unordered_map<std::string, const TPlannedFile*> FFiles;  // by upper-cased full name, as the next
  std::unordered_map<std::string, TEditSelection> FLeftOut;
};

}  // namespace mig
