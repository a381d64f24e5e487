// Runs kvamigrate as a script does.
#pragma once

#include "tests/TempTree.h"

namespace tests {

// Runs it in the tree. Returns "STATUS|standard output|standard error", with <dir> in place of the tree's
// path.
inline std::string RunCommand(const TTempTree& tree, const std::string& arguments) {
  // Other programs' temporary folders must not affect a test.
  static const TTempTree temporary;
  const int status = RunProgram(tree.HostPath(), temporary.HostPath(), arguments);
  std::string text = std::to_string(status) + "|" + tree.Read("out.txt") + "|" + tree.Read("err.txt");
  for (const std::string& path : {tree.WindowsPath(), tree.HostPath()})
    for (size_t at; (at = text.find(path)) != std::string::npos;) text.replace(at, path.size(), "<dir>");
  return text;
}

}  // namespace tests
