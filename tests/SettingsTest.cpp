#include <algorithm>
#include <gtest/gtest.h>

#include "MigWizard/run/ReplaceOptions.h"
#include "RecordingHost.h"
#include "rtl/text/Lines.h"
#include "rtl/text/Registry.h"
#include "target/KVAWizard.h"
#include "tests/Scratch.h"

namespace {

constexpr char kRoot[] = "Software\\Tarvex";
constexpr char kSection[] = "BDE/IBX Migration Wizard";

class SettingsTest : public testing::Test {
 protected:
  static rtl::TRegIniFile Open() { return rtl::TRegIniFile(kRoot, rtl::KEY_READ_WRITE); }
  void Store(const std::string& text) const { FScratch.Write(FScratch.kSettings, text); }
  std::string Stored() const { return FScratch.Read(FScratch.kSettings); }

  tests::TScratch FScratch;
};

TEST_F(SettingsTest, ValuesComeBack) {
  const std::string values[] = {"",           " C:\\new\\table ", "one\r\ntwo\r\n",      "a=b;[c]#\"",
                                "\xC3\xA9\t", "\x1f\x01",         "\\n is no line end\\"};
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

TEST_F(SettingsTest, WhatAnotherProcessStoredMeanwhileStays) {
  rtl::TRegIniFile first = Open();
  rtl::TRegIniFile second = Open();
  first.WriteInteger("S", "A", 1);
  second.WriteInteger("S", "B", 2);
  EXPECT_EQ(Stored(), "[S]\nA=1\nB=2\n");
}

// Returns the lines of a text in order. A registry has values in an order of its own.
std::vector<std::string> SortedLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) lines.emplace_back(rtl::TakeLine(text));
  std::sort(lines.begin(), lines.end());
  return lines;
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
  EXPECT_EQ(SortedLines(Stored()), SortedLines(stored));

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
