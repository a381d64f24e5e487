// The findings of a whole run: those of single files, and those that need several files.
//
//   TRunFindings findings(classes, oldNames);
//   findings.AddFile(fileName, conversion, isChanged, backupName);  // for each file, in the order of the walk
//   const std::vector<TFileReport> files = findings.Finish();
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/passes/Findings.h"
#include "MigWizard/passes/OldNames.h"

namespace mig {

// The outcome of one file. Names are UTF-8.
struct TFileReport {
  std::string FileName;  // full Windows path
  bool IsUnit = false;
  bool IsBinary = false;
  bool IsInRun = true;   // False for a form that was only inspected
  std::string Encoding;  // "source code page", "UTF-8", "UTF-16"; empty if the file was not inspected
  int Changes = 0;
  bool IsChanged = false;
  bool NamesNewUnits = false;              // of a unit: it named one of the new units before the run
  std::string BackupName;                  // full Windows path; empty without a backup
  std::vector<TConvertedClass> Converted;  // of a form
  std::vector<TFinding> Findings;          // in the order of the file
};

class TRunFindings {
 public:
  // Both must outlive the object.
  TRunFindings(const TClassMap& classes, const TOldNames& oldNames)
      : FClasses(classes), FOldNames(oldNames) {}

  // Adds a file. `isChanged`: the run replaces the file. `backupName` may be empty.
  void AddFile(const std::string& fileName, const TFileConversion& conversion, bool isChanged,
               const std::string& backupName);
  // Adds a missing form file, which the next file of AddFile names.
  void AddMissingForm(const std::string& formName);
  // Adds a form that belongs to no unit of the run, with the number of its objects of mapped classes.
  void AddOtherForm(const std::string& fileName, size_t mappedObjects);

  // Returns the files in the order in which they were added, with all findings. Leaves the object empty.
  std::vector<TFileReport> Finish();

 private:
  // A unit's outline, and its index in FFiles.
  struct TUnit {
    const TUnitOutline* Outline;
    size_t File;
  };
  // A declaration, and the unit that contains it.
  struct TFound {
    const TDeclaration* Declaration = nullptr;
    const TUnit* Unit = nullptr;
  };

  void TakeFindings();
  bool NeedsDeclarations() const;
  void ReadInterfaces();
  void Index();
  bool Sees(const TUnit& unit, const TFound& found) const;
  void ResolveUses(const TUnit& unit);
  bool IsUsersOwn(const TUnit& unit, const TNameUse& use) const;
  TFound Resolve(const TUnit& unit, const TNameUse& use) const;
  bool MayInheritNames(const std::string& className) const;
  TFound FindFirst(const TUnit& unit, const TNameUse& use) const;
  TFound FindAfterUnit(const TUnit& unit, const TNameUse& use, size_t& parts) const;
  TFound FindMember(const std::string& className, const std::string& member) const;
  std::string ConvertedClassOf(const std::string& type, const std::string& member) const;
  void RemoveFindingsOfOwnNames(TFileReport& file, const std::unordered_set<std::string>& ownUnits) const;

  const TClassMap& FClasses;
  const TOldNames& FOldNames;
  std::vector<TFileReport> FFiles;
  // The findings of files, and the index of each file in FFiles. They own the outlines.
  std::vector<std::pair<std::shared_ptr<TFileFindings>, size_t>> FKept;
  std::vector<std::string> FMissingForms;
  std::vector<TUnit> FUnits;
  std::unordered_map<std::string, std::vector<TFound>> FNames;  // of units, by lower case
  // By lower case. A class declared by several units is ambiguous, and left out of look-ups.
  std::unordered_map<std::string, std::vector<const TClassOutline*>> FOutlines;
};

}  // namespace mig
