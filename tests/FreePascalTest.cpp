// Agreement with the conversions of another run-time library, where both have the same rules: everything but
// numbers with a suffix, wide strings and the positions of objects. Text is laid out differently; what is
// compared is all but white space.
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "rtl/ObjectBinaryToText.h"
#include "rtl/ObjectTextToBinary.h"
#include "tests/GeneratedForm.h"
#include "tests/TempTree.h"

namespace {

// Without the white space outside of quotes.
std::string Bare(std::string_view text) {
  std::string bare;
  bool quoted = false;
  for (const char c : text) {
    if (c == '\'') quoted = !quoted;
    if (quoted || c > ' ') bare += c;
  }
  return bare;
}

class FreePascalTest : public testing::Test {
 protected:
  std::string Convert(const std::string& kind, std::string_view input) {
    FTree.Write("in", input);
    const std::string command = std::string(KVA_FPCFORMS) + " " + kind + " " + FTree.HostPath("in") + " " +
                                FTree.HostPath("out") + " 1 >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return FTree.Read("out");
  }
  tests::TTempTree FTree;
};

TEST_F(FreePascalTest, GeneratedForms) {
  for (uint32_t seed = 1; seed <= 20; ++seed) {
    const std::string binary = tests::TGeneratedForm(seed).Binary(2000 * seed);
    rtl::TBinaryInfo info;
    const std::string text = rtl::ObjectBinaryToText(binary, {}, info);
    const std::string theirs = Convert("text", binary);
    ASSERT_EQ(Bare(text), Bare(theirs)) << seed;
    rtl::TTextInfo textInfo;
    ASSERT_TRUE(rtl::ObjectTextToBinary(text, {}, textInfo) == binary) << seed;
    ASSERT_TRUE(rtl::ObjectTextToBinary(theirs, {}, textInfo) == binary) << seed;
    ASSERT_TRUE(Convert("binary", text) == binary) << seed;
    const std::string people = rtl::ObjectBinaryToText(binary, {.ForPeople = true}, info);
    ASSERT_TRUE(Convert("binary", people) == binary) << seed;
  }
}

TEST_F(FreePascalTest, NumbersInText) {
  std::string text = "object T\n";
  for (const char* number :
       {"0",      "-1",         "127",        "128",  "-128",   "-129",      "32767",
        "-32769", "2147483647", "2147483648", "$7F",  "$FF",    "$FFFFFFFF", "-9223372036854775808",
        "1.5",    "-0.25",      "1E3",        "1e+3", "1.0E-1", "123456.75"})
    text += std::string("  P = ") + number + "\n";
  text += "end\n";
  rtl::TTextInfo info;
  EXPECT_TRUE(rtl::ObjectTextToBinary(text, {}, info) == Convert("binary", text));
}

}  // namespace
