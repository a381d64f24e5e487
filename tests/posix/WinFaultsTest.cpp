// Every call of the host fails once, is interrupted once, and is once the last call of a killed process.
// Checks the results of the file functions and the contents of the disk.
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/posix/HostCalls.h"
#include "tests/posix/WinFiles.h"
#include "win/posix/PosixErrors.h"

namespace win {
namespace {

using tests::THostFault;

struct TOperation {
  const char* Name;
  std::function<bool(TFileSystem&, const tests::TTempTree&)> Run;
  const char*
      Target;  // the file that contains "new" after a success, and "old", or does not exist, after a failure
};

const TOperation kOperations[] = {
    {"copy over a file",
     [](auto& f, auto& t) { return f.CopyFileA(t.WindowsPath("NEW"), t.WindowsPath("OLD"), false); }, "Old"},
    {"copy",
     [](auto& f, auto& t) { return f.CopyFileA(t.WindowsPath("New"), t.WindowsPath("fresh"), false); },
     "fresh"},
    {"copy through a link",
     [](auto& f, auto& t) { return f.CopyFileA(t.WindowsPath("New"), t.WindowsPath("link"), false); }, "Old"},
    {"copy to an own file",
     [](auto& f, auto& t) { return f.CopyToOwnFile(t.WindowsPath("New"), t.WindowsPath("old")); }, "Old"},
    {"copy over an unchanged file",
     [](auto& f, auto& t) {
       const auto stamp = f.GetFileStamp(t.WindowsPath("OLD"));
       return stamp && f.CopyOverUnchanged(t.WindowsPath("New"), t.WindowsPath("OLD"), *stamp);
     },
     "Old"},
    {"replace", [](auto& f, auto& t) { return f.ReplaceFileContents(t.WindowsPath("old"), "new"); }, "Old"},
    {"move", [](auto& f, auto& t) { return f.MoveFileReplacing(t.WindowsPath("new"), t.WindowsPath("OLD")); },
     "Old"},
    {"create",
     [](auto& f, auto& t) {
       auto file = f.CreateFileA(t.WindowsPath("FRESH"), TFileMode::Create);
       if (!file || !file->Write("new", 3)) return false;
       file.reset();
       return f.FlushWritten();
     },
     nullptr},
    {"create an own file",
     [](auto& f, auto& t) {
       const auto file = f.CreateFileA(t.WindowsPath("old"), TFileMode::CreateOwn);
       return file && file->Write("new", 3) && file->Flush();
     },
     nullptr},
    {"read",
     [](auto& f, auto& t) {
       const auto file = f.CreateFileA(t.WindowsPath("NEW"), TFileMode::OpenRead);
       char buffer[10];
       int64_t total = 0, got = 0;
       while (file && (got = file->Read(buffer, sizeof buffer)) > 0) total += got;
       EXPECT_TRUE(!file || got != 0 || total == 3) << total;
       return file && got == 0;
     },
     nullptr},
    {"walk",
     [](auto& f, auto& t) {
       TFindData data;
       const auto walk = f.FindFirstFileA(t.WindowsPath() + "\\*.*", data);
       int count = 1;
       while (walk && walk->Next(data)) ++count;
       EXPECT_TRUE(!walk || count == 2 + 4) << count;
       return walk != nullptr;
     },
     nullptr},
    {"attributes",
     [](auto& f, auto& t) { return f.GetFileAttributesA(t.WindowsPath("LINK")) != INVALID_FILE_ATTRIBUTES; },
     nullptr},
    {"stamp", [](auto& f, auto& t) { return f.GetFileStamp(t.WindowsPath("LINK")).has_value(); }, nullptr},
    {"create a folder", [](auto& f, auto& t) { return f.CreateDirectoryA(t.WindowsPath("made")); }, nullptr},
    {"remove a folder", [](auto& f, auto& t) { return f.RemoveDirectoryA(t.WindowsPath("FOLDER")); },
     nullptr},
    {"delete", [](auto& f, auto& t) { return f.DeleteFileA(t.WindowsPath("OLD")); }, nullptr},
    {"lock", [](auto& f, auto& t) { return f.LockFolder(t.WindowsPath("FOLDER")) != nullptr; }, nullptr},
};

// A new tree for each attempt.
struct TTry {
  TTry() {
    Tree.Write("New", "new");
    Tree.Write("Old", "old");
    Tree.Link("Old", "link");
    Tree.MakeFolder("Folder");
  }
  static std::filesystem::path Base() {
    return access("/dev/shm", W_OK | X_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path();
  }
  tests::TTempTree Tree{Base()};
  TPosixFileSystem Files;
};

std::string ContentsOf(const tests::TTempTree& tree, const std::string& name) {
  return tree.Exists(name) ? tree.Read(name) : "none";
}

bool HasTemporaryFile(const tests::TTempTree& tree) {
  const TNames names = tree.Names();
  return std::any_of(names.begin(), names.end(),
                     [](const std::string& name) { return name.starts_with("~kva"); });
}

TEST(WinFaultsTest, AFailureIsReportedWithItsReasonAndLeavesTheTarget) {
  std::string closing;  // operations that report a failed close
  for (const TOperation& operation : kOperations) {
    for (const int error : {EIO, ENOSPC, EMFILE, EINTR, tests::kShortTransfer}) {
      bool hasStruck = true;
      for (size_t n = 1; hasStruck; ++n) {
        TTry run;
        const std::string before = operation.Target ? ContentsOf(run.Tree, operation.Target) : "";
        std::string call;
        bool succeeded = false;
        {
          THostFault fault(n, error);
          SetLastError(ERROR_SUCCESS);
          succeeded = operation.Run(run.Files, run.Tree);
          hasStruck = fault.HasStruck();
          if (hasStruck) call = fault.Calls()[n - 1];
        }
        const testing::ScopedTrace trace(__FILE__, __LINE__,
                                         std::string(operation.Name) + ", error " + std::to_string(error) +
                                             " in call " + std::to_string(n) + ", " + call);
        if (!succeeded) {
          EXPECT_TRUE(error != EINTR && error != tests::kShortTransfer && hasStruck);
          EXPECT_EQ(GetLastError(), ErrorOfErrno(error));
          if (error == EIO && call == "close") closing.append(operation.Name).append(", ");
        }
        if (operation.Target) {
          EXPECT_EQ(ContentsOf(run.Tree, operation.Target), succeeded ? "new" : before);
          EXPECT_FALSE(HasTemporaryFile(run.Tree));
        }
        run.Files.ForgetWritten();
      }
    }
  }
  EXPECT_EQ(closing, "copy over a file, copy, copy through a link, copy to an own file, replace, create, ");
}

// Somebody writes the target before each call of the host, in place or as a new file.
TEST(WinFaultsTest, AnEditOfTheTargetIsKeptAtEveryMoment) {
  for (const bool isNewFile : {false, true}) {
    bool hasStruck = true;
    for (size_t n = 1; hasStruck; ++n) {
      TTry run;
      const TFileStamp stamp = *run.Files.GetFileStamp(run.Tree.WindowsPath("Old"));
      const THostFault fault(n, [&] {
        if (isNewFile) std::filesystem::remove(run.Tree.HostPath("Old"));
        run.Tree.Write("Old", "edited");
      });
      const bool succeeded =
          run.Files.CopyOverUnchanged(run.Tree.WindowsPath("New"), run.Tree.WindowsPath("Old"), stamp);
      hasStruck = fault.HasStruck();
      EXPECT_EQ(run.Tree.Read("Old"), hasStruck ? "edited" : "new") << isNewFile << ", call " << n;
      EXPECT_TRUE(hasStruck || succeeded);
    }
  }
}

TEST(WinFaultsTest, AKilledProcessLeavesTheOldFileOrTheNewOneAndTheNextOneCleansUp) {
  size_t leftBehind = 0;
  for (const TOperation& operation : kOperations) {
    if (!operation.Target) continue;
    bool wasKilled = true;
    for (size_t n = 1; wasKilled; ++n) {
      TTry run;
      const std::string before = ContentsOf(run.Tree, operation.Target);
      const pid_t child = fork();
      if (child == 0) {
        const THostFault fault(n, tests::kKill);
        _exit(operation.Run(run.Files, run.Tree) ? 0 : 1);
      }
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      wasKilled = WIFSIGNALED(status);
      ASSERT_TRUE(wasKilled || WEXITSTATUS(status) == 0) << operation.Name;
      const std::string after = ContentsOf(run.Tree, operation.Target);
      EXPECT_TRUE(after == before || after == "new")
          << operation.Name << ", killed in call " << n << ": " << after;
      leftBehind += HasTemporaryFile(run.Tree);
      EXPECT_TRUE(run.Files.ReplaceFileContents(run.Tree.WindowsPath("next"), ""));
      EXPECT_FALSE(HasTemporaryFile(run.Tree)) << operation.Name << ", killed in call " << n;
    }
  }
  EXPECT_GT(leftBehind, 0u);
}

// The names have the same form as the temporary names of this computer.
TEST(WinFaultsTest, OnlyTemporaryFilesWithoutAnOwnerAreDeleted) {
  TTry run;
  std::string name;
  {
    const pid_t child = fork();
    if (child == 0) {
      // The call before the one that renames the file to the target.
      size_t n = 1;
      {
        THostFault fault(0);
        static_cast<void>(run.Files.ReplaceFileContents(run.Tree.WindowsPath("a"), "x"));
        while (fault.Calls()[n - 1] != "renameat") ++n;
      }
      TPosixFileSystem files;
      const THostFault fault(n, tests::kKill);
      _exit(files.ReplaceFileContents(run.Tree.WindowsPath("b"), "x") ? 0 : 1);
    }
    waitpid(child, nullptr, 0);
  }
  for (const std::string& entry : run.Tree.Names()) {
    if (entry.ends_with(".$$$")) name = entry;
  }
  ASSERT_FALSE(name.empty());
  const std::string path = run.Tree.HostPath(name);
  const std::string foreign[] = {"~kva.$$$", "~kva00000000-1-0.$$$", name + "x",
                                 name.substr(0, name.size() - 4), name.substr(0, 13) + "note.$$$"};
  for (const std::string& other : foreign) run.Tree.Write(other, "");
  run.Tree.Link("Old", name.substr(0, 13) + "1-1.$$$");
  const TNames all = run.Tree.Names();
  const int held = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(held, LOCK_EX | LOCK_NB), 0);
  EXPECT_TRUE(TPosixFileSystem().ReplaceFileContents(run.Tree.WindowsPath("Old"), ""));
  EXPECT_EQ(run.Tree.Names(), all);
  close(held);
  EXPECT_TRUE(TPosixFileSystem().ReplaceFileContents(run.Tree.WindowsPath("Old"), ""));
  EXPECT_FALSE(run.Tree.Exists(name));
  EXPECT_EQ(run.Tree.Names().size(), all.size() - 1);
}

// A process is killed at each call of an exchange, with and without an edit of the target before that call.
// The next one deletes what it left, but no edit.
TEST(WinFaultsTest, OnlyExchangedFilesWithKnownContentsAreDeleted) {
  size_t kept = 0;
  for (const bool isEdited : {false, true}) {
    bool wasKilled = true;
    for (size_t n = 1; wasKilled; ++n) {
      TTry run;
      const TFileStamp stamp = *run.Files.GetFileStamp(run.Tree.WindowsPath("Old"));
      const pid_t child = fork();
      if (child == 0) {
        const THostFault fault(n, [&] {
          if (isEdited) run.Tree.Write("Old", "edited");
          kill(getpid(), SIGKILL);
        });
        _exit(run.Files.CopyOverUnchanged(run.Tree.WindowsPath("New"), run.Tree.WindowsPath("Old"), stamp)
                  ? 0
                  : 1);
      }
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      wasKilled = WIFSIGNALED(status);
      for (const std::string& name : run.Tree.Names()) {
        if (!name.ends_with("~") || !isEdited) continue;
        run.Tree.Write(name, "edited");  // as if the edit had been made before the exchange
        ++kept;
      }
      const bool isLeft = isEdited && HasTemporaryFile(run.Tree);
      EXPECT_TRUE(run.Files.ReplaceFileContents(run.Tree.WindowsPath("next"), ""));
      EXPECT_EQ(HasTemporaryFile(run.Tree), isLeft) << "killed in call " << n;
    }
  }
  EXPECT_GT(kept, 0u);
}

TEST(WinFaultsTest, FlushAsksTheSystemAndReportsWhatItSays) {
  const auto calls = [](auto flushes) {
    TNames asked;
    THostFault fault(0);
    EXPECT_TRUE(flushes());
    for (const std::string& call : fault.Calls()) {
      if (call == "fsync" || call == "syncfs") asked.push_back(call);
    }
    return asked;
  };
  const auto flush = [&calls](TFileSystem& files) { return calls([&] { return files.FlushWritten(); }); };
  TTry run;
  const auto write = [&run](int i) {
    return run.Files.ReplaceFileContents(run.Tree.WindowsPath(std::to_string(i)), "x");
  };
  EXPECT_TRUE(run.Files.FlushWritten());
  EXPECT_EQ(flush(run.Files), TNames());
  EXPECT_TRUE(write(0));
  EXPECT_EQ(flush(run.Files), (TNames{"fsync", "fsync"}));  // the file and its folder
  for (int i = 0; i < 40; ++i) EXPECT_TRUE(write(i));
  EXPECT_EQ(flush(run.Files), (TNames{"syncfs"}));
  const auto stamp = run.Files.GetFileStamp(run.Tree.WindowsPath("1"));
  EXPECT_TRUE(run.Files.CopyOverUnchanged(run.Tree.WindowsPath("2"), run.Tree.WindowsPath("1"), *stamp));
  EXPECT_EQ(flush(run.Files), (TNames{"fsync", "fsync"}));
  EXPECT_TRUE(run.Files.MoveFileReplacing(run.Tree.WindowsPath("0"), run.Tree.WindowsPath("1")));
  EXPECT_EQ(flush(run.Files), (TNames{"fsync", "fsync"}));
  auto file = run.Files.CreateFileA(run.Tree.WindowsPath("file"), TFileMode::Create);
  ASSERT_TRUE(file && file->Write("x", 1));
  EXPECT_EQ(calls([&] { return file->Flush(); }), (TNames{"fsync", "fsync"}));
}

TEST(WinFaultsTest, AFailedCloseIsReportedByTheNextFlush) {
  TTry run;
  auto file = run.Files.CreateFileA(run.Tree.WindowsPath("file"), TFileMode::Create);
  ASSERT_TRUE(file && file->Write("x", 1));
  {
    THostFault fault(1, ENOSPC);
    file.reset();
    ASSERT_EQ(fault.Calls(), TNames{"close"});
  }
  EXPECT_FALSE(run.Files.FlushWritten());
  EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
  EXPECT_TRUE(run.Files.FlushWritten());
}

}  // namespace
}  // namespace win
