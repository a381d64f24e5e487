#include "MigWizard/run/LeftOverFolders.h"

#include <chrono>
#include <cstdint>
#include <optional>

#include "rtl/text/Files.h"
#include "win/FileApi.h"

namespace mig {
namespace {

// Returns the last-write time of a file in the folder or below it, in nanoseconds since 1970.
std::optional<int64_t> TimeOfAFile(const std::string& dir) {
  rtl::TFolderEntries entries(dir);
  while (entries.Next()) {
    if (entries.IsLink()) continue;
    if (entries.IsFolder()) {
      if (const auto time = TimeOfAFile(entries.Path())) return time;
    } else if (const auto stamp = win::GetFileStamp(entries.Path())) {
      return stamp->Modified;
    }
  }
  return std::nullopt;
}

std::string Age(const std::string& dir) {
  const std::optional<int64_t> time = TimeOfAFile(dir);
  if (!time) return "empty";
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto hours =
      std::chrono::duration_cast<std::chrono::hours>(now - std::chrono::nanoseconds(*time)).count();
  if (hours < 1) return "less than an hour old";
  if (hours < 48) return std::to_string(hours) + (hours == 1 ? " hour old" : " hours old");
  return std::to_string(hours / 24) + " days old";
}

}  // namespace

std::string DescribeLeftOverFolders(const std::vector<std::string>& taken) {
  std::string list;
  for (const std::string& name : taken) {
    // An active run holds a lock on its temporary folder.
    if (!win::LockFolder(name)) continue;
    list += (list.empty() ? "\"" : ", \"") + name + "\" (" + Age(name) + ")";
  }
  if (list.empty()) return {};
  return "Temporary folders of runs that were stopped, which you may delete: " + list + ".";
}

}  // namespace mig
