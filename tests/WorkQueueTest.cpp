// What two threads share: the tasks of a team, and the conversion of a file from its bytes.
#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/WorkQueue.h"

namespace mig {
namespace {

TEST(WorkQueueTest, TheWalkCatchesUpWithAHelperThatIsStuck) {
  TWorkQueue queue;
  std::atomic<bool> isStuck = false, mayGoOn = false;
  std::atomic<int> done = 0;
  queue.Push([&] {
    isStuck = true;
    while (!mayGoOn) std::this_thread::yield();
  });
  while (!isStuck) std::this_thread::yield();
  for (int i = 0; i < 10; ++i) queue.Push([&done] { ++done; });
  EXPECT_EQ(done, 0);
  queue.WaitForRoom(3);
  EXPECT_EQ(done, 7);
  mayGoOn = true;
  queue.Wait();
  EXPECT_EQ(done, 10);
}

TEST(WorkQueueTest, AFailureIsKeptForTheEndAndTheOthersAreDone) {
  TWorkQueue queue;
  std::atomic<int> done = 0;
  for (int i = 0; i < 20; ++i) {
    queue.Push([&queue, &done, i] {
      if (i == 3) throw std::runtime_error("the third");
      queue.Push([&done] { ++done; });
    });
  }
  EXPECT_THROW(queue.Wait(), std::runtime_error);
  EXPECT_EQ(done, 19);
  queue.Wait();
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
