// The entries of a folder, in the order in which Windows lists them.
//
//   TFolderEntries entries;
//   while (...) entries.Add(name, attributes);
//   return std::move(entries).Walk(reported, data);
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "win/FileSystem.h"

namespace win {

class TFolderEntries {
 public:
  // Adds an entry other than "." and "..", with the attributes that TFindData has. The name is in UTF-8.
  void Add(std::string name, uint32_t attributes);

  // Adds an entry that no Windows path can name: its name and its path as the host has them, in any bytes.
  void AddUnnamed(std::string name, bool isFolder, const std::string& path);

  // Returns a walk over the entries: "." and "..", and then those that Add has added, in NTFS' order. Sets
  // `data` to the first. Warns the user of the others, in the order of their names, unless `reported` holds
  // their message, and adds it. The object is empty afterwards.
  std::unique_ptr<TFindHandle> Walk(std::unordered_set<std::string>& reported, TFindData& data) &&;

 private:
  struct TEntry {
    std::string Upper;
    TFindData Data;
  };
  class TWalk;

  static bool Less(const TEntry& left, const TEntry& right);

  std::vector<TEntry> FEntries;
  std::vector<TUnnamedEntry> FUnnamed;
};

}  // namespace win
