// The Windows file functions on the host's files: whose rules for case, attributes and overwriting hold.
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

#include "tests/TempTree.h"
#include "win/CodePage.h"
#include "win/Diagnostics.h"
#include "win/FileApi.h"
#include "win/PosixFileSystem.h"

namespace win {
namespace {

using TNames = std::vector<std::string>;

class WinFilesTest : public testing::Test {
 protected:
  WinFilesTest() { FFiles.HoldFolders(true); }
  ~WinFilesTest() override { ResetDrives(); }

  // What reading `name`, as the program spells it, gives: contents, or "error N".
  std::string Open(std::string_view name) {
    const auto file = FFiles.CreateFileA(FTree.WindowsPath(name), TFileMode::OpenRead);
    char buffer[100];
    const int64_t got = file ? file->Read(buffer, sizeof buffer) : -1;
    return got < 0 ? "error " + std::to_string(GetLastError())
                   : std::string(buffer, static_cast<size_t>(got));
  }
  uint32_t Create(std::string_view name, std::string_view bytes = "new") {
    const auto file = FFiles.CreateFileA(FTree.WindowsPath(name), TFileMode::Create);
    return file && file->Write(bytes.data(), bytes.size()) ? ERROR_SUCCESS : GetLastError();
  }
  uint32_t Copy(std::string_view source, std::string_view target, bool failIfExists = false) {
    return FFiles.CopyFileA(FTree.WindowsPath(source), FTree.WindowsPath(target), failIfExists)
               ? ERROR_SUCCESS
               : GetLastError();
  }
  uint32_t Outcome(bool succeeded) { return succeeded ? ERROR_SUCCESS : GetLastError(); }
  std::string Attributes(std::string_view name) {
    const uint32_t bits = FFiles.GetFileAttributesA(FTree.WindowsPath(name));
    return bits == INVALID_FILE_ATTRIBUTES ? "error " + std::to_string(GetLastError()) : Bits(bits);
  }
  static std::string Bits(uint32_t bits) {
    std::string text;
    if (bits & FILE_ATTRIBUTE_READONLY) text += 'R';
    if (bits & FILE_ATTRIBUTE_DIRECTORY) text += 'D';
    if (bits & FILE_ATTRIBUTE_REPARSE_POINT) text += 'L';
    if (bits & FILE_ATTRIBUTE_NORMAL) text += 'N';
    return text;
  }
  // "name attributes" of each entry.
  TNames Walk(std::string_view folder) {
    TNames entries;
    TFindData data;
    auto walk = FFiles.FindFirstFileA(FTree.WindowsPath(folder) + "\\*.*", data);
    if (!walk) return {"error " + std::to_string(GetLastError())};
    do entries.push_back(data.FileName + " " + Bits(data.FileAttributes));
    while (walk->Next(data));
    EXPECT_EQ(GetLastError(), ERROR_NO_MORE_FILES);
    return entries;
  }
  // The folder looks as if nothing had happened to it for a long time, so that its listing is trusted.
  void Settle() { std::this_thread::sleep_for(std::chrono::milliseconds(60)); }

