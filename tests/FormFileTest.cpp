// The container of form files, and the commands that convert them.
#include <gtest/gtest.h>

#include "MigWizard/passes/FormFile.h"
#include "tests/ErrorOf.h"
#include "tests/HexText.h"
#include "tests/RunCommand.h"

namespace {

using tests::FromHex;
using tests::ToHex;

constexpr char kText[] = "object Form1: TForm1\r\n  Caption = 'It'#39's'\r\nend\r\n";
constexpr char kTextInMemory[] = "object Form1: TForm1\r\nCaption = 'It''s'\r\nend\r\n";
constexpr char kData[] = "'TPF0' 06 'TForm1' 05 'Form1' 07 'Caption' 06 04 'It' 27 's' 00 00";
constexpr char kHeader[] = "FF 0A 00 'TFORM1' 00 30 10 21 00 00 00";

mig::TFormFile Read(std::string bytes) {
  return mig::DecodeFormFile(std::move(bytes));
}
std::string Write(const mig::TFormFile& form, std::string_view output) {
  rtl::TMemoryStream stream;
  mig::WriteFormFile(stream, output, form);
  return stream.TakeBytes();
}

TEST(FormFileTest, BinaryKeepsItsResourceName) {
  const char* const rows[][2] = {
      {kHeader, "'TFORM1'"},
      {"FF 0A 00 00 30 10 21 00 00 00", ""},
      {"FF 0A 00 E9 'A' 00 30 10 21 00 00 00", "E9 'A'"},
      {"FF 0A 00 FF 07 00 30 10 21 00 00 00", "FF 07"},  // the number 7
      {"FF 0A 00 FF 00 01 30 10 21 00 00 00", "FF 00 01"},
      {"FF 0A 00 FF 07 01 30 10 21 00 00 00", "FF 07 01"},
      {"FF 0A 00 FF 00 00 30 10 21 00 00 00", "FF 00 00"},
  };
  for (const auto& [header, name] : rows) {
    const std::string bytes = FromHex(header) + FromHex(kData);
    const mig::TFormFile form = Read(bytes);
    EXPECT_TRUE(form.IsBinary);
    EXPECT_EQ(form.Text, kTextInMemory);
    EXPECT_EQ(ToHex(form.RCData.Name), ToHex(FromHex(name)));
    EXPECT_EQ(form.RCData.Size, 0x21);
    EXPECT_EQ(ToHex(Write(form, form.Text)), ToHex(bytes));
  }
}

TEST(FormFileTest, WrittenAnewWithItsSizeAndItsEmptyStrings) {
  const std::string bytes =
      FromHex("FF 0A 00 00 30 10 99 99 99 99 'TPF0' 01 'T' 00 01 'P' 12 00 00 00 00 00 00 'second copy'");
  const mig::TFormFile form = Read(bytes);
  EXPECT_EQ(form.RCData.TrailingBytes, 11u);
  EXPECT_EQ(ToHex(Write(form, "object T P = '' Q = '' end")),
            ToHex(FromHex("FF 0A 00 00 30 10 17 00 00 00 'TPF0' 01 'T' 00 01 'P' 12 00 00 00 00 01 'Q' 12 00 "
                          "00 00 00 00 00")));
}

TEST(FormFileTest, NumbersThatAreNotNormalisedComeBackBitForBit) {
  const std::string bytes = FromHex(
      "FF 0A 00 00 30 10 35 00 00 00 'TPF0' 01 'T' 00"
      "01 'A' 05 00 00 00 00 00 00 00 40 FF 3F"  // an extended without its leading bit
      "01 'B' 15 01 00 00 00 00 00 F4 7F"        // a NaN
      "01 'C' 04 07 00 00 00"                    // 7 in 32 bits
      "01 'D' 05 00 00 00 00 00 00 00 80 FF 3F 00 00");
  const mig::TFormFile form = Read(bytes);
  EXPECT_EQ(ToHex(Write(form, form.Text)), ToHex(bytes));
}

TEST(FormFileTest, WhatIsNotBinaryIsText) {
  for (const char* bytes : {"", "\xFF", "object A: T\n", "\xFF\x0A\x01"}) {
    const mig::TFormFile form = Read(bytes);
    EXPECT_FALSE(form.IsBinary);
    EXPECT_EQ(Write(form, form.Text), bytes);
  }
}

TEST(FormFileTest, DamageIsNamedByItsPlaceInTheFile) {
  const std::pair<std::string, const char*> rows[] = {
      {FromHex("FF 0A"), "Form data at offset 2: the signature TPF0 is missing."},
      {FromHex("FF 0A 00 'NAME'"), "Form data at offset 7: the signature TPF0 is missing."},
      {FromHex("FF 0A 00 'NAME' 00 30"), "Form data at offset 9: the signature TPF0 is missing."},
      {FromHex(kHeader) + "TPF0\1T",
       "Form data at offset 22: an object's name of 1 bytes, but only 0 are left."}};
  for (const auto& row : rows)
    EXPECT_EQ(tests::ErrorOf<rtl::EFilerError>([&] { return Read(row.first); }), row.second);
}

class FormCommandTest : public testing::Test {
 protected:
  std::string Run(const std::string& arguments) { return tests::RunCommand(FTree, "form " + arguments); }

