// The source code page; the order and the case of file names.
#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>

#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"

namespace win {
namespace {

class CodePageTest : public testing::Test {
 protected:
  ~CodePageTest() override { EXPECT_TRUE(SetACP(1252)); }
};

TEST_F(CodePageTest, SourceToUtf8) {
  const std::tuple<uint32_t, const char*, const char*> rows[] = {
      {1252, "Ma\xDFst\x80\x9F", "Maßst€Ÿ"},
      {1252, "\x81\x8D", "\xC2\x81\xC2\x8D"},  // a byte without a character is the control of that number
      {1250, "\x8A\xE8\xF2", "Ščň"},
      {1251, "\xD4\xEE\xF0\xEC\xE0", "Форма"},
      {1253, "\xC6\xFC\xD2", "Ζό\xEF\xBF\xBD"},
      {1254, "\xDD\xFD", "İı"},
      {1255, "\xF9\xEC", "של"},
      {1256, "\xDD\xC7", "فا"},
      {1257, "\xD0\xFE", "Šž"},
      {1258, "\xD0\xFE", "Đ₫"},
      {437, "\x81\xE1", "üß"},
      {850, "\x9B\xD5", "øı"},
      {852, "\x8F\xE6", "ĆŠ"},
      {866, "\x94\xAE\xE0\xAC\xA0", "Форма"},
      {874, "\xA1\xD2\xC3", "การ"},
      {932, "\x83\x74\x83\x48\x5C\x81\x5C\xB1", "フォ\\―ｱ"},
      {932, "\x83\x20\x1A\x1C\x7F", "\xEF\xBF\xBD \x1A\x1C\x7F"},  // a lead byte alone; controls as in ASCII
      {936, "\xB4\xB0\xCC\xE5\x5C", "窗体\\"},
      {949, "\xC6\xFB\x5C\x8C\x63", "폼\\똠"},
      {932, "\xFC\x4B", "黑"},  // the ends of the tables
      {936, "\x81\x40", "丂"},
      {949, "\xFD\xFE", "詰"},
      {950, "\xAA\xED\xB3\xE6\xA5\x5C", "表單功"},
      {65001, "\xD0\xA4z\xFFz", "Фz\xEF\xBF\xBDz"},
  };
  for (const auto& [codePage, bytes, utf8] : rows) {
    ASSERT_TRUE(SetACP(codePage)) << codePage;
    EXPECT_EQ(SourceToUtf8(bytes), utf8) << codePage;
    std::string ascii;
    for (char c = 0; c < 0x7F; ++c) ascii += c;
    EXPECT_EQ(SourceToUtf8(ascii), ascii) << codePage;
  }
}

TEST_F(CodePageTest, OnlyTheCodePagesOfTheListAreTaken) {
  EXPECT_EQ(SupportedCodePages().size(), 19u);
  for (const uint32_t number : SupportedCodePages()) {
    EXPECT_TRUE(SetACP(number));
    EXPECT_EQ(GetACP(), number);
    EXPECT_EQ(IsDoubleByteCodePage(), number == 932 || number == 936 || number == 949 || number == 950);
  }
  for (const uint32_t number : {0u, 1u, 1200u, 1259u, 28591u}) EXPECT_FALSE(SetACP(number)) << number;
  EXPECT_EQ(GetACP(), SupportedCodePages().back());
}

TEST_F(CodePageTest, LeadBytes) {
  const struct {
    uint32_t CodePage;
    std::vector<int> Edges;  // where the result changes
  } rows[] = {
      {1252, {}}, {65001, {}}, {932, {0x81, 0xA0, 0xE0, 0xFD}}, {936, {0x81, 0xFF}}, {950, {0x81, 0xFF}}};
  for (const auto& row : rows) {
    ASSERT_TRUE(SetACP(row.CodePage));
    std::vector<int> edges;
    for (int byte = 1; byte < 256; ++byte) {
      const auto at = [](int b) { return IsDBCSLeadByte(static_cast<uint8_t>(b)); };
      if (at(byte) != at(byte - 1)) edges.push_back(byte);
    }
    EXPECT_EQ(edges, row.Edges) << row.CodePage;
  }
}

TEST_F(CodePageTest, IsCharAlphaA) {
  const std::tuple<uint32_t, const char*, bool> rows[] = {
      {1252, "a", true},          {1252, "Z", true},       {1252, "\xE9", true},
      {1252, "\xD7", false},      {1252, "\xF7", false},   {1252, "\xAA", true},
      {1252, "\x80", false},      {1252, "1", false},      {1252, "_", false},
      {1252, "\x81", false},      {1251, "\xD7", true},    {437, "\xF6", false},
      {866, "\xF1", true},        {932, "\xB1", true},     {932, "\x83\x74", true},
      {932, "\x81\x7E", false},   {932, "\x83", false},    {936, "\xB4\xB0", true},
      {936, "\xA1\xA3", false},   {949, "\xC6\xFB", true}, {65001, "\xC3\xA9", true},
      {65001, "\xC3\x97", false}, {65001, "\xC3", false},  {1252, "ab", false},
  };
  for (const auto& [codePage, character, isAlphabetic] : rows) {
    ASSERT_TRUE(SetACP(codePage));
    EXPECT_EQ(IsCharAlphaA(character), isAlphabetic) << codePage << " " << character;
  }
}

TEST(FileNamesTest, UpperCaseIsOneCharacterToOne) {
  // A digraph, a letter with an upper case of two letters, and malformed UTF-8.
  EXPECT_EQ(UpperFileName("Unit1.dfm äß форма ÿ ǆ ﬁ a\xFFz\xC3"), "UNIT1.DFM Äß ФОРМА Ÿ Ǆ ﬁ A\xFFZ\xC3");
}

TEST(FileNamesTest, OrderIsThatOfUtf16Units) {
  // U+FF21 sorts after the surrogates of U+10400, although its number is smaller.
  std::istringstream list("- A a A.pas aa AB zz [ _ ä б Б1 \xF0\x90\x90\x80 \xEF\xBC\xA1");
  const std::vector<std::string> sorted = {std::istream_iterator<std::string>(list), {}};
  std::vector<std::string> names(sorted.rbegin(), sorted.rend());
  std::sort(names.begin(), names.end(), FileNameLess);
  EXPECT_EQ(names, sorted);
  EXPECT_FALSE(FileNameLess("ä", "ä"));
}

TEST(FileNamesTest, ValidUtf8) {
  for (const char* const text : {"", "a", "ä", "\xF0\x90\x90\x80"}) EXPECT_TRUE(IsValidUtf8(text)) << text;
  for (const char* const text : {"\xE4", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\x80"}) {
    EXPECT_FALSE(IsValidUtf8(text)) << text;
  }
}

}  // namespace
}  // namespace win
