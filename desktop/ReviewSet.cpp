#include "desktop/ReviewSet.h"

#include <algorithm>

#include "MigWizard/run/FileUtils.h"
#include "host/Modules.h"
#include "report/FilePatch.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace desktop {

namespace {

std::string CommonFolder(const std::vector<TReviewSet::TVersions>& files) {
  std::string common = files.empty() ? std::string() : rtl::ExtractFileDir(files.front().FileName);
  for (const TReviewSet::TVersions& file : files) {
    const std::string name = win::UpperFileName(file.FileName);
    while (!name.starts_with(win::UpperFileName(mig::JoinPath(common, "")))) {
      const std::string parent = rtl::ExtractFileDir(common);
      if (parent == common) return {};
      common = parent;
    }
  }
  return common;
}

}  // namespace

TReviewSet::TReviewSet(std::vector<TVersions> files, std::string_view folder)
    : FFolder(folder.empty() ? CommonFolder(files) : folder) {
  FFiles.reserve(files.size());
  for (TVersions& file : files) {
    // Use the name as on disk, because resource directives may spell it differently.
    std::string name = win::FileSystem().GetLongPathNameA(file.FileName);
    std::string path = report::PatchPath(FFolder, name);
    const bool isForm = host::IsFormFile(name);
    FFiles.push_back(
        {std::move(name), std::move(path), std::move(file.Before), std::move(file.After), isForm});
  }
  std::stable_sort(FFiles.begin(), FFiles.end(), [](const TReviewFile& left, const TReviewFile& right) {
    return win::FileNameLess(left.FileName, right.FileName);
  });
}

int TReviewSet::IndexOf(std::string_view fileName) const {
  const std::string wanted = win::UpperFileName(fileName);
  for (size_t i = 0; i < FFiles.size(); ++i) {
    if (win::UpperFileName(FFiles[i].FileName) == wanted) return static_cast<int>(i);
  }
  return -1;
}

std::string TReviewSet::PatchOf(const TReviewFile& file) {
  return report::FilePatch(file.Path, file.Before, file.After, /*ignoreSpace=*/false);
}

std::string TReviewSet::Patch() const {
  std::string patch;
  for (const TReviewFile& file : FFiles) patch += PatchOf(file);
  return patch;
}

}  // namespace desktop
