// What the loadable module exports.
#include <cstdlib>
#include <gtest/gtest.h>

#include "tests/TempTree.h"

namespace {

TEST(ExpertModuleTest, ExportsItsEntryPointAlone) {
  const tests::TTempTree tree;
  const std::string command = "nm -j -D --defined-only " KVA_EXPERT_MODULE " >";
  EXPECT_EQ(std::system((command + tree.HostPath("names")).c_str()), 0);
  EXPECT_EQ(tree.Read("names"), "INITWIZARD0001\n");
}

}  // namespace
