// Looking names up without regard to case, in time that does not grow with the folder.
//
// The host distinguishes case and Windows does not. A name that is not found as given is therefore looked for
// among all names of its folder. A run does that thousands of times: for each form that a unit names as
// "Unit1.DFM" and the disk has as "Unit1.dfm", and for each file that it creates, which must not differ in
// case only from an existing one. TFolderCache reads a folder once and then answers from memory.
//
// A listing is valid as long as the folder's inode number and its two times (last modified, last changed)
// stay the same. The times come from a clock that ticks, so a change in the same tick as the reading leaves
// no trace. Hence:
//
//  - A listing is settled if the folder's times were clearly older than the clock when it was read. It is
//    valid as long as the times stay.
//  - A listing that is not settled is used once and read again the next time.
//  - A change that is made through this layer is entered in the listing, together with the folder's new
//    times, so that creating n files in a folder does not read it n times. Such a listing is no longer
//    settled. It is used for a limited time, in proportion to the time that reading the folder takes, so
//    changes by others are seen after that time at the latest, and reading costs a few percent.
//  - For 10 ms after each comparison of the times and after each own change, the folder is not asked again
//    where a name is found or is about to be created, because a run does many things in one folder in a row.
//    Of several own changes within that time, only some read the folder's new times. If the last one did not,
//    the folder is read again. Without this rule a run takes 5 to 10 % more processor time.
//  - The exact name is always looked up on the disk first, unless the caller opens or creates it in one call.
//    A name that was found here is verified by the operation for which it was looked up: see
//    TPosixPlaces::AtPlace.
#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unordered_map>
#include <vector>

#include "win/posix/PosixPath.h"

namespace win {

// Identifies a folder and its state.
struct TFolderStamp {
  dev_t Device = 0;
  ino_t Inode = 0;
  int64_t Modified = 0;  // nanoseconds since 1970
  int64_t Changed = 0;

  friend bool operator==(const TFolderStamp&, const TFolderStamp&) = default;
};

// The names of a folder, by their upper case.
class TFolderListing {
 public:
  // Returns the name that `wanted` means: `wanted` if it exists, else the first one in NTFS' order that is
  // equal in upper case, else null. The result is valid until the listing changes.
  const std::string* Find(std::string_view wanted) const;
  void Add(std::string_view name);
  void Remove(std::string_view name);
  size_t Count() const { return FCount; }

 private:
  friend class TFolderCache;
  friend class TFolderChange;

  // The names that are equal in upper case, in NTFS' order. Nearly always there is one.
  struct TNames {
    std::string First;
    std::vector<std::string> Others;
  };
  std::unordered_map<std::string, TNames> FNames;
  size_t FCount = 0;
  TFolderStamp FStamp;
  bool FSettled = false;
  bool FKeptCurrent = false;  // by own changes
  // In nanoseconds of the monotonic clock.
  int64_t FUnsettledSince = 0;
  int64_t FReadingTime = 0;
  int64_t FSeenAt = 0;     // when the folder's stamp was last compared or read
  int64_t FChangedAt = 0;  // when an own change was last entered
  bool FStampDue = false;  // FStamp is older than the last own change
};

class TFolderCache {
 public:
  // The result of Respell.
  enum class TOutcome {
    Found,     // the path is spelled as on disk
    NoEntry,   // the folder is spelled as on disk and has no such name; the name is as given
    NoFolder,  // a folder on the way is missing; what is above it is spelled as on disk
    Failed     // errno is set
  };

  // Spells `place` as on disk: each component as given if there is such an entry, else as the first entry in
  // NTFS' order that is equal in upper case. Call it after the path as given was not found.
  TOutcome Respell(THostPath& place);

  // The result of LookUpRecent.
  enum class TRecent {
    Unknown,  // there is no recent listing; `place` is unchanged
    Present,  // the listing has the name; `place` is spelled as on disk
    Absent    // the listing lacks the name; the folder of `place` is spelled as on disk, the name is as given
  };

  // Spells `place` by a listing that was valid within the last 10 ms, without a call of the system.
  TRecent LookUpRecent(THostPath& place);

  // Spells `place`, which exists, as on disk, on a host that itself ignores case. Components that cannot be
  // looked up stay as given.
  void SpellAll(THostPath& place);

  // Forgets the listing of the folder of `place`, which has turned out to be wrong.
  void Forget(const THostPath& place);
  // Forgets which listing belongs to which path. Call it after a folder was removed or renamed.
  void ForgetPaths();

  // Returns how many folders were read so far, for measurements.
  size_t Readings() const { return FReadings; }

 private:
  friend class TFolderChange;

  struct TPathHash {
    using is_transparent = void;
    size_t operator()(std::string_view path) const { return std::hash<std::string_view>()(path); }
  };
  struct TKnownPath {
    std::string Spelled;  // the folder as on disk, with a separator at its end
    TFolderListing* Listing;
  };

  TFolderListing* Current(int base, const std::string& folder, const TFolderStamp& stamp);
  TFolderListing* Held(const TFolderStamp& stamp);
  static bool IsAlive(const TFolderListing& listing, int64_t now);
  void NotePath(const THostPath& place, TFolderListing* listing, std::string_view givenFolder);
  bool Read(int base, const std::string& folder, TFolderListing& listing);

  struct TKeyHash {
    size_t operator()(const std::pair<dev_t, ino_t>& key) const {
      return static_cast<size_t>(key.first) * 0x9E3779B97F4A7C15u ^ static_cast<size_t>(key.second);
    }
  };
  std::unordered_map<std::pair<dev_t, ino_t>, TFolderListing, TKeyHash> FListings;
  std::unordered_map<std::string, TKnownPath, TPathHash, std::equal_to<>> FPaths;  // by the folder as given
  size_t FTotal = 0;  // names in all listings, roughly
  size_t FReadings = 0;
};

// A change that this process makes in the folder of `place`. Create the object before the change and call
// Commit after it. A listing that was valid before the change then stays valid. Without Commit it becomes
// invalid by itself.
//
//   TFolderChange change(cache, place);
//   if (mkdirat(place.Base, place.Path.c_str(), mode) == 0) change.Commit(place.Leaf());
class TFolderChange {
 public:
  TFolderChange(TFolderCache& cache, const THostPath& place);
  // Enters the names that were added and removed; either may be empty. A name that exists is not added
  // twice.
  void Commit(std::string_view added, std::string_view removed = {});

 private:
  TFolderCache& FCache;
  const THostPath& FPlace;
  TFolderListing* FListing = nullptr;
};

}  // namespace win
