// Looking names up without regard to case, in time that does not grow with the folder.
//
// The host distinguishes case and Windows does not. So a name that is not found as it stands is looked for
// among all names of its folder, and a run does that thousands of times: for each form that a unit names as
// "Unit1.DFM" and the disk has as "Unit1.dfm", and for each file that it creates, which must not come to
// stand beside one that differs in case only. TFolderCache reads a folder once and answers from memory after
// that.
//
// When is a listing still true? A folder's inode number and its two times (last modified, last changed, the
// latter of which nobody can set) tell of every change, but for one weakness: the times come from a clock
// that ticks. A change in the same tick as the listing leaves no trace. Hence:
//  - A listing is settled if the folder's times were clearly older than the clock when it was read. It serves
//  as
//    long as the times stay.
//  - One that is not settled serves once, and is read again the next time.
//  - A change that is made through this layer is entered in the listing, and the folder's new times with it,
//  so
//    that creating n files in a folder is not n readings. Such a listing is not settled again, and it serves
//    for a short time only, in proportion to what reading the folder takes. So what others do to a folder in
//    which a run writes at the same moment is seen after that time at the latest, and the reading costs a few
//    percent.
//  - For a moment behind each of these comparisons, and behind each own change, the folder is not asked again
//  where a name is found, or is about to be made: a run does many things in one folder, one behind the other.
//  Of own changes that follow each other in such a moment only some take the folder's times; if the last one
//  did not, the folder is read again. The exact name that is asked for is always looked for on the disk
//  first.
//  - A name that was found is proved by the operation for which it was looked up: see
//  TPosixFileSystem::AtPlace.
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

#include "win/posix/PosixPlace.h"

namespace win {

// What tells one state of a folder from another.
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
  // The name that `wanted` means: itself if it is there, else the first in NTFS' order that is equal in upper
  // case, else null. Holds until the listing changes.
  const std::string* Find(std::string_view wanted) const;
  void Add(std::string_view name);
  void Remove(std::string_view name);
  size_t Count() const { return FCount; }

 private:
  friend class TFolderCache;
  friend class TFolderChange;

  // Nearly always there is one name; the names of one upper case stand in NTFS' order.
  struct TNames {
    std::string First;
    std::vector<std::string> Others;
  };
  std::unordered_map<std::string, TNames> FNames;
  size_t FCount = 0;
  TFolderStamp FStamp;
  bool FSettled = false;
  bool FKeptCurrent = false;    // by own changes
  int64_t FUnsettledSince = 0;  // this and the times below: nanoseconds since some moment
  int64_t FReadingTime = 0;
  int64_t FSeenAt = 0;     // when the folder's stamp was last compared or taken
  int64_t FChangedAt = 0;  // when an own change was last entered
  bool FStampDue = false;  // FStamp is older than the last own change
};

class TFolderCache {
 public:
  // What Respell came to.
  enum class TOutcome {
    Found,     // `Path` is spelled as on disk
    NoEntry,   // its folder is spelled as on disk, and holds no such name; the name is as given
    NoFolder,  // some folder on the way is missing, and what is above it is spelled as on disk
    Failed     // errno tells
  };

  // Spells `place` as on disk: each component as it stands if there is such an entry, else the first entry in
  // NTFS' order that is equal in upper case. To be called where the path as given was not found.
  TOutcome Respell(TPlace& place);

  // What was known a moment ago.
  enum class TRecall {
    Unknown,  // nothing; `place` is unchanged
    Present,  // the name; `place` is spelled as on disk
    Absent    // the folder, without such a name; `place` has the folder spelled as on disk, the name as given
  };

  // Spells `place` by a listing that was true a moment ago, without asking the system; seen from the folder
  // that holds it, which spares the system the way there.
  TRecall Recall(TPlace& place);

  // Spells `place`, which is there, as on disk, where the host itself ignores case. What cannot be told
  // stays.
  void SpellAll(TPlace& place);

  // Forgets the listing of the folder in which `place` lies: it was found to be wrong.
  void Forget(const TPlace& place);
  // Forgets which listing belongs to which path: a folder went, or was put under another name.
  void ForgetPaths();

  // See TFileSystem.
  void HoldFolders(bool hold);

  // How often a folder was read so far, for measurements.
  size_t Readings() const { return FReadings; }

 private:
  friend class TFolderChange;

  struct TPathHash {
    using is_transparent = void;
    size_t operator()(std::string_view path) const { return std::hash<std::string_view>()(path); }
  };
  struct TKnownPath {
    std::string Spelled;  // the folder as on disk, with the separator at its end
    TFolderListing* Listing;
    std::shared_ptr<const TUniqueFd> Folder;  // open from the second look-up on
  };

  TFolderListing* Current(int base, const std::string& folder, const TFolderStamp& stamp);
  TFolderListing* Held(const TFolderStamp& stamp);
  static bool IsAlive(const TFolderListing& listing, int64_t now);
  void Open(TKnownPath& known);
  void CloseFolders();
  void NotePath(const TPlace& place, TFolderListing* listing, std::string_view givenFolder);
  bool Read(int base, const std::string& folder, TFolderListing& listing);

  struct TKeyHash {
    size_t operator()(const std::pair<dev_t, ino_t>& key) const {
      return static_cast<size_t>(key.first) * 0x9E3779B97F4A7C15u ^ static_cast<size_t>(key.second);
    }
  };
  std::unordered_map<std::pair<dev_t, ino_t>, TFolderListing, TKeyHash> FListings;
  std::unordered_map<std::string, TKnownPath, TPathHash, std::equal_to<>> FPaths;  // by the folder as given
  bool FHolds = false;
  size_t FOpenFolders = 0;
  size_t FTotal = 0;  // names in all listings, roughly
  size_t FReadings = 0;
};

// A change in the folder of `place` that this process makes: made before the change, committed behind it. If
// the folder's listing was true before, it is kept so. Without Commit the listing is left to find out by
// itself.
class TFolderChange {
 public:
  TFolderChange(TFolderCache& cache, const TPlace& place);
  // The changes that were made; either may be empty. What is there already is not added twice.
  void Commit(std::string_view added, std::string_view removed = {});

 private:
  TFolderCache& FCache;
  const TPlace& FPlace;
  TFolderListing* FListing = nullptr;
};

}  // namespace win
