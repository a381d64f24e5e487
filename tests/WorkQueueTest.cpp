// Shared work of two threads: the tasks of a queue, the files read ahead, and the conversion of a file.
#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/FilesAhead.h"
#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/StringList.h"
#include "tests/TempTree.h"

namespace mig {
namespace {

TEST(WorkQueueTest, WaitForRoomDoesTheTasksThatAStuckWorkerLeaves) {
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

TEST(WorkQueueTest, ALongTaskOfTheWorkerLeavesThisThreadFree) {
  TWorkQueue queue;
  std::atomic<bool> mayGoOn = false;
  const auto task = [&] {
    while (!mayGoOn) std::this_thread::yield();
    throw std::runtime_error("the task");
  };
  EXPECT_THROW(queue.RunOnWorker(task, [&] { mayGoOn = true; }), std::runtime_error);
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

// Reads and converts `names` with two converters. Calls `onWalk` and `onWorker` for each class that they
// replace.
struct TTwoConverters {
  TTwoConverters(const std::function<void()>& onWalk, const std::function<void()>& onWorker) {
    Classes.AddClass("TQuery", "TKVAQuery");
    const auto call = [](const std::function<void()>& action) {
      return [action](std::string_view, std::string_view newClass) {
        action();
        return std::string(newClass);
      };
    };
    Walk.OnGetReplacement = call(onWalk);
    Worker.OnGetReplacement = call(onWorker);
  }
  TClassMap Classes;
  TFileConverter Walk{Classes, "DBTABLES", ", KVA",
                      std::make_unique<TFormParser>(ParseStateClass<TFormParseState>())};
  TFileConverter Worker{Classes, "DBTABLES", ", KVA",
                        std::make_unique<TFormParser>(ParseStateClass<TFormParseState>())};
};

// Each thread has its own converter, and the walk waits for a file that the worker has started.
TEST(FilesAheadTest, TwoThreadsShareTheFiles) {
  const tests::TTempTree tree;
  rtl::TStringList names;
  for (const char* name : {"A.pas", "B.pas"}) {
    tree.Write(name, "x: TQuery;");
    names.Add(tree.WindowsPath(name));
  }
  const std::thread::id walk = std::this_thread::get_id();
  std::atomic<bool> isWorkerBusy = false, isWalkWaiting = false;
  std::atomic<int> wrongThread = 0;
  TTwoConverters converters(
      [&] {  // the first file: meanwhile the worker takes the second one
        wrongThread += std::this_thread::get_id() != walk;
        while (!isWorkerBusy) std::this_thread::yield();
      },
      [&] {
        wrongThread += std::this_thread::get_id() == walk;
        isWorkerBusy = true;
        while (!isWalkWaiting) std::this_thread::yield();
        for (int i = 0; i < 2000; ++i) std::this_thread::yield();
      });
  TWorkQueue queue;
  TFilesAhead files(names, queue, converters.Walk, converters.Worker);
  EXPECT_EQ(files.Take().Bytes, "x: TKVAQuery;");
  isWalkWaiting = true;
  EXPECT_EQ(files.Take().Bytes, "x: TKVAQuery;");
  EXPECT_EQ(wrongThread, 0);
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
