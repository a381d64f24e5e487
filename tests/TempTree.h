// A temporary folder for a test, below TMPDIR or a given folder, deleted with its contents.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/TestHost.h"
#include "win/paths/Drives.h"

namespace tests {

// Names are host paths below the folder, with "/". They are used exactly as given, because a test must see
// the disk without this program's look-ups.
class TTempTree {
 public:
  explicit TTempTree(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::random_device random;
    std::filesystem::path root;
    do root = parent / ("kvatest." + std::to_string(random()));
    while (!std::filesystem::create_directory(root));
    std::filesystem::permissions(root, std::filesystem::perms::owner_all);
    FRoot = std::filesystem::canonical(root).string();
  }
  ~TTempTree() {
    std::error_code ignored;
    if (!FIsKept) std::filesystem::remove_all(FRoot, ignored);
  }
  TTempTree(const TTempTree&) = delete;
  TTempTree& operator=(const TTempTree&) = delete;

  const std::string& HostPath() const { return FRoot; }
  std::string HostPath(std::string_view name) const {
    return name.empty() ? FRoot : FRoot + "/" + std::string(name);
  }
  std::string WindowsPath(std::string_view name = {}) const { return win::ToWindowsPath(HostPath(name)); }

  // Creates the file and its folders.
  void Write(std::string_view name, std::string_view bytes) const {
    std::filesystem::create_directories(FilePath(name).parent_path());
    std::ofstream file(FilePath(name), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) ADD_FAILURE() << "cannot write " << HostPath(name);
  }
  void MakeFolder(std::string_view name) const { std::filesystem::create_directories(FilePath(name)); }
  // Returns false if the host has no links.
  bool Link(std::string_view text, std::string_view name) const {
    return MakeLink(std::string(text), HostPath(name));
  }

  bool Exists(std::string_view name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(FilePath(name)));
  }
  // Returns the contents, or "(missing)" if there is no such file.
  std::string Read(std::string_view name) const {
    std::ifstream file(FilePath(name), std::ios::binary);
    if (!file) return "(missing)";
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  // Returns the names in a folder, sorted by their bytes.
  std::vector<std::string> Names(std::string_view folder = {}) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(FilePath(folder))) {
      const std::u8string leaf = entry.path().filename().u8string();
      names.emplace_back(leaf.begin(), leaf.end());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

 protected:
  // A folder that is not deleted.
  struct TExisting {
    std::string Root;
  };
  explicit TTempTree(const TExisting& folder) : FRoot(folder.Root), FIsKept(true) {}

 private:
  // A plain string would be in the code page of the C locale on Windows.
  std::filesystem::path FilePath(std::string_view name) const {
    const std::string path = HostPath(name);
    return std::u8string(path.begin(), path.end());
  }

  std::string FRoot;
  bool FIsKept = false;
};

}  // namespace tests
