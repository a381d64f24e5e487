// The Windows file functions on the host's files: which files can be opened, overwritten and copied, and
// the state after a failure; drives, temporary names.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

#include "tests/posix/WinFiles.h"
#include "win/Shell.h"

namespace win {
namespace {

TEST_F(WinFilesTest, WhatCannotBeWrittenOrOpened) {
  FTree.Write("readonly", "kept");
  FTree.Write("plain", "plain");
  chmod(FTree.HostPath("readonly").c_str(), 0444);
  FTree.MakeFolder("folder");
  ASSERT_EQ(mkfifo(FTree.HostPath("pipe").c_str(), 0600), 0);
  FTree.Link("/dev/zero", "device");
  FTree.Link("loop", "loop");
  for (const char* const name : {"readonly", "folder", "pipe", "device", "READONLY"}) {
    EXPECT_EQ(Create(name), ERROR_ACCESS_DENIED) << name;
    EXPECT_EQ(Copy("plain", name), ERROR_ACCESS_DENIED) << name;
  }
  for (const char* const name : {"folder", "pipe", "device"}) {
    EXPECT_EQ(Open(name), "error 5") << name;
    EXPECT_EQ(Copy(name, "x"), ERROR_ACCESS_DENIED) << name;
  }
  EXPECT_EQ(Open("loop"), "error 1921");
  EXPECT_EQ(Copy("plain", "loop"), ERROR_CANT_RESOLVE_FILENAME);
  for (const std::string& path :
       {FTree.WindowsPath("none/x"), std::string(), std::string("Q:\\x"), std::string("\\\\server\\x")}) {
    EXPECT_EQ(Outcome(FFiles.CreateDirectoryA(path)), ERROR_PATH_NOT_FOUND) << path;
  }
  EXPECT_EQ(Outcome(FFiles.CopyFileA(FTree.WindowsPath("plain"),
                                     FTree.WindowsPath() + std::string("\\a\0b", 4), false)),
            ERROR_INVALID_NAME);
  EXPECT_EQ(Outcome(FFiles.CopyFileA(FTree.WindowsPath("plain"), FTree.WindowsPath("a") + "\\", false)),
            ERROR_INVALID_NAME);
  EXPECT_EQ(FTree.Read("readonly"), "kept");
  EXPECT_EQ(FTree.Names(), (TNames{"device", "folder", "loop", "pipe", "plain", "readonly"}));
}

TEST_F(WinFilesTest, CopyTakesContentsTimeAndPermissions) {
  std::string large;
  for (int i = 0; large.size() < 1500000; ++i) large += std::to_string(i) + "\r\n";
  const timespec times[2] = {{1000000000, 0}, {1111111111, 123456000}};
  for (const std::string& bytes : {std::string(), std::string("small"), large}) {
    FTree.Write("source", bytes);
    chmod(FTree.HostPath("source").c_str(), 0640);
    utimensat(AT_FDCWD, FTree.HostPath("source").c_str(), times, 0);
    FTree.Write("target", std::string(3000000, 'x'));
    chmod(FTree.HostPath("target").c_str(), 0666);
    const bool isRoot = geteuid() == 0;
    ASSERT_TRUE(!isRoot || chown(FTree.HostPath("target").c_str(), 12, 34) == 0);
    const bool isLabelled = setxattr(FTree.HostPath("target").c_str(), "user.kva", "label", 5, 0) == 0;
    EXPECT_EQ(Copy("source", "target"), ERROR_SUCCESS);
    char label[8] = {};
    EXPECT_EQ(getxattr(FTree.HostPath("target").c_str(), "user.kva", label, sizeof label),
              isLabelled ? 5 : -1);
    EXPECT_TRUE(FTree.Read("target") == bytes) << bytes.size();
    struct stat info {};
    ASSERT_EQ(stat(FTree.HostPath("target").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    EXPECT_EQ(info.st_mtim.tv_sec, times[1].tv_sec);
    EXPECT_EQ(info.st_mtim.tv_nsec, times[1].tv_nsec);
    EXPECT_TRUE(!isRoot || (info.st_uid == 12 && info.st_gid == 34));
  }
  chmod(FTree.HostPath("source").c_str(), 0450);
  EXPECT_TRUE(FFiles.CopyPermissions(FTree.WindowsPath("SOURCE"), FTree.WindowsPath("target")));
  struct stat info {};
  ASSERT_EQ(stat(FTree.HostPath("target").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0650u);
}

TEST_F(WinFilesTest, Drives) {
  FTree.MakeFolder("checkout/Sub");
  FTree.MakeFolder("checkout/End.");
  ASSERT_TRUE(MapDrive('c', FTree.HostPath("checkout/")));
  EXPECT_FALSE(MapDrive('1', FTree.HostPath()));
  EXPECT_FALSE(MapDrive('D', FTree.HostPath("none")));
  const std::string checkout = FTree.HostPath("checkout");
  const std::string toHost[][2] = {{"C:\\", checkout},
                                   {"c:/Sub\\.\\x", checkout + "/Sub/x"},
                                   {"C:\\..\\..\\x", checkout + "/x"},
                                   {"C:x", checkout + "/x"},
                                   {"Z:\\tmp\\a b\\..\\c", "/tmp/c"},
                                   {"Z:\\", "/"},
                                   {"a\\b\\..\\..\\..\\c", "../c"},
                                   {".", "."},
                                   {"/etc/x", "/etc/x"},
                                   {"D:\\x", ""},
                                   {"\\\\server\\share", ""}};
  for (const auto& [path, host] : toHost) EXPECT_EQ(ToHostName(path), host) << path;
  const std::string current = std::filesystem::current_path().string();
  std::string currentAsWindows = "Z:" + current;
  std::replace(currentAsWindows.begin(), currentAsWindows.end(), '/', '\\');
  const std::string toWindows[][2] = {{checkout, "C:\\"},
                                      {checkout + "/Sub//x", "C:\\Sub\\x"},
                                      {checkout + "2/x", FTree.WindowsPath("checkout2/x")},
                                      {"/", "Z:\\"},
                                      {"/a/./b/../c", "Z:\\a\\c"},
                                      {"z:a/b", "Z:\\a\\b"},
                                      {"sub\\Unit1.pas", currentAsWindows + "\\sub\\Unit1.pas"},
                                      {"/tmp/\xE4", ""},
                                      {"/tmp/a:b", ""},
                                      {"Z:\\a:b", ""},
                                      {"c:.\\Dot. \\Sub. ", "C:\\Dot\\Sub"},
                                      {checkout + "/End./Sub.", "C:\\End.\\Sub"},
                                      {"D:\\x", ""},
                                      {"", ""}};
  for (const auto& [typed, path] : toWindows) EXPECT_EQ(ToWindowsPath(typed), path) << typed;
  FTree.Write("a\\b", "");
  EXPECT_EQ(ToWindowsPath(FTree.HostPath("a\\b")), "");
  EXPECT_EQ(FFiles.GetLongPathNameA("c:/SUB"), "C:\\Sub");
}

TEST_F(WinFilesTest, TemporaryPathAndNames) {
  EXPECT_EQ(GetTempFileNameA("C:\\Temp", "$DS1", 1), "C:\\Temp\\$DS1.tmp");
  EXPECT_EQ(GetTempFileNameA("C:\\Temp\\", "$DS", 0x1ABCD), "C:\\Temp\\$DSABCD.tmp");
  const char* const before = getenv("TMPDIR");
  const std::string kept = before ? before : "";
  setenv("TMPDIR", FTree.HostPath().c_str(), 1);
  EXPECT_EQ(FFiles.GetTempPathA(), FTree.WindowsPath() + "\\");
  unsetenv("TMPDIR");
  EXPECT_EQ(FFiles.GetTempPathA(), "Z:\\tmp\\");
  if (before) setenv("TMPDIR", kept.c_str(), 1);
  ASSERT_TRUE(FFiles.CreatePrivateDirectory(FTree.WindowsPath("private")));
  struct stat info {};
  ASSERT_EQ(stat(FTree.HostPath("private").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0700u);
}

TEST_F(WinFilesTest, ADocumentIsOpenedByTheUsersViewer) {
  FTree.Write("Log -x.txt", "");
  FTree.Write("bin/xdg-open", "#!/bin/sh\nprintf '%s' \"$#$1\" > '" + FTree.HostPath("seen.new") + "'\nmv '" +
                                  FTree.HostPath("seen.new") + "' '" + FTree.HostPath("seen") + "'\n");
  chmod(FTree.HostPath("bin/xdg-open").c_str(), 0755);
  const std::string path = getenv("PATH");
  setenv("PATH", (FTree.HostPath("bin") + ":" + path).c_str(), 1);
  EXPECT_TRUE(ShellExecuteA("open", FTree.WindowsPath("LOG -x.txt")));
  for (int i = 0; i < 6000 && !FTree.Exists("seen"); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(FTree.Read("seen"), "1" + FTree.HostPath("Log -x.txt"));
  setenv("PATH", FTree.HostPath("none").c_str(), 1);
  EXPECT_FALSE(ShellExecuteA("open", FTree.WindowsPath("Log -x.txt")));
  setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace win
