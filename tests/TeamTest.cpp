// What two threads share: the tasks of a team, and the conversion of a file from its bytes.
#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/Team.h"

namespace mig {
namespace {

TEST(TeamTest, TheWalkCatchesUpWithAHelperThatIsStuck) {
  TTeam team;
  std::atomic<bool> isStuck = false, mayGoOn = false;
  std::atomic<int> done = 0;
  team.Add([&] {
    isStuck = true;
    while (!mayGoOn) std::this_thread::yield();
  });
  while (!isStuck) std::this_thread::yield();
  for (int i = 0; i < 10; ++i) team.Add([&done] { ++done; });
  EXPECT_EQ(done, 0);
  team.CatchUp(3);
  EXPECT_EQ(done, 7);
  mayGoOn = true;
  team.Finish();
  EXPECT_EQ(done, 10);
}

TEST(TeamTest, AFailureIsKeptForTheEndAndTheOthersAreDone) {
  TTeam team;
  std::atomic<int> done = 0;
  for (int i = 0; i < 20; ++i) {
    team.Add([&team, &done, i] {
      if (i == 3) throw std::runtime_error("the third");
      team.Add([&done] { ++done; });
    });
  }
  EXPECT_THROW(team.Finish(), std::runtime_error);
  EXPECT_EQ(done, 19);
  team.Finish();
}

TEST(FileConverterTest, WhatTheBytesOfAUnitTell) {
  TClassMap classes;
  classes.AddClass("TQuery", "TKVAQuery");
  TFileConverter converter(classes, "DBTABLES", ", KVA",
                           std::make_unique<TFormParser>(ParseStateClass<TFormParseState>()));
  const struct {
    const char *Source, *Changed, *Form;
  } rows[] = {{"uses dbTables;", "uses dbTables, KVA;", ""},
              {"x: tquery;", "x: TKVAQuery;", ""},
              {"{$r *.dfm}", "", "C:\\A.DFM"},
              {"{$RESOURCE *.dfm}", "", "C:\\A.DFM"},
              {"uses DB; { TQuer }", "", ""}};
  for (const auto& row : rows) {
    const TFileConversion unit = converter.Convert("C:\\A.pas", row.Source);
    EXPECT_EQ(unit.Bytes, row.Changed) << row.Source;
    EXPECT_EQ(unit.IsChanged, !unit.Bytes.empty()) << row.Source;
    EXPECT_EQ(unit.FormFiles.empty() ? "" : unit.FormFiles[0], row.Form) << row.Source;
  }
}

}  // namespace
}  // namespace mig
