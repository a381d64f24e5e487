// Drive C: itself and the user's registry.
#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>
#include <stdexcept>

#include "tests/TempTree.h"
#include "tests/windows/RegistryText.h"

namespace tests {

// Writes to the root of the drive and to the user's settings only on a machine that is for tests, where
// KVA_TEST_MACHINE is set; fails elsewhere.
class TScratch : public TTempTree {
 public:
  static constexpr char kSettings[] = "settings";

  TScratch() : TTempTree(TExisting{"C:/"}) {
    if (!std::getenv("KVA_TEST_MACHINE")) throw std::runtime_error("KVA_TEST_MACHINE is not set.");
    for (const auto& entry : std::filesystem::directory_iterator("C:/")) FBefore.insert(entry.path());
    WriteRegistry("");
  }
  ~TScratch() {
    namespace fs = std::filesystem;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator("C:/")) {
      if (FBefore.contains(entry.path())) continue;
      if (entry.is_directory()) {
        for (const auto& below : fs::recursive_directory_iterator(entry.path()))
          fs::permissions(below.path(), fs::perms::owner_write, fs::perm_options::add, ignored);
      }
      fs::remove_all(entry.path(), ignored);
    }
    WriteRegistry("");
  }

  // As those of TTempTree, and for kSettings in the registry.
  bool Exists(std::string_view name) const { return Read(name) != "(missing)" || TTempTree::Exists(name); }
  std::string Read(std::string_view name) const {
    return name == kSettings ? ReadRegistry() : TTempTree::Read(name);
  }
  void Write(std::string_view name, std::string_view bytes) const {
    name == kSettings ? WriteRegistry(bytes) : TTempTree::Write(name, bytes);
  }

 private:
  std::set<std::filesystem::path> FBefore;  // what the system has in the root
};

}  // namespace tests