  tests::TTempTree FTree;
  TPosixFileSystem FFiles;
};

TEST_F(WinFilesTest, LookUpIgnoresCaseAndTakesTheExactNameFirst) {
  for (const char* const name : {"Unit1.dfm", "TWIN", "Twin", "twin", "ärger", "форма.pas", "straße", "dosyı",
                                 "Sub/Deep/x.PAS", "sub2/y", "only/UPPER", "ONLY/lower"}) {
    FTree.Write(name, name);
  }
  FTree.MakeFolder("only");
  const char* const rows[][2] = {
      {"Unit1.dfm", "Unit1.dfm"},
      {"UNIT1.DFM", "Unit1.dfm"},
      {"Twin", "Twin"},
      {"tWIN", "TWIN"},  // the first in NTFS' order
      {"ÄRGER", "ärger"},
      {"ФОРМА.PAS", "форма.pas"},
      {"STRAßE", "straße"},
      {"STRASSE", "error 2"},
      {"DOSYI", "dosyı"},
      {"sUB/dEEP/X.pas", "Sub/Deep/x.PAS"},
      {"SUB2/Y", "sub2/y"},
      {"only/lower", "error 2"},  // the folder that is there as written is the one
      {"Only/LOWER", "ONLY/lower"},
      {"Unit1.dfm/x", "error 3"},
      {"nowhere/x", "error 3"},
      {"nowhere", "error 2"},
  };
  for (const auto& [wanted, found] : rows) EXPECT_EQ(Open(wanted), found) << wanted;
}

TEST_F(WinFilesTest, WritingKeepsTheCaseOnDiskAndMakesNoTwin) {
  FTree.Write("Sub/Unit1.pas", "old and longer");
  EXPECT_EQ(Create("SUB/UNIT1.PAS"), ERROR_SUCCESS);
  EXPECT_EQ(Create("sub/New.pas"), ERROR_SUCCESS);
  EXPECT_EQ(Copy("sub/new.pas", "sub/UNIT1.pas"), ERROR_SUCCESS);
  EXPECT_EQ(Copy("sub/new.pas", "SUB/Third.pas"), ERROR_SUCCESS);
  EXPECT_EQ(Outcome(FFiles.CreateDirectoryA(FTree.WindowsPath("SUB"))), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(Outcome(FFiles.CreateDirectoryA(FTree.WindowsPath("sUB\\new.PAS"))), ERROR_ALREADY_EXISTS);
  EXPECT_EQ(Outcome(FFiles.CreateDirectoryA(FTree.WindowsPath("sub\\Folder"))), ERROR_SUCCESS);
  EXPECT_EQ(Create("sub/folder/x"), ERROR_SUCCESS);
  EXPECT_EQ(FTree.Names(), TNames{"Sub"});
  EXPECT_EQ(FTree.Names("Sub"), (TNames{"Folder", "New.pas", "Third.pas", "Unit1.pas"}));
  EXPECT_EQ(FTree.Read("Sub/Unit1.pas"), "new");
  EXPECT_EQ(FFiles.GetLongPathNameA(FTree.WindowsPath("SUB/unit1.PAS")), FTree.WindowsPath("Sub/Unit1.pas"));
  EXPECT_EQ(FFiles.GetLongPathNameA(FTree.WindowsPath("SUB/No/unit1.PAS")),
            FTree.WindowsPath("Sub/No/unit1.PAS"));
  EXPECT_EQ(Outcome(FFiles.DeleteFileA(FTree.WindowsPath("sub/THIRD.pas"))), ERROR_SUCCESS);
  EXPECT_EQ(Outcome(FFiles.RemoveDirectoryA(FTree.WindowsPath("sub"))), ERROR_DIR_NOT_EMPTY);
  EXPECT_EQ(FTree.Names("Sub"), (TNames{"Folder", "New.pas", "Unit1.pas"}));
}

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
  EXPECT_EQ(Outcome(FFiles.DeleteFileA(FTree.WindowsPath("readonly"))), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Outcome(FFiles.DeleteFileA(FTree.WindowsPath("folder"))), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Outcome(FFiles.RemoveDirectoryA(FTree.WindowsPath("plain"))), ERROR_DIRECTORY);
  EXPECT_EQ(Open("loop"), "error 1921");
  EXPECT_EQ(Copy("plain", "loop"), ERROR_CANT_RESOLVE_FILENAME);
  EXPECT_EQ(Copy("plain", "PLAIN"), ERROR_SHARING_VIOLATION);
  EXPECT_EQ(Copy("plain", "READONLY", true), ERROR_FILE_EXISTS);
  EXPECT_EQ(Copy("plain", "taken", true), ERROR_SUCCESS);
  EXPECT_EQ(Copy("none", "x"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Copy("plain", "none/x"), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(Create("none/x"), ERROR_PATH_NOT_FOUND);
  EXPECT_EQ(Outcome(FFiles.CreateDirectoryA(FTree.WindowsPath("none/x"))), ERROR_PATH_NOT_FOUND);
  for (const char* const path : {"", "Q:\\x", "\\\\server\\x"}) {
    EXPECT_EQ(Outcome(FFiles.CreateDirectoryA(path)), ERROR_PATH_NOT_FOUND) << path;
  }
  EXPECT_EQ(Outcome(FFiles.CopyFileA(FTree.WindowsPath("plain"),
                                     FTree.WindowsPath() + std::string("\\a\0b", 4), false)),
            ERROR_INVALID_NAME);
  EXPECT_EQ(Outcome(FFiles.CopyFileA(FTree.WindowsPath("plain"), FTree.WindowsPath("a") + "\\", false)),
            ERROR_INVALID_NAME);
  EXPECT_EQ(FTree.Read("readonly"), "kept");
  EXPECT_EQ(FTree.Names(), (TNames{"device", "folder", "loop", "pipe", "plain", "readonly", "taken"}));
}

TEST_F(WinFilesTest, LinksAndAttributes) {
  FTree.Write("folder/file", "old");
  FTree.Write("new", "new");
  FTree.Write("readonly", "");
  chmod(FTree.HostPath("readonly").c_str(), 0444);
  FTree.Link("folder", "toFolder");
  FTree.Link("toFolder/file", "toFile");
  FTree.Link("toFile", "toLink");
  FTree.Link("folder/later", "broken");
  const char* const rows[][2] = {{"folder", "D"},     {"new", "N"},       {"readonly", "R"},
                                 {"toFolder", "DL"},  {"TOFILE", "N"},    {"broken", "error 2"},
                                 {"none", "error 2"}, {"no/x", "error 3"}};
  for (const auto& [name, attributes] : rows) EXPECT_EQ(Attributes(name), attributes) << name;
  EXPECT_EQ(FFiles.GetFileAttributesA(FTree.WindowsPath("FOLDER") + "\\"), FILE_ATTRIBUTE_DIRECTORY);
  EXPECT_EQ(FFiles.GetFileAttributesA(FTree.WindowsPath("new") + "\\"), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(Walk(""), (TNames{". D", ".. D", "broken N", "folder D", "new N", "readonly N", "toFile N",
                              "toFolder DL", "toLink N"}));
  EXPECT_EQ(Copy("new", "TOLINK"), ERROR_SUCCESS);
  EXPECT_EQ(FTree.Read("folder/file"), "new");
  EXPECT_EQ(Copy("new", "broken"), ERROR_SUCCESS);
  EXPECT_EQ(FTree.Read("folder/later"), "new");
  EXPECT_EQ(Create("toFile", "again"), ERROR_SUCCESS);
  EXPECT_EQ(FTree.Read("folder/file"), "again");
  EXPECT_EQ(Outcome(FFiles.DeleteFileA(FTree.WindowsPath("toFile"))), ERROR_SUCCESS);
  EXPECT_EQ(Outcome(FFiles.DeleteFileA(FTree.WindowsPath("toFolder"))), ERROR_ACCESS_DENIED);
  EXPECT_EQ(Outcome(FFiles.RemoveDirectoryA(FTree.WindowsPath("TOFOLDER"))), ERROR_SUCCESS);
  EXPECT_EQ(FTree.Names(), (TNames{"broken", "folder", "new", "readonly", "toLink"}));
  EXPECT_EQ(FTree.Names("folder"), (TNames{"file", "later"}));
}

TEST_F(WinFilesTest, WalksGoInNtfsOrderAndPassOverWhatHasNoWindowsName) {
  for (const char* const name :
       {"b", "_", "a", "B1", "Ä", "z", "A", "a\\b.pas", "\xE4.pas", "a:b.pas", "a\nb"})
    FTree.Write(name, "");
  TNames lines;
  const auto previous = SetDiagnosticsSink([&lines](std::string_view line) { lines.emplace_back(line); });
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Walk(""), (TNames{". D", ".. D", "A N", "a N", "b N", "B1 N", "z N", "_ N", "Ä N"}));
  }
  SetDiagnosticsSink(previous);
  std::sort(lines.begin(), lines.end());
  const std::string text = "Passed over, because no Windows path can name it: " + FTree.HostPath();
  EXPECT_EQ(lines, (TNames{text + "/\\xE4.pas", text + "/a:b.pas", text + "/a\\b.pas", text + "/a\\x0Ab"}));
  EXPECT_EQ(Walk("none"), TNames{"error 3"});
  EXPECT_EQ(Walk("a"), TNames{"error 267"});
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

TEST_F(WinFilesTest, AReaderSeesTheOldFileOrTheNewOne) {
  const std::string one(700000, '1'), two(700000, '2');
  FTree.Write("one", one);
  FTree.Write("two", two);
  FTree.Write("Target", one);
  std::atomic<bool> stop = false;
  std::atomic<int> broken = 0;
  std::thread reader([&] {
    while (!stop) {
      const std::string seen = FTree.Read("Target");
      if (seen != one && seen != two) ++broken;
    }
  });
  for (int i = 0; i < 200; ++i) EXPECT_EQ(Copy(i % 2 ? "one" : "two", "TARGET"), ERROR_SUCCESS);
  stop = true;
  reader.join();
  EXPECT_EQ(broken, 0);
}

TEST_F(WinFilesTest, AFullDiskLeavesTheTargetAsItWas) {
  FTree.Write("source", std::string(500000, 's'));
  FTree.Write("target", "as it was");
  // A limit to the size of files stands in for the disk's.
  rlimit limit{}, old{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
  signal(SIGXFSZ, SIG_IGN);
  limit = old;
  limit.rlim_cur = 400000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  const uint32_t overwriting = Copy("source", "target");
  const uint32_t creating = Copy("source", "other");
  const uint32_t writing = Create("written", std::string(500000, 'w'));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &old), 0);
  EXPECT_EQ(overwriting, ERROR_DISK_FULL);
  EXPECT_EQ(creating, ERROR_DISK_FULL);
  EXPECT_EQ(writing, ERROR_DISK_FULL);
  EXPECT_EQ(FTree.Read("target"), "as it was");
  EXPECT_EQ(FTree.Names(), (TNames{"source", "target", "written"}));
}

TEST_F(WinFilesTest, AKilledCopyLeavesTheTargetAsItWas) {
  const std::string bytes(30000000, 's');
  FTree.Write("source", bytes);
  FTree.Write("target", "as it was");
  for (int i = 1; i <= 10; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      while (Copy("source", "target") == ERROR_SUCCESS) FTree.Write("done", "");
      _exit(1);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2 * i));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::string seen = FTree.Read("target");
    EXPECT_TRUE(seen == bytes || (seen == "as it was" && !FTree.Exists("done"))) << i << " " << seen.size();
    for (const std::string& name : FTree.Names()) {
      EXPECT_TRUE(name == "source" || name == "target" || name == "done" ||
                  name.substr(name.size() - 4) == ".$$$");
    }
  }
}

TEST_F(WinFilesTest, LongNamesAndLongPaths) {
  const std::string name(255, 'n');
  EXPECT_EQ(Create(name), ERROR_SUCCESS);
  EXPECT_EQ(Copy(name, std::string(255, 'm')), ERROR_SUCCESS);
  EXPECT_EQ(Create(std::string(256, 'n')), ERROR_FILENAME_EXCED_RANGE);
  std::string folder = FTree.WindowsPath();
  for (int i = 0; i < 40; ++i) {  // some 8,000 bytes
    folder += "\\" + std::string(200, 'd');
    ASSERT_TRUE(FFiles.CreateDirectoryA(folder)) << GetLastError();
  }
  std::string upper =
      folder.substr(0, FTree.WindowsPath().size()) + UpperFileName(folder.substr(FTree.WindowsPath().size()));
  ASSERT_TRUE(FFiles.CopyFileA(FTree.WindowsPath(name), upper + "\\File", false)) << GetLastError();
  ASSERT_TRUE(FFiles.CopyFileA(upper + "\\file", folder + "\\second", false)) << GetLastError();
  TFindData data;
  const auto walk = FFiles.FindFirstFileA(upper + "\\*.*", data);
  ASSERT_TRUE(walk && walk->Next(data) && walk->Next(data));
  EXPECT_EQ(data.FileName, "File");
  EXPECT_EQ(FFiles.GetFileAttributesA(folder + "\\SECOND"), FILE_ATTRIBUTE_NORMAL);
  EXPECT_TRUE(FFiles.DeleteFileA(upper + "\\file") && FFiles.DeleteFileA(upper + "\\second"));
  while (folder.size() > FTree.WindowsPath().size()) {
    ASSERT_TRUE(FFiles.RemoveDirectoryA(folder)) << GetLastError();
    folder.resize(folder.rfind('\\'));
  }
}

// What others do to a folder is seen at once, whether its listing is trusted, was just read, or is kept
// current.
TEST_F(WinFilesTest, ForeignChangesBetweenLookUpsAreSeen) {
  for (const int mode : {0, 1, 2}) {
    FTree.MakeFolder(std::to_string(mode));
    const std::string base = std::to_string(mode) + "/";
    FTree.Write(base + "Other", "other");
    if (mode == 0) Settle();
    for (int i = 0; i < 50; ++i) {
      const auto own = [&] {
        const bool succeeded = mode != 2 || Create(base + "own" + std::to_string(i)) == ERROR_SUCCESS;
        EXPECT_TRUE(succeeded);
      };
      own();
      EXPECT_EQ(Open(base + "FOREIGN"), "error 2") << mode << " " << i;
      own();
      FTree.Write(base + "foreign", "1");
      EXPECT_EQ(Open(base + "FOREIGN"), "1") << mode << " " << i;
      std::filesystem::rename(FTree.HostPath(base + "foreign"), FTree.HostPath(base + "Renamed"));
      EXPECT_EQ(Open(base + "FOREIGN"), "error 2") << mode << " " << i;
      EXPECT_EQ(Open(base + "RENAMED"), "1") << mode << " " << i;
      std::filesystem::rename(FTree.HostPath(base + "Renamed"), FTree.HostPath(base + "renameD"));
      EXPECT_EQ(Open(base + "RENAMED"), "1") << mode << " " << i;
      std::filesystem::remove(FTree.HostPath(base + "renameD"));
      EXPECT_EQ(Open(base + "RENAMED"), "error 2") << mode << " " << i;
      EXPECT_EQ(Open(base + "OTHER"), "other");
    }
  }
}

// What was looked for a moment ago in a folder says nothing of the folder itself, nor of what others put
// there.
TEST_F(WinFilesTest, AListingDoesNotHideWhatIsThere) {
  for (const char* const path : {"Z:\\", ".", ".."}) {
    EXPECT_EQ(Bits(FFiles.GetFileAttributesA(std::string(path) + "\\no such file")), "RDLN") << path;
    EXPECT_EQ(Bits(FFiles.GetFileAttributesA(path)), "D") << path;
  }
  FTree.Link("file", "link");
  for (int i = 0; i < 20; ++i) {
    const std::string number = std::to_string(i);
    EXPECT_EQ(Create("Own" + number), ERROR_SUCCESS);
    FTree.Write("foreign" + number, "kept");
    chmod(FTree.HostPath("foreign" + number).c_str(), 0444);
    EXPECT_EQ(Create("own again" + number), ERROR_SUCCESS);
    EXPECT_EQ(Attributes("foreign" + number), "R");
    EXPECT_EQ(Copy("Own0", "foreign" + number), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Copy("OWN" + number, "LINK"), ERROR_SUCCESS);
  }
  EXPECT_EQ(FTree.Read("file"), "new");
  EXPECT_EQ(FTree.Read("foreign7"), "kept");
  EXPECT_TRUE(std::filesystem::is_symlink(FTree.HostPath("link")));
}

TEST(WinFilesManyTest, AFolderOfManyNamesIsNotReadForEachOfThem) {
  constexpr size_t kFiles = 5000;
  const bool inMemory = access("/dev/shm", W_OK | X_OK) == 0;
  const tests::TTempTree tree(inMemory ? "/dev/shm" : std::filesystem::temp_directory_path());
  const auto path = [&tree](const char* stem, size_t i) {
    return tree.WindowsPath(stem + std::to_string(i));
  };
  TPosixFileSystem files;
  const auto begin = std::chrono::steady_clock::now();
  for (size_t i = 0; i < kFiles; ++i) ASSERT_TRUE(files.CreateFileA(path("Unit", i), TFileMode::Create));
  for (size_t i = 0; i < kFiles; ++i)
    ASSERT_EQ(files.GetFileAttributesA(path("UNIT", i)), FILE_ATTRIBUTE_NORMAL);
  for (size_t i = 1; i < kFiles; ++i) ASSERT_TRUE(files.CopyFileA(path("unit", 0), path("UNIT", i), false));
  for (size_t i = 1; i < kFiles; ++i) ASSERT_TRUE(files.DeleteFileA(path("UNIT", i)));
  // Own changes keep a listing in use for a tenth of a second or more.
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  EXPECT_LT(files.FolderReadings(), 100 + static_cast<size_t>(10 * seconds.count()));
  EXPECT_EQ(tree.Names(), TNames{"Unit0"});
}

TEST_F(WinFilesTest, FlushBringsFewAndManyFilesToTheDisk) {
  EXPECT_TRUE(FFiles.FlushWritten());
  for (int i = 0; i < 40; ++i) {
    ASSERT_EQ(Create("file" + std::to_string(i)), ERROR_SUCCESS);
    EXPECT_TRUE((i != 3 && i != 39) || FFiles.FlushWritten());
  }
}

TEST_F(WinFilesTest, Drives) {
  FTree.MakeFolder("checkout/Sub");
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
  for (int i = 0; i < 500 && !FTree.Exists("seen"); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(FTree.Read("seen"), "1" + FTree.HostPath("Log -x.txt"));
  setenv("PATH", FTree.HostPath("none").c_str(), 1);
  EXPECT_FALSE(ShellExecuteA("open", FTree.WindowsPath("Log -x.txt")));
  setenv("PATH", path.c_str(), 1);
}

}  // namespace
}  // namespace win
