// The file of the settings: broken contents, contents of others, and a file that cannot be written.
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#include "rtl/text/Registry.h"
#include "tests/Scratch.h"

namespace {

namespace fs = std::filesystem;

constexpr char kRoot[] = "Software\\Tarvex";

class SettingsFileTest : public testing::Test {
 protected:
  static rtl::TRegIniFile Open() { return rtl::TRegIniFile(kRoot, rtl::KEY_READ_WRITE); }
  void Store(const std::string& text) const { FScratch.Write(FScratch.kSettings, text); }
  std::string Stored() const { return FScratch.Read(FScratch.kSettings); }

  tests::TScratch FScratch;
  const fs::path FFile = FScratch.HostPath(FScratch.kSettings);
};

TEST_F(SettingsFileTest, BrokenValuesGiveTheDefault) {
  Store(
      "[S]\nInt=12x\nBig=99999999999\nEmpty=\nNoEnd=a\\\nBad=\\q\nHex=\\x4\nOdd\nYes=true\nSpaced = 5 "
      "\r\nDouble=1\nDouble=2\n");
  const rtl::TRegIniFile reg = Open();
  for (const char* key : {"Int", "Big", "Empty", "Odd"}) EXPECT_EQ(reg.ReadInteger("S", key, 7), 7) << key;
  for (const char* key : {"NoEnd", "Bad", "Hex", "Odd"}) EXPECT_EQ(reg.ReadString("S", key, "?"), "?") << key;
  EXPECT_TRUE(reg.ReadBool("S", "Yes", true));
  EXPECT_FALSE(reg.ReadBool("S", "Yes", false));
  EXPECT_EQ(reg.ReadInteger("S", "Spaced", 0), 5);
  EXPECT_EQ(reg.ReadInteger("S", "Double", 0), 1);
}

TEST_F(SettingsFileTest, WhatOthersWroteStays) {
  Store("; mine\nstray\n[Other]\nLeft=1\n\n[S]\nLeft=2\n# note\n\n[Last]\nx");
  Open().WriteInteger("S", "Left", 3);
  Open().WriteInteger("S", "Top", 4);
  Open().WriteInteger("New", "Top", 5);
  EXPECT_EQ(Stored(),
            "; mine\nstray\n[Other]\nLeft=1\n\n[S]\nLeft=3\n# note\nTop=4\n\n[Last]\nx\n\n[New]\nTop=5\n");
}

TEST_F(SettingsFileTest, StoresThatCannotBeWrittenStayAsTheyAre) {
  Store("[S]\nA=1\n");
  fs::permissions(FFile, fs::perms::owner_read);
  Open().WriteInteger("S", "A", 2);
  EXPECT_EQ(Stored(), "[S]\nA=1\n");
  fs::permissions(FFile, fs::perms::owner_all);

  rtl::TRegIniFile(kRoot, 0x20019).WriteInteger("S", "A", 2);  // read access only
  EXPECT_EQ(Stored(), "[S]\nA=1\n");

  // If the store is a link, its target is written.
  fs::rename(FFile, FScratch.HostPath("real.ini"));
  fs::create_symlink(FScratch.HostPath("real.ini"), FFile);
  Open().WriteInteger("S", "A", 2);
  EXPECT_TRUE(fs::is_symlink(FFile));
  EXPECT_EQ(FScratch.Read("real.ini"), "[S]\nA=2\n");

  // A folder in place of the file, a file in place of its folder, and no home folder.
  const tests::TVariable home("HOME", std::getenv("HOME") ? std::getenv("HOME") : "");
  const std::function<void()> obstacles[] = {
      [this] { fs::remove(FFile), fs::create_directory(FFile); },
      [this] { fs::remove_all(FScratch.HostPath("config")), FScratch.Write("config", ""); },
      [] { unsetenv("XDG_CONFIG_HOME"), unsetenv("HOME"); }};
  for (const auto& obstruct : obstacles) {
    obstruct();
    Open().WriteInteger("S", "A", 2);
    EXPECT_EQ(Open().ReadInteger("S", "A", 7), 7);
  }
}

TEST_F(SettingsFileTest, AnyTextIsAValueAndNoTemporaryFileIsLeft) {
  const std::string value("\0\x1f", 2);
  Open().WriteString("S", "A", value);
  EXPECT_EQ(Open().ReadString("S", "A", "default"), value);
  EXPECT_EQ(std::distance(fs::directory_iterator(FFile.parent_path()), {}), 1);
}

}  // namespace
