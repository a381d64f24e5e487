// Compares with the conversions of another run-time library, where both have the same rules: everything
// except numbers with a suffix, wide strings and the positions of objects. The layout of text differs, so
// the comparison ignores white space.
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"
#include "tests/GeneratedForm.h"
#include "tests/TempTree.h"

namespace {

// Returns `text` without white space outside of quotes.
std::string Bare(std::string_view text) {
  std::string bare;
  bool quoted = false;
  for (const char c : text) {
    if (c == '\'') quoted = !quoted;
    if (quoted || c > ' ') bare += c;
  }
  return bare;
}

TEST(FreePascalTest, GeneratedForms) {
  const tests::TTempTree tree;
  const auto convert = [&](const std::string& kind, std::string_view input) {
    tree.Write("in", input);
    const std::string command = std::string(KVA_FPCFORMS) + " " + kind + " " + tree.HostPath("in") + " " +
                                tree.HostPath("out") + " 1 >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return tree.Read("out");
  };
  for (uint32_t seed = 1; seed <= 20; ++seed) {
    const std::string binary = tests::TGeneratedForm(seed).Binary(2000 * seed);
    rtl::TBinaryInfo info;
    const std::string text = rtl::ObjectBinaryToText(binary, {}, info);
    const std::string theirs = convert("text", binary);
    ASSERT_EQ(Bare(text), Bare(theirs)) << seed;
    rtl::TTextInfo textInfo;
    ASSERT_TRUE(rtl::ObjectTextToBinary(text, {}, textInfo) == binary) << seed;
    ASSERT_TRUE(rtl::ObjectTextToBinary(theirs, {}, textInfo) == binary) << seed;
    ASSERT_TRUE(convert("binary", text) == binary) << seed;
    const std::string people = rtl::ObjectBinaryToText(binary, {.ForPeople = true}, info);
    ASSERT_TRUE(convert("binary", people) == binary) << seed;
  }
}

}  // namespace
