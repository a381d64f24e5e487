#include <gtest/gtest.h>

#include "MigWizard/wizard/SaveWarn.h"
#include "RecordingHost.h"
#include "rtl/text/Registry.h"
#include "tests/Scratch.h"

namespace {

constexpr char kTitle[] = "BDE/IBX Migration Wizard";

TEST(SaveWarnTest, EachQuestionHasItsTextsAndItsFlag) {
  struct TRow {
    bool IsProject, IsRestore;
    const char *Key, *Warn, *Note;
  };
  const TRow rows[] = {
      {true, false, "ReplaceProjWarn", "Current project will be saved. Continue?",
       "Project forms will be hidden."},
      {false, true, "RestoreDirWarn", "Old files will be restored from backup. Continue?",
       "Current project will be closed."},
      {true, true, "RestoreProjWarn", "Old files will be restored from backup. Continue?",
       "Current project will be closed."},
      {false, false, "ReplaceDirWarn", "Current project will be saved. Continue?",
       "Current project will be closed."},
  };
  for (const TRow& row : rows) {
    const tests::TScratch scratch;
    std::vector<std::string> shown;
    test::TScriptedFrontEnd frontEnd(shown);
    const auto ask = [&](std::string_view steps) {
      frontEnd.Script.push_back([=](rtl::TForm& form) {
        EXPECT_EQ(form.Caption(), kTitle);
        EXPECT_EQ(form.FindControl("lblWarn")->Text(), row.Warn);
        EXPECT_EQ(form.FindControl("lblNote")->Text(), row.Note);
        EXPECT_EQ(form.Control<rtl::TImage>("Image1").SystemIcon(), 32514);
        EXPECT_EQ(form.DefaultButton()->Name(), "OKBtn");
        EXPECT_EQ(form.CancelButton()->Name(), "CancelBtn");
        steps.empty() ? form.Close() : test::Play(form, steps);
      });
      const bool answer = mig::ShowSaveWarning(kTitle, row.IsProject, row.IsRestore);
      return std::pair(answer, scratch.Read(tests::TScratch::kSettings));
    };
    const std::string section = std::string("[") + kTitle + "]\n" + row.Key + "=";
    EXPECT_EQ(ask("chkDontAsk; CancelBtn"), std::pair(false, std::string("(missing)")));
    EXPECT_EQ(ask(""), std::pair(false, std::string("(missing)")));
    EXPECT_EQ(ask("OKBtn"), std::pair(true, section + "1\n"));
    EXPECT_EQ(ask("chkDontAsk; OKBtn"), std::pair(true, section + "0\n"));
    // Disabled: the question is no longer shown, and the other three still are.
    EXPECT_TRUE(mig::ShowSaveWarning(kTitle, row.IsProject, row.IsRestore));
    EXPECT_EQ(frontEnd.Shown.size(), 4U);
    frontEnd.Script.push_back([](rtl::TForm& form) { form.Close(); });
    EXPECT_FALSE(mig::ShowSaveWarning(kTitle, !row.IsProject, row.IsRestore));
  }
}

}  // namespace
