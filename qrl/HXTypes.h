// A sorted list of strings, each with an integer.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qrl {

class TIntValueStringList {
 public:
  void Add(std::string_view key, int value);
  // Sorts by key. Must be called after the last Add and before Lookup.
  void Sort();
  int GetCount() const { return static_cast<int>(FItems.size()); }
  const std::string& GetKey(int index) const { return FItems[static_cast<size_t>(index)].first; }
  int GetValue(int index) const { return FItems[static_cast<size_t>(index)].second; }
  // Returns the value of the key that equals `key`, ignoring the case of ASCII letters, or 0.
  int Lookup(std::string_view key) const;

 private:
  std::vector<std::pair<std::string, int>> FItems;
};

}  // namespace qrl
