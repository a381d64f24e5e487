#include <filesystem>
#include <gtest/gtest.h>

#include "MigWizard/run/ReplaceOptions.h"
#include "RecordingHost.h"
#include "rtl/text/Registry.h"
#include "target/KVAWizard.h"
#include "tests/Scratch.h"

namespace {

namespace fs = std::filesystem;

constexpr char kRoot[] = "Software\\Tarvex";
constexpr char kSection[] = "BDE/IBX Migration Wizard";

class SettingsTest : public testing::Test {
 protected:
  static rtl::TRegIniFile Open() { return rtl::TRegIniFile(kRoot, rtl::KEY_READ_WRITE); }
  void Store(const std::string& text) const { FScratch.Write(FScratch.kSettings, text); }
  std::string Stored() const { return FScratch.Read(FScratch.kSettings); }

  tests::TScratch FScratch;
  const fs::path FFile = FScratch.HostPath(FScratch.kSettings);
};

TEST_F(SettingsTest, ValuesComeBack) {
  const std::string values[] = {"",           " C:\\new\\table ",       "one\r\ntwo\r\n",      "a=b;[c]#\"",
                                "\xC3\xA9\t", std::string("\0\x1f", 2), "\\n is no line end\\"};
  for (const std::string& value : values) {
    Open().WriteString(kSection, "Directory", value);
    EXPECT_EQ(Open().ReadString(kSection, "DIRECTORY", "default"), value);
  }
  for (const int32_t value : {0, -1, 2147483647, -2147483647 - 1}) {
    Open().WriteInteger(kSection, "Left", value);
    EXPECT_EQ(Open().ReadInteger("bde/ibx migration wizard", "Left", 7), value);
  }
  for (const bool value : {true, false}) {
    Open().WriteBool(kSection, "ViewLog", value);
    EXPECT_EQ(Open().ReadBool(kSection, "ViewLog", !value), value);
  }
  EXPECT_EQ(Open().ReadString("Other", "Left", "default"), "default");
}

TEST_F(SettingsTest, BrokenValuesGiveTheDefault) {
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

TEST_F(SettingsTest, WhatOthersWroteStays) {
  Store("; mine\nstray\n[Other]\nLeft=1\n\n[S]\nLeft=2\n# note\n\n[Last]\nx");
  Open().WriteInteger("S", "Left", 3);
  Open().WriteInteger("S", "Top", 4);
  Open().WriteInteger("New", "Top", 5);
  EXPECT_EQ(Stored(),
            "; mine\nstray\n[Other]\nLeft=1\n\n[S]\nLeft=3\n# note\nTop=4\n\n[Last]\nx\n\n[New]\nTop=5\n");
}

TEST_F(SettingsTest, WhatAnotherProcessStoredMeanwhileStays) {
  rtl::TRegIniFile first = Open();
  rtl::TRegIniFile second = Open();
  first.WriteInteger("S", "A", 1);
  second.WriteInteger("S", "B", 2);
  EXPECT_EQ(Stored(), "[S]\nA=1\nB=2\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(FFile.parent_path()), {}), 1) << "no temporary file is left";
}

TEST_F(SettingsTest, StoresThatCannotBeWrittenStayAsTheyAre) {
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
  const std::string home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
  const std::function<void()> obstacles[] = {
      [this] { fs::remove(FFile), fs::create_directory(FFile); },
      [this] { fs::remove_all(FScratch.HostPath("config")), FScratch.Write("config", ""); },
      [] { unsetenv("XDG_CONFIG_HOME"), unsetenv("HOME"); }};
  for (const auto& obstruct : obstacles) {
    obstruct();
    Open().WriteInteger("S", "A", 2);
    EXPECT_EQ(Open().ReadInteger("S", "A", 7), 7);
  }
  if (!home.empty()) setenv("HOME", home.c_str(), 1);
}

TEST_F(SettingsTest, Options) {
  const std::string stored =
      "[BDE/IBX Migration Wizard]\nDest=1\nDirectory=C:\\\\Src\nIncludeSubDirs=1\nMakeBackup=0\nWriteLog=0\n"
      "ViewLog=1\n";
  Store(stored);
  mig::TReplaceOptions options("BDE/IBX");
  options.BackupDir = "kept";
  options.UnitNames = "A.pas\r\n";
  options.Load(Open(), kSection);
  EXPECT_EQ(test::Describe(options), "1|C:\\Src|1|0|kept|0|1|A.pas\r\n");
  Store("");
  rtl::TRegIniFile reg = Open();
  options.Save(reg, options.GetTitle());
  EXPECT_EQ(Stored(), stored);

  // A number wider than a byte is truncated to its low byte. Missing values leave the object unchanged.
  options.Dest = mig::sdProject;
  Store("[BDE/IBX Migration Wizard]\nDest=257\nMakeBackup=7\n");
  options.Load(Open(), kSection);
  EXPECT_EQ(test::Describe(options), "1|C:\\Src|1|1|kept|0|1|A.pas\r\n");
}

// Returns the state of a new form after loading from the store.
std::string LoadHistory(const rtl::TRegIniFile& reg) {
  target::TKVAWizardForm form;
  form.LoadHistory(reg, kSection);
  return rtl::Format("%d %d %d %s %d,%d|%s|%s",
                     {form.rbModeReplace.Checked(), form.rbModeReplaceIBX.Checked(),
                      form.rbModeRestore.Checked(), form.edUndoFile.Text(), form.Left(), form.Top(),
                      form.cbDirectory.Items().Text(), form.cbBackupDir.Items().Text()});
}

TEST_F(SettingsTest, History) {
  EXPECT_EQ(LoadHistory(Open()), "1 0 0  0,0||") << "first use";
  const std::pair<const char*, const char*> rows[] = {
      {"", "1 0 0 RExpert.reu 5,10||"},
      {"rbModeReplaceIBX", "0 0 1 RExpert.reu 5,10||"},  // one Boolean stores the mode
      {"chMakeBackup", "1 0 0  5,10||"},
      {"rbDestFolder; cbDirectory=C:\\Src", "1 0 0 C:\\Src\\RExpert.reu 5,10||"},
      {"rbDestFolder; cbDirectory=C:\\Src; cbBackupDir=D:\\B", "1 0 0 D:\\B\\RExpert.reu 5,10||"},
  };
  for (const auto& [steps, loaded] : rows) {
    target::TKVAWizardForm form;
    form.SetLeft(5);
    form.SetTop(10);
    test::Play(form, steps);
    rtl::TRegIniFile reg = Open();
    form.SaveHistory(reg, kSection);
    EXPECT_EQ(LoadHistory(Open()), loaded) << steps;
  }
  Store("[BDE/IBX Migration Wizard]\nDirHistory=C:\\\\B\\r\\nC:\\\\A\\r\\n\nBackDirHistory=R\\r\\n\n");
  EXPECT_EQ(LoadHistory(Open()), "1 0 0  0,0|C:\\B\r\nC:\\A\r\n|R\r\n");
}

}  // namespace
