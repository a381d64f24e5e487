#include "desktop/RunRecord.h"

#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "win/paths/FileNames.h"

namespace desktop {

namespace {

// Returns the bytes of a file, or an empty string if it cannot be read; the run itself reports the reason.
std::string BytesOf(const std::string& fileName) {
  try {
    return rtl::ReadFile(fileName);
  } catch (const rtl::EStreamError&) {
    return {};
  }
}

}  // namespace

void TRunRecord::Note(std::string_view fileName) {
  if (fileName.empty()) return;
  const auto [place, isNew] = FBefore.try_emplace(win::UpperFileName(fileName));
  if (!isNew) return;
  place->second = BytesOf(FNames.emplace_back(fileName));
}

std::vector<TReviewSet::TVersions> TRunRecord::TakeChanges() {
  std::vector<TReviewSet::TVersions> changes;
  for (std::string& name : FNames) {
    std::string& before = FBefore.at(win::UpperFileName(name));
    std::string after = BytesOf(name);
    if (after != before) changes.push_back({std::move(name), std::move(before), std::move(after)});
  }
  FNames.clear();
  FBefore.clear();
  return changes;
}

std::string TRunRecord::Log() const {
  return FLogFileName.empty() ? std::string() : BytesOf(FLogFileName);
}

}  // namespace desktop
