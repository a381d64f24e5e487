// The projects that were opened last, kept in the user's settings.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

class TRecentFiles {
 public:
  static constexpr int kMost = 8;

  TRecentFiles();  // reads the settings
  // Full Windows paths, the last one opened first.
  const std::vector<std::string>& Names() const { return FNames; }
  // Puts the name in front and stores the list.
  void Add(std::string_view fileName);
  // A file that is gone.
  void Remove(std::string_view fileName);

 private:
  void Forget(std::string_view fileName);
  void Store() const;

  std::vector<std::string> FNames;
};

}  // namespace desktop
