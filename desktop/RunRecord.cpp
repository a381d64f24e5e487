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

void TRunRecord::Clear() {
  *this = TRunRecord();
}

void TRunRecord::Note(std::string_view fileName) {
  if (fileName.empty()) return;
  const auto [place, isNew] = FBefore.try_emplace(win::UpperFileName(fileName));
  if (!isNew) return;
  place->second = BytesOf(FNames.emplace_back(fileName));
}

std::vector<TRunRecord::TChange> TRunRecord::Changes() const {
  std::vector<TChange> changes;
  for (const std::string& name : FNames) {
    const std::string& before = FBefore.at(win::UpperFileName(name));
    std::string after = BytesOf(name);
    if (after != before) changes.push_back({name, before, std::move(after)});
  }
  return changes;
}

std::string TRunRecord::Log() const {
  return FLogFileName.empty() ? std::string() : BytesOf(FLogFileName);
}

}  // namespace desktop
