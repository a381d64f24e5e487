// Forms that are converted where they are. All of them are converted into a private temporary folder first,
// and take the place of the originals when they are safe on the disk. So each file is at every moment either
// as it was or as it is to be.
#pragma once

#include <string>
#include <vector>

#include "cli/FormBytes.h"
#include "cli/PrivateFolder.h"

namespace cli {

class TFormsInPlace {
 public:
  // Raises rtl::EFCreateError if no temporary folder can be made.
  explicit TFormsInPlace(TFormKind wanted) : FWanted(wanted) {}

  // Converts a file, or every form below a folder, as the user typed it. What cannot be read or converted is
  // said on standard error, and counts as failed. Raises rtl::EStreamError if the temporary folder cannot be
  // written, EUsage if `typed` is no path, and rtl::EAbort if the user stops the program.
  void Add(const std::string& typed);
  // Puts the converted forms in place.
  void Replace();
  // Prints the numbers of files unless `isQuiet`, and returns the exit status.
  int Finish(bool isQuiet) const;

 private:
  // A file or folder of the command line, for the names in messages.
  struct TRoot {
    std::string Typed;
    std::string Path;  // full Windows path
  };
  struct TChanged {
    std::string FileName;
    std::string Shown;
    std::string Temp;
  };

  void AddFolder(const TRoot& root);
  void AddFile(const TRoot& root, const std::string& fileName);
  static std::string Shown(const TRoot& root, const std::string& path);
  void Fail(const std::string& message);

  const TFormKind FWanted;
  TPrivateFolder FTempFolder;
  std::vector<TChanged> FChanged;
  size_t FConverted = 0;
  size_t FKept = 0;
  size_t FFailed = 0;
};

}  // namespace cli
