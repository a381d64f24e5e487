// Converts forms in place. All forms are first converted into a private temporary folder, and replace the
// originals after they are flushed to the disk. So each file is always either unchanged or completely
// converted.
#pragma once

#include <string>
#include <vector>

#include "cli/FormBytes.h"
#include "cli/PrivateFolder.h"

namespace cli {

class TFormsInPlace {
 public:
  // Raises rtl::EFCreateError if no temporary folder can be created.
  explicit TFormsInPlace(TFormKind wanted) : FWanted(wanted) {}

  // Converts a file, or every form below a folder, as the user typed it. A form that cannot be read or
  // converted is reported on standard error and counts as failed. Raises rtl::EStreamError if the temporary
  // folder cannot be written, EUsage if `typed` is no path, and rtl::EAbort if the user stops the program.
  void Add(const std::string& typed);
  // Replaces the originals by the converted forms.
  void Replace();
  // Prints the numbers of files unless `isQuiet`. Returns the exit status.
  int Finish(bool isQuiet) const;

 private:
  // A file or folder of the command line, with its names for messages.
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
