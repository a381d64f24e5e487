#include "MigWizard/run/FileVersion.h"

#include <chrono>
#include <functional>

#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/Errors.h"

namespace mig {
namespace {

// Two writes within this time may leave the same time stamp. Generous, because some file systems have a
// resolution of 2 seconds.
constexpr std::chrono::nanoseconds kCoarsestTime = std::chrono::seconds(3);

uint64_t HashOf(std::string_view bytes) {
  return std::hash<std::string_view>()(bytes);
}

// Returns the hash, or nullopt with win::GetLastError set if the file cannot be read.
std::optional<uint64_t> HashOfFile(const std::string& fileName) {
  try {
    return HashOf(rtl::TFileStream(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone).ReadToEnd());
  } catch (const rtl::EStreamError&) {
    return std::nullopt;
  }
}

bool Differs() {
  win::SetLastError(win::ERROR_FILE_INVALID);
  return false;
}

}  // namespace

TFileVersion VersionOf(rtl::TFileStream& file, std::string_view bytes) {
  const std::optional<win::TFileStamp> stamp = file.Handle().Stamp();
  if (!stamp)
    throw rtl::EReadError(rtl::Format("Cannot read file \"%s\". %s",
                                      {file.FileName(), win::SysErrorMessage(win::GetLastError())}));
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const bool isRecent = std::chrono::nanoseconds(stamp->Modified) + kCoarsestTime > now;
  return {*stamp, isRecent ? std::optional(HashOf(bytes)) : std::nullopt};
}

bool IsUnchanged(const std::string& fileName, const TFileVersion& version) {
  const std::optional<win::TFileStamp> stamp = win::FileSystem().GetFileStamp(fileName);
  if (!stamp) return false;
  if (*stamp != version.Stamp) return Differs();
  if (!version.Hash) return true;
  const std::optional<uint64_t> hash = HashOfFile(fileName);
  return hash && (*hash == *version.Hash || Differs());
}

bool IsSameVersion(const std::string& fileName, const TFileVersion& earlier, const TFileVersion& later) {
  if (earlier.Stamp != later.Stamp) return false;
  if (!earlier.Hash) return true;
  return later.Hash ? *earlier.Hash == *later.Hash : IsUnchanged(fileName, earlier);
}

bool IsTrueBackup(const std::string& fileName, const std::string& backupName, const TFileVersion& version) {
  const std::optional<win::TFileStamp> stamp = win::FileSystem().GetFileStamp(backupName);
  if (!stamp) return false;
  if (stamp->Size != version.Stamp.Size) return Differs();
  if (stamp->Modified == version.Stamp.Modified && !version.Hash) return true;
  const std::optional<uint64_t> expected = version.Hash ? version.Hash : HashOfFile(fileName);
  const std::optional<uint64_t> found = HashOfFile(backupName);
  return expected && found && (*expected == *found || Differs());
}

}  // namespace mig
