// The source code page; the order and the case of file names.
#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <sstream>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include "win/paths/CodePage.h"

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

// ICU's converters for the code pages of Windows.
const std::pair<uint32_t, const char*> kIcuConverters[] = {
    {437, "ibm-437"},
    {850, "ibm-850"},
    {852, "ibm-852"},
    {866, "ibm-866"},
    {874, "windows-874-2000"},
    {932, "ibm-943_P15A-2003"},
    {936, "windows-936-2000"},
    {949, "windows-949-2000"},
    {950, "windows-950-2000"},
    {1250, "ibm-5346_P100-1998"},
    {1251, "ibm-5347_P100-1998"},
    {1252, "ibm-5348_P100-1997"},
    {1253, "ibm-5349_P100-1998"},
    {1254, "ibm-5350_P100-1998"},
    {1255, "ibm-9447_P100-2002"},
    {1256, "ibm-9448_X100-2005"},
    {1257, "ibm-9449_P100-2002"},
    {1258, "ibm-5354_P100-1998"},
};

// Decodes with ICU's converter. Bytes that the code page lacks become U+FFFD.
std::string DecodeWithIcu(UConverter* converter, const std::string& bytes) {
  UErrorCode error = U_ZERO_ERROR;
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  char utf8[16];
  UChar units[8];
  const int32_t unitCount =
      ucnv_toUChars(converter, units, 8, bytes.data(), static_cast<int32_t>(bytes.size()), &error);
  int32_t length = 0;
  u_strToUTF8(utf8, sizeof utf8, &length, units, unitCount, &error);
  return U_SUCCESS(error) ? std::string(utf8, static_cast<size_t>(length)) : "\xEF\xBF\xBD";
}

// Compares every byte from 80 up, and every lead byte with every trail byte.
TEST_F(CodePageTest, CharactersAreThoseOfIcu) {
  for (const auto& [codePage, name] : kIcuConverters) {
    SCOPED_TRACE(codePage);
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(name, &error), ucnv_close);
    ASSERT_TRUE(U_SUCCESS(error));
    ASSERT_TRUE(SetACP(codePage));
    for (int first = 0x80; first < 0x100; ++first) {
      const bool isLead = IsDBCSLeadByte(static_cast<uint8_t>(first));
      for (int second = isLead ? 0x40 : -1; second < (isLead ? 0xFF : 0); ++second) {
        if (isLead && !IsDBCSTrailByte(static_cast<uint8_t>(second))) continue;
        std::string bytes(1, static_cast<char>(first));
        if (isLead) bytes += static_cast<char>(second);
        EXPECT_EQ(SourceToUtf8(bytes), DecodeWithIcu(converter.get(), bytes)) << first << " " << second;
      }
    }
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
  // A digraph, a letter with an upper case of two letters, one beyond the first plane, and malformed UTF-8.
  EXPECT_EQ(UpperFileName("Unit1.dfm äß форма ıÿ ǆ ﬁ 𐐨 a\xFFz\xC3"),
            "UNIT1.DFM Äß ФОРМА IŸ Ǆ ﬁ 𐐀 A\xFFZ\xC3");
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
