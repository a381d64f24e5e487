// String lists and file names of the run-time library.
#include <gtest/gtest.h>

#include "rtl/text/Exceptions.h"
#include "rtl/text/StringList.h"
#include "rtl/text/SysUtils.h"

namespace rtl {
namespace {

TEST(StringListTest, TextIsSplitAtEveryKindOfLineEnd) {
  const char* const rows[][2] = {
      {"", ""}, {"a\rb\nc\r\nd", "a\r\nb\r\nc\r\nd\r\n"}, {"a\n\n", "a\r\n\r\n"}, {"\r\r\n", "\r\n\r\n"}};
  for (const auto& [text, joined] : rows) {
    TStringList list;
    list.SetText(text);
    EXPECT_EQ(list.Text(), joined);
  }
}

TEST(StringListTest, ValuesKeepPlaceAndSpelling) {
  TStringList list;
  list.SetText("Alpha=1\nplain\nBeta=2=3\nALPHA=4");
  EXPECT_EQ(list.Values("alpha"), "1");
  EXPECT_EQ(list.Values("beta"), "2=3");
  EXPECT_EQ(list.Values("plain"), "");
  EXPECT_EQ(list.Names(1), "");
  list.SetValue("ALPHA", "9");
  list.SetValue("Gamma", "5");
  list.SetValue("gamma", "6");
  EXPECT_EQ(list.Text(), "Alpha=9\r\nplain\r\nBeta=2=3\r\nALPHA=4\r\nGamma=6\r\n");
  list.Delete(0);
  EXPECT_EQ(list.Values("alpha"), "4");
}

TEST(StringListTest, SortedListsIgnoreCase) {
  TStringList list;
  list.SetSorted(true);
  for (const char* text : {"TwwQuery", "TQuery", "tquery", "TDatabase"}) list.Add(text);
  EXPECT_EQ(list.Text(), "TDatabase\r\nTQuery\r\nTwwQuery\r\n");
  int index = -1;
  EXPECT_TRUE(list.Find("TQUERY", index));
  EXPECT_EQ(index, 1);
  EXPECT_FALSE(list.Find("TTable", index));
  EXPECT_EQ(index, 2);
}

const char* const kPathRows[][5] = {
    {"C:\\a\\b.c.pas", "C:\\a", "b.c.pas", ".pas", "C:"},
    {"C:\\b.pas", "C:\\", "b.pas", ".pas", "C:"},
    {"C:b", "C:", "b", "", "C:"},
    {"\\b", "\\", "b", "", ""},
    {"b.", "", "b.", ".", ""},
    {"a.b\\c", "a.b", "c", "", ""},
    {"\\\\srv\\share\\x.y", "\\\\srv\\share", "x.y", ".y", "\\\\srv\\share"},
};

TEST(FileNamesTest, Parts) {
  for (const auto& [path, dir, name, extension, drive] : kPathRows) {
    EXPECT_EQ(ExtractFileDir(path), dir) << path;
    EXPECT_EQ(ExtractFileName(path), name) << path;
    EXPECT_EQ(ExtractFileExt(path), extension) << path;
    EXPECT_EQ(ExtractFileDrive(path), drive) << path;
  }
}

TEST(FileNamesTest, RelativePaths) {
  EXPECT_EQ(ExtractRelativePath("C:\\a\\", "c:\\A\\b\\x.pas"), "b\\x.pas");
  EXPECT_EQ(ExtractRelativePath("C:\\a\\b\\", "C:\\x.pas"), "..\\..\\x.pas");
  EXPECT_EQ(ExtractRelativePath("C:\\a\\", "D:\\a\\x.pas"), "D:\\a\\x.pas");
}

TEST(FormatTest, Arguments) {
  EXPECT_EQ(Format("%s of %d, 100%%", {"a", 3}), "a of 3, 100%");
  EXPECT_THROW(Format("%s %s", {"a"}), EConvertError);
}

}  // namespace
}  // namespace rtl
