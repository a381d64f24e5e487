// The program's own files: locked while open, never opened through a link, readable by nobody who cannot
// read the source; stamps, renaming, locks.
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tests/posix/WinFiles.h"

namespace win {
namespace {

constexpr const char* kAccessList = "system.posix_acl_access";

class WinOwnFilesTest : public WinFilesTest {
 protected:
  uint32_t CopyToOwn(std::string_view source, std::string_view target) {
    return Outcome(FFiles.CopyToOwnFile(FTree.WindowsPath(source), FTree.WindowsPath(target)));
  }
  uint32_t Move(std::string_view source, std::string_view target) {
    return Outcome(FFiles.MoveFileReplacing(FTree.WindowsPath(source), FTree.WindowsPath(target)));
  }
  std::unique_ptr<TFileHandle> OpenOwn(std::string_view name) {
    return FFiles.CreateFileA(FTree.WindowsPath(name), TFileMode::CreateOwn);
  }
  uint32_t OwnOutcome(std::string_view name) { return OpenOwn(name) ? ERROR_SUCCESS : GetLastError(); }
  struct stat Info(std::string_view name) {
    struct stat info {};
    EXPECT_EQ(lstat(FTree.HostPath(name).c_str(), &info), 0) << name;
    return info;
  }
  // Returns "owner group mode", and " list" if there is an access list.
  std::string Access(std::string_view name) {
    const struct stat info = Info(name);
    char mode[8];
    snprintf(mode, sizeof mode, "%03o", info.st_mode & 0777u);
    const bool hasList = getxattr(FTree.HostPath(name).c_str(), kAccessList, nullptr, 0) > 0;
    return std::to_string(info.st_uid) + " " + std::to_string(info.st_gid) + " " + mode +
           (hasList ? " list" : "");
  }
};

TEST_F(WinOwnFilesTest, OwnFilesAreHeldWhileOpenAndNotReachedThroughLinks) {
  FTree.Write("Log.txt", "of the run before");
  FTree.Write("precious", "kept");
  FTree.MakeFolder("folder");
  FTree.Link("precious", "link");
  FTree.Link("none", "broken");
  FTree.Write("readonly", "kept");
  chmod(FTree.HostPath("readonly").c_str(), 0444);
  ASSERT_EQ(mkfifo(FTree.HostPath("pipe").c_str(), 0600), 0);
  for (const char* const name : {"link", "broken", "folder", "pipe", "readonly", "LINK"}) {
    EXPECT_EQ(OwnOutcome(name), ERROR_ACCESS_DENIED) << name;
  }
  EXPECT_EQ(OwnOutcome("no/x"), ERROR_PATH_NOT_FOUND);
  {
    const auto log = OpenOwn("LOG.txt");
    ASSERT_TRUE(log && log->Write("1", 1) && log->Flush());
    const auto fresh = OpenOwn("new");
    ASSERT_TRUE(fresh && fresh->Write("2", 1));
    EXPECT_EQ(OwnOutcome("log.TXT"), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(OwnOutcome("new"), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(Open("log.txt"), "1");  // not truncated by the handle that failed to lock it
  }
  EXPECT_EQ(OwnOutcome("log.TXT"), ERROR_SUCCESS);  // although its flush is pending
  EXPECT_EQ(FTree.Read("Log.txt"), "");
  EXPECT_EQ(FTree.Read("precious"), "kept");
  EXPECT_EQ(FTree.Read("readonly"), "kept");
  EXPECT_EQ(FTree.Names(),
            (TNames{"Log.txt", "broken", "folder", "link", "new", "pipe", "precious", "readonly"}));
}

TEST_F(WinOwnFilesTest, RenamingReplacesWhatHasTheName) {
  FTree.MakeFolder("folder");
  FTree.Write("precious", "kept");
  FTree.Write("Old.txt", "old");
  FTree.Write("readonly", "kept");
  chmod(FTree.HostPath("readonly").c_str(), 0444);
  FTree.Link("precious", "link");
  ASSERT_EQ(mkfifo(FTree.HostPath("pipe").c_str(), 0600), 0);
  const struct {
    const char* Target;
    uint32_t Outcome;
    const char* Result;
  } rows[] = {{"OLD.TXT", ERROR_SUCCESS, "Old.txt"},     {"link", ERROR_SUCCESS, "link"},
              {"fresh", ERROR_SUCCESS, "fresh"},         {"folder", ERROR_ACCESS_DENIED, nullptr},
              {"pipe", ERROR_ACCESS_DENIED, nullptr},    {"readonly", ERROR_ACCESS_DENIED, nullptr},
              {"folder/in", ERROR_SUCCESS, "folder/in"}, {"none/x", ERROR_PATH_NOT_FOUND, nullptr}};
  for (const auto& [target, outcome, result] : rows) {
    FTree.Write("source", target);
    EXPECT_EQ(Move("SOURCE", target), outcome) << target;
    EXPECT_EQ(FTree.Exists("source"), result == nullptr) << target;
    EXPECT_EQ(FTree.Read(result ? result : "source"), target);
  }
  EXPECT_TRUE(S_ISREG(Info("link").st_mode));
  EXPECT_EQ(FTree.Read("precious"), "kept");
  EXPECT_EQ(FTree.Read("readonly"), "kept");
  EXPECT_EQ(Move("none", "x"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Move("folder", "x"), ERROR_ACCESS_DENIED);
}

TEST_F(WinOwnFilesTest, AStampTellsEveryChange) {
  const auto stamp = [this] { return FFiles.GetFileStamp(FTree.WindowsPath("FILE")); };
  const auto setTime = [this](time_t seconds, long nanoseconds) {
    const timespec times[2] = {{0, UTIME_OMIT}, {seconds, nanoseconds}};
    utimensat(AT_FDCWD, FTree.HostPath("file").c_str(), times, 0);
  };
  FTree.Write("file", "12345");
  setTime(1000, 7);
  FTree.Link("file", "link");
  const auto first = stamp();
  ASSERT_TRUE(first);
  EXPECT_EQ(first->Size, 5);
  EXPECT_EQ(first->Modified, 1000000000007);
  EXPECT_EQ(FFiles.GetFileStamp(FTree.WindowsPath("link")), first);
  const auto open = FFiles.CreateFileA(FTree.WindowsPath("file"), TFileMode::OpenRead);
  EXPECT_EQ(open->Stamp(), first);
  setTime(1000, 8);
  EXPECT_NE(stamp(), first);
  FTree.Write("file", "123456");
  setTime(1000, 7);
  EXPECT_NE(stamp(), first);
  EXPECT_EQ(open->Stamp(), first);  // the stamp of the opened file
  FTree.Write("other", "12345");
  std::filesystem::rename(FTree.HostPath("other"), FTree.HostPath("file"));
  setTime(1000, 7);
  EXPECT_NE(stamp(), first);
  EXPECT_EQ(Outcome(FFiles.GetFileStamp(FTree.WindowsPath("none")).has_value()), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Outcome(FFiles.GetFileStamp(FTree.WindowsPath()).has_value()), ERROR_ACCESS_DENIED);
}

TEST_F(WinOwnFilesTest, ABackupCopyIsNoLink) {
  FTree.Write("source", "new");
  FTree.Write("precious", "kept");
  FTree.Link("precious", "link");
  FTree.Link("none", "broken");
  FTree.Write("Copy", "old");
  chmod(FTree.HostPath("Copy").c_str(), 0444);
  FTree.MakeFolder("folder");
  for (const char* const name : {"link", "broken", "folder"}) {
    EXPECT_EQ(CopyToOwn("source", name), ERROR_ACCESS_DENIED) << name;
  }
  EXPECT_EQ(CopyToOwn("source", "COPY"), ERROR_SUCCESS);
  EXPECT_EQ(CopyToOwn("source", "SOURCE"), ERROR_SHARING_VIOLATION);
  EXPECT_EQ(FTree.Read("Copy"), "new");
  EXPECT_EQ(FTree.Read("precious"), "kept");
  EXPECT_EQ(FTree.Names(), (TNames{"Copy", "broken", "folder", "link", "precious", "source"}));
}

// Returns a list that lets user 99 read, in addition to `mode`.
std::string AccessList(uint8_t mode) {
  const auto permissions = [mode](int shift) { return static_cast<char>((mode >> shift) & 7); };
  const auto entry = [](char tag, char permission, char id) {
    return std::string{tag, 0, permission, 0, id, id < 0 ? id : '\0', id < 0 ? id : '\0', id < 0 ? id : '\0'};
  };
  return std::string{2, 0, 0, 0} + entry(1, 6, -1) + entry(2, 4, 99) + entry(4, 4, -1) +
         entry(16, permissions(3), -1) + entry(32, permissions(0), -1);
}

// The source itself is moved unless its owner or labels differ from the target's.
TEST_F(WinOwnFilesTest, AMoveOverAnUnchangedFileKeepsWhatTheFileIs) {
  const struct {
    const char* Name;
    std::function<void(const char* source, const char* target)> Prepare;
    uint32_t Outcome;
    bool IsMoved;
    const char* Access;
  } rows[] = {
      {"plain", [](const char*, const char*) {}, ERROR_SUCCESS, true, "0 0 640"},
      {"edited", [](const char*, const char* file) { std::ofstream(file) << "edited"; }, ERROR_FILE_INVALID,
       false, "0 0 640"},
      {"read-only", [](const char*, const char* file) { chmod(file, 0440); }, ERROR_ACCESS_DENIED, false,
       "0 0 440"},
      {"another owner", [](const char*, const char* file) { EXPECT_EQ(chown(file, 12, 34), 0); },
       ERROR_SUCCESS, false, "12 34 640"},
      {"an access list",
       [](const char*, const char* file) {
         setxattr(file, kAccessList, AccessList(044).data(), AccessList(044).size(), 0);
       },
       ERROR_SUCCESS, false, "0 0 644 list"},
      {"a list of the source",
       [](const char* file, const char*) {
         setxattr(file, kAccessList, AccessList(044).data(), AccessList(044).size(), 0);
       },
       ERROR_SUCCESS, false, "0 0 640"},
      {"no target", [](const char*, const char* file) { unlink(file); }, ERROR_FILE_NOT_FOUND, false, ""},
  };
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Name);
    FTree.Write("source", "new");
    FTree.Write("File", "old");
    const std::string source = FTree.HostPath("source"), target = FTree.HostPath("File");
    chmod(target.c_str(), 0640);
    const auto expected = FFiles.GetFileStamp(FTree.WindowsPath("FILE"));
    const ino_t inode = Info("source").st_ino;
    row.Prepare(source.c_str(), target.c_str());
    const bool isEdited = row.Outcome == ERROR_FILE_INVALID;
    EXPECT_EQ(
        Outcome(FFiles.CopyOverUnchanged(FTree.WindowsPath("source"), FTree.WindowsPath("FILE"), *expected)),
        row.Outcome);
    if (row.Outcome != ERROR_FILE_NOT_FOUND) {
      EXPECT_EQ(FTree.Read("File"), row.Outcome == ERROR_SUCCESS ? "new" : isEdited ? "edited" : "old");
      EXPECT_EQ(Access("File"), row.Access);
      EXPECT_EQ(Info("File").st_ino == inode, row.IsMoved);
      EXPECT_EQ(FTree.Names().size(), FTree.Exists("source") ? 2 : 1);
      unlink(target.c_str());
    }
  }
}

TEST_F(WinOwnFilesTest, ABackupCopyIsReadableByNobodyElse) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  struct TRow {
    mode_t Mode;
    bool HasList;
    const char* ByRoot;
    const char* ByAnother;  // by a user who is not in the source's group
  };
  const TRow rows[] = {{0640, false, "12 34 640", "-"},         {0604, false, "12 34 604", "56 56 600"},
                       {0644, false, "12 34 644", "56 56 644"}, {0444, false, "12 34 444", "56 56 444"},
                       {0600, false, "12 34 600", "-"},         {0644, true, "12 34 644 list", "56 56 600"}};
  chmod(FTree.HostPath().c_str(), 0755);
  FTree.MakeFolder("copies");
  chmod(FTree.HostPath("copies").c_str(), 0777);
  // Access inherited from a folder must not let more users read the file.
  const std::string inherited = AccessList(064);
  if (setxattr(FTree.HostPath("copies").c_str(), "system.posix_acl_default", inherited.data(),
               inherited.size(), 0) != 0) {
    GTEST_SKIP() << "no access lists here";
  }
  for (const TRow& row : rows) {
    FTree.Write("source", "x");
    const std::string source = FTree.HostPath("source");
    ASSERT_EQ(chown(source.c_str(), 12, 34), 0);
    ASSERT_EQ(chmod(source.c_str(), row.Mode), 0);
    const std::string list = AccessList(row.Mode & 077);
    ASSERT_TRUE(!row.HasList || setxattr(source.c_str(), kAccessList, list.data(), list.size(), 0) == 0);
    EXPECT_EQ(CopyToOwn("source", "copies/by root"), ERROR_SUCCESS);
    const pid_t child = fork();
    if (child == 0) {
      if (setgid(56) != 0 || setuid(56) != 0) _exit(99);
      TPosixFileSystem files;
      _exit(files.CopyToOwnFile(FTree.WindowsPath("source"), FTree.WindowsPath("copies/by another")) ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(Access("copies/by root"), row.ByRoot) << std::oct << row.Mode;
    EXPECT_EQ(WEXITSTATUS(status) == 0 ? Access("copies/by another") : "-", row.ByAnother)
        << std::oct << row.Mode;
    for (const std::string& name :
         {source, FTree.HostPath("copies/by root"), FTree.HostPath("copies/by another")})
      unlink(name.c_str());
  }
}

}  // namespace
}  // namespace win
