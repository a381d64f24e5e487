// A temporary folder of a test, gone with all in it at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "win/Drives.h"

namespace tests {

class TTempTree {
 public:
  TTempTree() {
    std::string name = (std::filesystem::temp_directory_path() / "kvatestXXXXXX").string();
    FHostPath = mkdtemp(name.data());
  }
  ~TTempTree() {
    std::error_code ignored;
    std::filesystem::remove_all(FHostPath, ignored);
  }
  TTempTree(const TTempTree&) = delete;
  TTempTree& operator=(const TTempTree&) = delete;

  const std::string& HostPath() const { return FHostPath; }
  std::string HostPath(std::string_view name) const { return FHostPath + "/" + std::string(name); }
  std::string WindowsPath() const { return win::ToWindowsPath(FHostPath); }

  // Writes a file, making its folders. `name` is relative, with slashes.
  void Write(std::string_view name, std::string_view bytes) const {
    const std::filesystem::path path = HostPath(name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
  }

 private:
  std::string FHostPath;
};

}  // namespace tests
