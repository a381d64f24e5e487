#include "win/posix/PosixFolders.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "win/paths/FileNames.h"
#include "win/posix/PosixDirectory.h"

namespace win {
namespace {

constexpr int64_t kMillisecond = 1000000;
// Longer than the slowest tick of a kernel's clock, 10 ms.
constexpr int64_t kClearlyOlder = 30 * kMillisecond;
// The same on file systems that store whole seconds, or as FAT even seconds.
constexpr int64_t kClearlyOlderInSeconds = 2500 * kMillisecond;
// How long own changes keep a listing in use: the minimum, the maximum, and as a multiple of the time that
// reading it took.
constexpr int64_t kShortest = 100 * kMillisecond;
constexpr int64_t kLongest = 5000 * kMillisecond;
constexpr int64_t kReadingTimes = 30;
// How long a folder's times are trusted after they were compared.
constexpr int64_t kTrustTime = 10 * kMillisecond;
// The maximum number of paths of folders in the cache.
constexpr size_t kMostPaths = 10000;
// The maximum number of names in the cache, in all folders.
constexpr size_t kMostNames = 1000000;

int64_t Nanoseconds(const timespec& time) {
  return static_cast<int64_t>(time.tv_sec) * 1000 * kMillisecond + time.tv_nsec;
}

int64_t ClockTime(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return Nanoseconds(time);
}

// Returns the time of the monotonic clock.
int64_t Now() {
  return ClockTime(CLOCK_MONOTONIC);
}

TFolderStamp StampOf(const struct stat& info) {
#ifdef __APPLE__
  return {info.st_dev, info.st_ino, Nanoseconds(info.st_mtimespec), Nanoseconds(info.st_ctimespec)};
#else
  return {info.st_dev, info.st_ino, Nanoseconds(info.st_mtim), Nanoseconds(info.st_ctim)};
#endif
}

// Returns false, with errno, if there is no such folder; ENOTDIR if there is something else of that name.
bool ReadStamp(int base, const std::string& folder, TFolderStamp& stamp) {
  struct stat info {};
  if (Retry<fstatat>(base, folder.c_str(), &info, 0) != 0) return false;
  if (!S_ISDIR(info.st_mode)) {
    errno = ENOTDIR;
    return false;
  }
  stamp = StampOf(info);
  return true;
}

bool IsClearlyOlder(const TFolderStamp& stamp, int64_t date) {
  constexpr int64_t kSecond = 1000 * kMillisecond;
  const bool wholeSeconds = stamp.Modified % kSecond == 0 && stamp.Changed % kSecond == 0;
  return date - std::max(stamp.Modified, stamp.Changed) >
         (wholeSeconds ? kClearlyOlderInSeconds : kClearlyOlder);
}

// Returns whether the path is absolute. A relative path means another file after the process has changed
// its folder.
bool IsFull(const THostPath& place) {
  return place.Base == AT_FDCWD && place.Path.starts_with('/');
}

const std::string& OrCurrent(const std::string& folder) {
  static const std::string current = ".";
  return folder.empty() ? current : folder;
}

}  // namespace

const std::string* TFolderListing::Find(std::string_view wanted) const {
  const auto found = FNames.find(UpperFileName(wanted));
  if (found == FNames.end()) return nullptr;
  const TNames& names = found->second;
  const auto exact = std::find(names.Others.begin(), names.Others.end(), wanted);
  return exact != names.Others.end() ? &*exact : &names.First;
}

void TFolderListing::Add(std::string_view name) {
  std::string added(name);
  const auto found = FNames.find(UpperFileName(name));
  if (found == FNames.end()) {
    FNames.emplace(UpperFileName(name), TNames{std::move(added), {}});
  } else {
    TNames& names = found->second;
    if (names.First == name ||
        std::find(names.Others.begin(), names.Others.end(), name) != names.Others.end()) {
      return;
    }
    names.Others.reserve(names.Others.size() + 1);
    if (FileNameLess(added, names.First)) std::swap(added, names.First);
    names.Others.insert(std::upper_bound(names.Others.begin(), names.Others.end(), added, FileNameLess),
                        std::move(added));
  }
  ++FCount;
}

void TFolderListing::Remove(std::string_view name) {
  const auto found = FNames.find(UpperFileName(name));
  if (found == FNames.end()) return;
  TNames& names = found->second;
  auto other = std::find(names.Others.begin(), names.Others.end(), name);
  if (names.First == name) {
    if (names.Others.empty()) {
      FNames.erase(found);
      --FCount;
      return;
    }
    other = names.Others.begin();
    names.First.swap(*other);
  }
  if (other == names.Others.end()) return;
  names.Others.erase(other);
  --FCount;
}

TFolderCache::TOutcome TFolderCache::Respell(THostPath& place) {
  const std::string wanted = place.Path;
  place.Listing = nullptr;
  // Find the deepest folder that exists as given: nearly always the one that contains the name.
  size_t known = place.LeafStart();
  TFolderStamp stamp;
  while (!ReadStamp(place.Base, OrCurrent(wanted.substr(0, known)), stamp)) {
    if (errno == ENOTDIR) return TOutcome::NoFolder;
    if (errno != ENOENT || known <= 1) return errno == ENOENT ? TOutcome::NoFolder : TOutcome::Failed;
    known = wanted.rfind('/', known - 2) + 1;
  }
  std::string spelled = wanted.substr(0, known);
  for (;;) {
    const size_t end = std::min(wanted.find('/', known), wanted.size());
    const std::string_view name = std::string_view(wanted).substr(known, end - known);
    TFolderListing* const listing = Current(place.Base, OrCurrent(spelled), stamp);
    // Leave only a folder that may be entered but not read to the operation itself.
    if (!listing && errno != EACCES) return TOutcome::Failed;
    const std::string* const found = listing ? listing->Find(name) : nullptr;
    spelled += found ? std::string_view(*found) : name;
    known = end + 1;
    if (end == wanted.size()) {
      place.Path = spelled;
      place.Listing = listing;
      NotePath(place, listing, std::string_view(wanted).substr(0, wanted.rfind('/') + 1));
      return found || !listing ? TOutcome::Found : TOutcome::NoEntry;
    }
    spelled += '/';
    const bool goesOn = (found || !listing) && ReadStamp(place.Base, spelled, stamp);
    if (!goesOn) {
      place.Path = spelled.append(wanted, known);
      const bool missing = (listing && !found) || errno == ENOTDIR || errno == ENOENT;
      return missing ? TOutcome::NoFolder : TOutcome::Failed;
    }
  }
}

TFolderCache::TRecent TFolderCache::LookUpRecent(THostPath& place) {
  const std::string_view given = place.Leaf();
  if (FPaths.empty() || !IsFull(place) || given.empty() || given == "." || given == "..")
    return TRecent::Unknown;
  const auto known = FPaths.find(place.Folder());
  if (known == FPaths.end()) return TRecent::Unknown;
  TFolderListing& listing = *known->second.Listing;
  const int64_t now = Now();
  if (now - listing.FSeenAt >= kTrustTime || !IsAlive(listing, now)) return TRecent::Unknown;
  const std::string* const found = listing.Find(given);
  const std::string_view name = found ? std::string_view(*found) : given;
  place.Listing = &listing;
  place.Path = std::string(known->second.Spelled).append(name);
  return found ? TRecent::Present : TRecent::Absent;
}

void TFolderCache::ForgetPaths() {
  FPaths.clear();
}

// Caches the listing of the folder of `place`, which is spelled as on disk and was passed as `givenFolder`.
void TFolderCache::NotePath(const THostPath& place, TFolderListing* listing, std::string_view givenFolder) {
  if (!listing || !IsFull(place) || !(listing->FSettled || listing->FKeptCurrent)) return;
  if (FPaths.size() >= kMostPaths) ForgetPaths();
  const auto known = FPaths.find(givenFolder);
  if (known == FPaths.end()) {
    FPaths.emplace(givenFolder, TKnownPath{std::string(place.Folder()), listing});
  } else if (known->second.Listing != listing || known->second.Spelled != place.Folder()) {
    known->second = {std::string(place.Folder()), listing};
  }
}

void TFolderCache::SpellAll(THostPath& place) {
  const std::string given = place.Path;
  place.Path.resize(given[0] == '/' ? 1 : 0);
  place.Listing = nullptr;
  for (size_t start = place.Path.size(); start < given.size();) {
    const size_t end = std::min(given.find('/', start), given.size());
    const std::string_view name = std::string_view(given).substr(start, end - start);
    TFolderStamp stamp;
    const std::string& folder = OrCurrent(place.Path);
    const TFolderListing* const listing =
        ReadStamp(place.Base, folder, stamp) ? Current(place.Base, folder, stamp) : nullptr;
    const std::string* const found = listing ? listing->Find(name) : nullptr;
    place.Path += found ? std::string_view(*found) : name;
    if (end < given.size()) place.Path += '/';
    start = end + 1;
  }
}

void TFolderCache::Forget(const THostPath& place) {
  TFolderStamp stamp;
  if (!ReadStamp(place.Base, place.FolderPath(), stamp)) return;
  const auto found = FListings.find({stamp.Device, stamp.Inode});
  if (found == FListings.end()) return;
  FTotal -= std::min(FTotal, found->second.Count());
  ForgetPaths();
  FListings.erase(found);
}

// Returns whether the listing may still be used if the folder's stamp has not changed.
bool TFolderCache::IsAlive(const TFolderListing& listing, int64_t now) {
  return listing.FSettled || now - listing.FUnsettledSince <
                                 std::clamp(kReadingTimes * listing.FReadingTime, kShortest, kLongest);
}

// Returns the cached listing of the folder if it is valid as far as can be known, else null.
TFolderListing* TFolderCache::Held(const TFolderStamp& stamp) {
  const auto found = FListings.find({stamp.Device, stamp.Inode});
  if (found == FListings.end() || found->second.FStampDue || !(found->second.FStamp == stamp)) return nullptr;
  TFolderListing& listing = found->second;
  const int64_t now = Now();
  if (!IsAlive(listing, now)) return nullptr;
  listing.FSeenAt = now;
  return &listing;
}

// Returns the listing of a folder whose stamp was just read. Reads the folder if necessary. On failure
// returns null, with errno.
TFolderListing* TFolderCache::Current(int base, const std::string& folder, const TFolderStamp& stamp) {
  TFolderListing* const current = Held(stamp);
  if (current && (current->FSettled || current->FKeptCurrent)) return current;
  if (FTotal > kMostNames) {
    ForgetPaths();
    FListings.clear();
    FTotal = 0;
  }
  TFolderListing listing;
  if (!Read(base, folder, listing)) return nullptr;
  FTotal += listing.Count();
  TFolderListing& held = FListings[{listing.FStamp.Device, listing.FStamp.Inode}];
  FTotal -= std::min(FTotal, held.Count());
  held = std::move(listing);
  return &held;
}

bool TFolderCache::Read(int base, const std::string& folder, TFolderListing& listing) {
  ++FReadings;
  const int64_t begin = Now();
  const int64_t date = ClockTime(CLOCK_REALTIME);
  TPosixDirectory directory(TUniqueFd(Retry<openat>(base, folder.c_str(), kOpenFolder)));
  struct stat before {};
  if (directory.Error() == 0 && Retry<fstat>(directory.Fd(), &before) != 0) return false;
  while (const dirent* const entry = directory.Next()) listing.Add(entry->d_name);
  if (directory.Error() != 0) {
    errno = directory.Error();
    return false;
  }
  // The stamp is older than the reading, so a change during the reading shows as a later one.
  listing.FStamp = StampOf(before);
  listing.FSettled = IsClearlyOlder(listing.FStamp, date);
  listing.FUnsettledSince = begin;
  listing.FSeenAt = begin;
  listing.FReadingTime = Now() - begin;
  return true;
}

TFolderChange::TFolderChange(TFolderCache& cache, const THostPath& place)
    : FCache(cache), FPlace(place), FListing(place.Listing) {
  TFolderStamp stamp;
  if (FListing || cache.FListings.empty()) return;
  if (ReadStamp(place.Base, place.FolderPath(), stamp)) FListing = cache.Held(stamp);
}

void TFolderChange::Commit(std::string_view added, std::string_view removed) {
  if (!FListing) return;
  const int64_t now = Now();
  const bool isOneOfMany =
      now - FListing->FChangedAt < kTrustTime && now - FListing->FSeenAt < kTrustTime / 2;
  // The listing is invalid until all names are entered, so also if memory runs out.
  FListing->FStampDue = true;
  FListing->FChangedAt = now;
  if (!isOneOfMany) {
    TFolderStamp stamp;
    if (!ReadStamp(FPlace.Base, FPlace.FolderPath(), stamp)) return;
    if (stamp.Device != FListing->FStamp.Device || stamp.Inode != FListing->FStamp.Inode) return;
    FListing->FStamp = stamp;
    FListing->FSeenAt = now;
  }
  if (FListing->FSettled) FListing->FUnsettledSince = now;
  FListing->FSettled = false;
  const int64_t seenAt = std::exchange(FListing->FSeenAt, now - kTrustTime);
  if (!removed.empty()) FListing->Remove(removed);
  if (!added.empty()) FListing->Add(added);
  FListing->FSeenAt = seenAt;
  FListing->FKeptCurrent = true;
  FListing->FStampDue = isOneOfMany;
  if (!isOneOfMany) FCache.NotePath(FPlace, FListing, FPlace.Folder());
}

}  // namespace win
