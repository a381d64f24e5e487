// A list of strings with an integer each, sorted for look-up.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qrl {

class TIntValueStringList {
 public:
  void Add(std::string_view key, int value);
  // Sorts by key; Lookup works from then on.
  void Sort();
  int GetCount() const { return static_cast<int>(FItems.size()); }
  const std::string& GetKey(int index) const { return FItems[static_cast<size_t>(index)].first; }
  int GetValue(int index) const { return FItems[static_cast<size_t>(index)].second; }
  // The value of the key that equals `key` when ASCII letters are upper-cased, or 0. Keys are in upper case.
  int Lookup(std::string_view key) const;

 private:
  std::vector<std::pair<std::string, int>> FItems;
};

}  // namespace qrl
