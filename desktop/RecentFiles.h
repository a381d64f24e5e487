// The recently opened projects, stored in the user's settings.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

class TRecentFiles {
 public:
  static constexpr int kMost = 8;

  TRecentFiles();  // reads the settings
  // Returns full Windows paths, the most recently opened one first.
  const std::vector<std::string>& Names() const { return FNames; }
  // Moves the name to the front of the list and stores the list.
  void Add(std::string_view fileName);
  // Removes the name of a file that no longer exists.
  void Remove(std::string_view fileName);

 private:
  void Forget(std::string_view fileName);
  void Store() const;

  std::vector<std::string> FNames;
};

}  // namespace desktop
