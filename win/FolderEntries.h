// The entries of a folder, in the order in which Windows lists them.
//
//   TFolderEntries entries;
//   while (...) entries.Add(name, attributes);
//   return std::move(entries).Walk(data);
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "win/FileSystem.h"

namespace win {

class TFolderEntries {
 public:
  // Adds an entry other than "." and "..", with the attributes that TFindData has. The name is in UTF-8.
  void Add(std::string name, uint32_t attributes);

  // Returns a walk over the entries: "." and "..", and then those that were added, in NTFS' order, whatever
  // the order in which they were added. Sets `data` to the first. The object is empty afterwards.
  std::unique_ptr<TFindHandle> Walk(TFindData& data) &&;

 private:
  struct TEntry {
    std::string Upper;
    TFindData Data;
  };
  class TWalk;

  static bool Less(const TEntry& left, const TEntry& right);

  std::vector<TEntry> FEntries;
};

}  // namespace win
