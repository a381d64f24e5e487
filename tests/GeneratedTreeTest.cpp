// Runs over generated trees in every encoding: applying the patch of --diff is the same as the run.
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include "tests/GeneratedTree.h"
#include "tests/RunCommand.h"

namespace {

namespace fs = std::filesystem;

std::map<std::string, std::string> Files(const tests::TTempTree& tree, const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(tree.HostPath(folder))) {
    const std::string name = fs::relative(entry.path(), tree.HostPath(folder)).string();
    if (entry.is_regular_file()) files[name] = tree.Read(folder + "/" + name);
  }
  return files;
}

TEST(GeneratedTreeTest, APatchIsTheRun) {
  if (!tests::HasGit()) GTEST_SKIP() << "there is no git";
  const char* const rows[] = {
      "--mode bde",
      "--mode ibx --codepage 1251",
      "--mode bde --codepage utf-8",
      "--mode bde --complete all",
      "--mode ibx --complete all --codepage 1251",
  };
  uint64_t seed = 0;
  for (const std::string options : rows) {
    const tests::TTempTree tree;
    tests::WriteGeneratedTree(tree, "src", ++seed, options.starts_with("--mode ibx"));
    const auto before = Files(tree, "src");
    const std::string run = "replace -q src --subfolders " + options;
    EXPECT_EQ(tests::RunCommand(tree, run + " --diff >the.patch"), "0||") << options;
    EXPECT_EQ(Files(tree, "src"), before) << options;
    const std::string apply =
        "cd " + tree.HostPath() +
        " && cp -r src patched && cd patched && git apply --unsafe-paths --whitespace=nowarn ../the.patch";
    EXPECT_EQ(std::system(apply.c_str()), 0) << options;
    EXPECT_EQ(tests::RunCommand(tree, run + " --no-backup --no-log"), "0||") << options;
    const auto after = Files(tree, "src"), patched = Files(tree, "patched");
    size_t changed = 0;
    for (const auto& [name, bytes] : after) {
      EXPECT_TRUE(patched.at(name) == bytes) << options << ": " << name;
      changed += bytes != before.at(name);
    }
    EXPECT_GT(changed, 40U) << options;
  }
}

}  // namespace
