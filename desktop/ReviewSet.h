// The changed files of a run, each with its bytes before and after. They are shared between the window and
// the tasks that compare them, and never change.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace desktop {

struct TReviewFile {
  std::string FileName;  // full Windows path
  std::string Path;      // relative to the folder of the run, with "/"
  std::string Before;    // the file's bytes; empty if it did not exist
  std::string After;
  bool IsForm = false;
};

class TReviewSet {
 public:
  struct TVersions {
    std::string FileName;  // full Windows path
    std::string Before, After;
  };
  // `folder`, a full Windows path, is the folder of the run; if it is empty, the folder that all files have
  // in common is taken.
  TReviewSet(std::vector<TVersions> files, std::string_view folder);

  // Returns the files, ordered by name.
  const std::vector<TReviewFile>& Files() const { return FFiles; }
  const std::string& Folder() const { return FFolder; }
  // Returns the index of a file by its full Windows path, ignoring case, or -1.
  int IndexOf(std::string_view fileName) const;

  // Returns the patch of one file, or of all files. It can be applied in the folder of the run.
  static std::string PatchOf(const TReviewFile& file);
  std::string Patch() const;

 private:
  std::string FFolder;
  std::vector<TReviewFile> FFiles;
};

using TReviewSetPtr = std::shared_ptr<const TReviewSet>;

}  // namespace desktop
