// The tables of the code pages, held against ICU, byte by byte and pair by pair.
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <utility>

#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"

namespace win {
namespace {

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
TEST(IcuCodePageTest, CharactersAreThoseOfIcu) {
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
  EXPECT_TRUE(SetACP(1252));
}

// Windows has its own table of upper-cased names, without these two.
TEST(IcuCodePageTest, UpperCaseOfEveryPlane) {
  EXPECT_EQ(UpperFileName("ı 𐐨"), "I 𐐀");
}

}  // namespace
}  // namespace win