  const std::string FBare = FromHex(kData);
  const std::string FBinary = FromHex(kHeader) + FBare;
  tests::TTempTree FTree;
};

TEST_F(FormCommandTest, OneFile) {
  FTree.Write("a.dfm", FBinary);
  FTree.Write("bare", FBare);
  FTree.Write("a.txt", kText);
  for (const char* from : {"a.dfm", "bare", "a.txt"}) {
    const std::string name = from;
    EXPECT_EQ(Run("to-text " + name), std::string("0|") + kText + "|") << name;
    EXPECT_EQ(Run("to-text - -o - <" + name), std::string("0|") + kText + "|") << name;
    EXPECT_EQ(Run("to-binary " + name + " -o to"), "0||") << name;
    EXPECT_EQ(ToHex(FTree.Read("to")), ToHex(FBinary)) << name;
    EXPECT_EQ(Run("to-binary --bare " + name + " -o to"), "0||") << name;
    EXPECT_EQ(ToHex(FTree.Read("to")), ToHex(FBare)) << name;
  }
  FTree.Write("utf16",
              std::string("\xFF\xFEo\0b\0j\0e\0c\0t\0 \0T\0 \0P\0=\0'\0\xAC\x20'\0e\0n\0d\0\n\0", 38));
  EXPECT_EQ(Run("to-binary --bare utf16 -o to"), "0||");
  EXPECT_EQ(ToHex(FTree.Read("to")), ToHex(FromHex("'TPF0' 01 'T' 00 01 'P' 12 01 00 00 00 AC 20 00 00")));
}

TEST_F(FormCommandTest, WhatIsDroppedAndWhatIsRefused) {
  FTree.Write("a.dfm", FBinary + "second");
  EXPECT_EQ(Run("to-text a.dfm -o to"), "0||kvamigrate: a.dfm: 6 bytes after the form are not part of it.\n");
  EXPECT_EQ(FTree.Read("to"), kText);
  EXPECT_EQ(Run("to-binary - -o from <to"), "0||");
  FTree.Write("a.txt", "object T end end\r\n");
  EXPECT_EQ(Run("to-binary a.txt --output=to"),
            "0||kvamigrate: a.txt: 6 bytes after the form are not part of it.\n");
  FTree.Write("bad", "object T P = end");
  EXPECT_EQ(
      Run("to-binary bad -oto2"),
      "3||kvamigrate: bad: Form text, line 1: the text ends inside an object (object T, property P).\n");
  EXPECT_FALSE(FTree.Exists("to2"));
  EXPECT_EQ(Run("to-text ."), "2||kvamigrate: \".\" is a folder; its forms are converted with --in-place.\n");
  EXPECT_EQ(Run("to-text --in-place bad -o to"), "2||kvamigrate: --in-place takes no --output.\n");
  EXPECT_EQ(Run("to-text --in-place -"), "2||kvamigrate: The standard input cannot be converted in place.\n");
}

TEST_F(FormCommandTest, SeveralInputsAndAnOutputThatIsOneOfThem) {
  FTree.Write("a.dfm", FBinary);
  FTree.Write("b.dfm", FBare);
  EXPECT_EQ(Run("to-text a.dfm b.dfm"), std::string("0|") + kText + kText + "|");
  FTree.Write("c.dfm", "object C: TC\nend");
  FTree.Write("d.dfm", "\xEF\xBB\xBFobject D: TD\nend\n");
  EXPECT_EQ(Run("to-text c.dfm b.dfm"), std::string("0|object C: TC\nend\r\n") + kText + "|");
  EXPECT_EQ(Run("to-text d.dfm d.dfm"), "0|\xEF\xBB\xBFobject D: TD\nend\nobject D: TD\nend\n|");
  EXPECT_EQ(Run("to-text c.dfm d.dfm"),
            "3||kvamigrate: \"d.dfm\" is in another encoding than the form before it; use --in-place.\n");
  EXPECT_EQ(Run("to-binary a.dfm b.dfm"),
            "2||kvamigrate: Several forms can be converted to binary only with --in-place.\n");
  EXPECT_EQ(FTree.Read("b.dfm"), FBare);
  EXPECT_EQ(Run("to-text --in-place a.dfm b.dfm"), "0|Converted: 2, left as they are: 0, failed: 0\n|");
  EXPECT_EQ(Run("to-binary -q --in-place a.dfm b.dfm"), "0||");
  std::filesystem::permissions(FTree.HostPath("a.dfm"), std::filesystem::perms(0640));
  const auto before = std::filesystem::status(FTree.HostPath("a.dfm")).permissions();
  EXPECT_EQ(Run("to-text a.dfm -o ./A.DFM"), "0||");
  EXPECT_EQ(FTree.Read("a.dfm"), kText);
  EXPECT_EQ(std::filesystem::status(FTree.HostPath("a.dfm")).permissions(), before);
}

TEST_F(FormCommandTest, WhatIsNeverOverwritten) {
  FTree.Write("a.dfm", FBinary);
  FTree.Write("mine", "mine");
  FTree.Write("locked", "mine");
  std::filesystem::permissions(FTree.HostPath("locked"), std::filesystem::perms(0440));
  FTree.MakeFolder("folder");
  const bool hasLinks = FTree.Link("mine", "link") && FTree.Link("a.dfm", "b.dfm");
  std::vector<std::string> outputs = {"folder", "locked"};
  if (hasLinks) outputs.insert(outputs.end(), {"link", "/dev/null"});
  for (const std::string& output : outputs)
    EXPECT_EQ(Run("to-text a.dfm -o " + output),
              "3||kvamigrate: Cannot write \"" + output + "\". Access is denied.\n");
  EXPECT_EQ(FTree.Read("locked"), "mine");
  if (!hasLinks) return;
  EXPECT_EQ(FTree.Read("mine"), "mine");
  EXPECT_EQ(
      Run("to-text --in-place b.dfm"),
      "1|Converted: 0, left as they are: 0, failed: 1\n|kvamigrate: Cannot replace \"b.dfm\". Access is "
      "denied.\n");
  EXPECT_EQ(FTree.Read("a.dfm"), FBinary);
}

TEST_F(FormCommandTest, AFolderInPlace) {
  FTree.Write("src/A.dfm", FBinary);
  FTree.Write("src/B.pas", FBinary);
  FTree.Write("src/deep/er/C.NFM", FBinary);
  FTree.Write("src/deep/D.DFM", kText);
  FTree.Write("src/Bad.dfm", FBinary.substr(0, 40));
  std::filesystem::permissions(FTree.HostPath("src/A.dfm"), std::filesystem::perms(0640));
  const auto before = std::filesystem::status(FTree.HostPath("src/A.dfm")).permissions();
  const std::string bad =
      "|kvamigrate: src/Bad.dfm: Form data at offset 34: a property's name of 7 bytes, but only 6 are "
      "left "
      "(object Form1).\n";
  if (!FTree.Link("nowhere", "src/Gone.dfm")) GTEST_SKIP() << "there are no links";
  const std::string gone =
      "kvamigrate: Cannot open file \"src/Gone.dfm\". The system cannot find the file specified.\n";
  EXPECT_EQ(Run("to-text --in-place src"), "1|Converted: 2, left as they are: 1, failed: 2\n" + bad + gone);
  EXPECT_EQ(FTree.Read("src/A.dfm"), kText);
  EXPECT_EQ(std::filesystem::status(FTree.HostPath("src/A.dfm")).permissions(), before);
  EXPECT_EQ(FTree.Read("src/B.pas"), FBinary);
  EXPECT_EQ(FTree.Read("src/deep/er/C.NFM"), kText);
  EXPECT_EQ(FTree.Read("src/Bad.dfm"), FBinary.substr(0, 40));
  EXPECT_EQ(Run("to-binary --in-place src/deep"), "0|Converted: 2, left as they are: 0, failed: 0\n|");
  EXPECT_EQ(FTree.Read("src/deep/D.DFM"), FBinary);
  std::filesystem::permissions(FTree.HostPath("src/A.dfm"), std::filesystem::perms(0440));
  EXPECT_EQ(
      Run("to-binary --in-place src/A.dfm"),
      "1|Converted: 0, left as they are: 0, failed: 1\n|kvamigrate: Cannot replace \"src/A.dfm\". Access is "
      "denied.\n");
  EXPECT_EQ(
      Run("to-binary --in-place 'C:\\src' --drive C=."),
      "1|Converted: 0, left as they are: 3, failed: 2\n"
      "|kvamigrate: Cannot open file \"C:\\src\\Gone.dfm\". The system cannot find the file specified.\n"
      "kvamigrate: Cannot replace \"C:\\src\\A.dfm\". Access is denied.\n");
}

}  // namespace
