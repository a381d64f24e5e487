#include "MigWizard/run/ChangedFiles.h"

#include <tuple>
#include <utility>

#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

constexpr char kEdited[] = "It was changed during the run.";

// Returns why IsUnchanged or CopyOverUnchanged returned False.
std::string ReasonOfChange() {
  const uint32_t error = win::GetLastError();
  return error == win::ERROR_FILE_INVALID ? kEdited : win::SysErrorMessage(error);
}

}  // namespace

void TChangedFiles::Add(const std::string& fileName, const TFileVersion& version) {
  const auto [place, isNew] =
      FFiles.emplace(std::piecewise_construct, std::forward_as_tuple(win::UpperFileName(fileName)),
                     std::forward_as_tuple(version));
  if (isNew) FNames.push_back(fileName);
}

void TChangedFiles::RequireUnchanged() const {
  for (const std::string& name : FNames) {
    if (IsUnchanged(name, FFiles.at(win::UpperFileName(name)).Version)) continue;
    const std::string reason = ReasonOfChange();
    throw EFileEdited(rtl::Format("\"%s\" cannot be replaced. %s No file was replaced.", {name, reason}));
  }
}

bool TChangedFiles::Replace(const std::string& tempDir, const TReplaceOptions& options,
                            const TRunHooks& hooks, TWorkQueue& queue) {
  const TCopyFile copy = [&](const std::string& source, const std::string& target) {
    return ReplaceOne(source, target, options.Policy.Strict);
  };
  const auto report = [&] {
    hooks.ReportReplacing(TRunPhase::Replacing, FReplaced, static_cast<int>(FNames.size()));
  };
  if (!FNames.empty()) report();
  TCopyFailures failures;
  if (options.Dest == sdFolder) {
    failures = CopyFolder(tempDir, options.Directory, copy, queue, report);
  } else {
    std::vector<std::pair<std::string, std::string>> files;
    for (const std::string& name : FNames)
      files.emplace_back(JoinPath(tempDir, rtl::ExtractFileName(name)), name);
    failures = CopyFiles(files, copy, queue, report);
  }
  if (!FNames.empty()) report();
  for (const auto& [fileName, reason] : failures)
    hooks.Warn(rtl::Format("\"%s\" could not be replaced. %s", {fileName, reason}));
  if (!failures.empty()) ReportOthers(failures, hooks);
  return failures.empty();
}

std::string TChangedFiles::ReplaceOne(const std::string& source, const std::string& target, bool isStrict) {
  const auto file = FFiles.find(win::UpperFileName(target));
  if (isStrict && file != FFiles.end()) {
    const TFileVersion& version = file->second.Version;
    // Without a hash the stamp decides, which the replacement itself compares.
    if (version.Hash && !IsUnchanged(target, version)) return ReasonOfChange();
    if (!win::CopyOverUnchanged(source, target, version.Stamp)) return ReasonOfChange();
  } else if (!win::CopyFileA(source, target, false)) {
    return win::SysErrorMessage(win::GetLastError());
  }
  if (file != FFiles.end()) file->second.IsReplaced = true;
  ++FReplaced;
  return {};
}

void TChangedFiles::ReportOthers(const TCopyFailures& failures, const TRunHooks& hooks) const {
  for (const std::string& name : FNames) {
    if (FFiles.at(win::UpperFileName(name)).IsReplaced) continue;
    bool isReported = false;
    for (const auto& failure : failures) isReported = isReported || rtl::SameText(failure.first, name);
    if (!isReported)
      hooks.Warn(
          rtl::Format("\"%s\" was not replaced, because another file or folder before it failed.", {name}));
  }
}

}  // namespace mig
