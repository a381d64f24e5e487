// The file functions on what only Windows has: attributes, sharing, access lists, short names, kinds of
// paths.
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>

#include "tests/TempTree.h"
#include "win/FileApi.h"
#include "win/Shell.h"
#include "win/windows/WindowsAccess.h"
#include "win/windows/WindowsPath.h"
#include "win/windows/WindowsText.h"

namespace win {
namespace {

constexpr DWORD kHidden = 0x02, kSystem = 0x04;
constexpr DWORD kKept = FILE_ATTRIBUTE_READONLY | kHidden | kSystem;

bool IsWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

class WindowsLayerTest : public testing::Test {
 protected:
  std::string Path(std::string_view name) const { return FTree.WindowsPath(name); }
  std::wstring Wide(std::string_view name) const { return ToWideOrReplaced(Path(name)); }
  DWORD Attributes(std::string_view name) const { return GetFileAttributesW(Wide(name).c_str()) & kKept; }
  void SetAttributes(std::string_view name, DWORD attributes) const {
    EXPECT_TRUE(SetFileAttributesW(Wide(name).c_str(), attributes));
  }
  // Opens a file as another program does that shares it for `share`.
  THandle Hold(std::string_view name, DWORD share) const {
    return THandle(CreateFileW(Wide(name).c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
  }
  static uint32_t Outcome(bool succeeded) { return succeeded ? ERROR_SUCCESS : GetLastError(); }

  tests::TTempTree FTree;
  const std::unique_ptr<TFileSystem> FFiles = AnotherHostFileSystem();
};

TEST_F(WindowsLayerTest, AttributesAreKept) {
  const auto copy = [&] { return FFiles->CopyFileA(Path("New.pas"), Path("Old.pas"), false); };
  const auto over = [&] {
    return FFiles->CopyOverUnchanged(Path("New.pas"), Path("Old.pas"),
                                     *FFiles->GetFileStamp(Path("Old.pas")));
  };
  const auto contents = [&] { return FFiles->ReplaceFileContents(Path("Old.pas"), "new"); };
  const auto own = [&] { return FFiles->CopyToOwnFile(Path("New.pas"), Path("Old.pas")); };
  const struct {
    const char* What;
    std::function<bool()> Replace;
    DWORD Old, New, After;
  } rows[] = {
      {"a hidden file", copy, kHidden | kSystem, 0, kHidden | kSystem},
      {"a hidden file, from a hidden one", over, kHidden, kSystem, kHidden},
      {"its contents", contents, kHidden | kSystem, 0, kHidden | kSystem},
      {"read-only comes from the source", copy, kHidden, FILE_ATTRIBUTE_READONLY,
       kHidden | FILE_ATTRIBUTE_READONLY},
      {"a backup is as its source", own, FILE_ATTRIBUTE_READONLY, kHidden | kSystem, kHidden | kSystem},
  };
  for (const auto& row : rows) {
    FTree.Write("Old.pas", "old");
    FTree.Write("New.pas", "new");
    SetAttributes("Old.pas", row.Old);
    SetAttributes("New.pas", row.New);
    EXPECT_TRUE(row.Replace()) << row.What << " " << GetLastError();
    EXPECT_EQ(FTree.Read("Old.pas"), "new") << row.What;
    EXPECT_EQ(Attributes("Old.pas"), row.After) << row.What;
    SetAttributes("Old.pas", FILE_ATTRIBUTE_NORMAL);
    if (FTree.Exists("New.pas")) SetAttributes("New.pas", FILE_ATTRIBUTE_NORMAL);
  }
}

TEST_F(WindowsLayerTest, FilesInUse) {
  FTree.Write("Used.pas", "used");
  FTree.Write("New.pas", "new");
  const TFileStamp stamp = *FFiles->GetFileStamp(Path("Used.pas"));
  const std::pair<const char*, std::function<bool()>> rows[] = {
      {"read", [&] { return FFiles->CreateFileA(Path("Used.pas"), TFileMode::OpenRead) != nullptr; }},
      {"write", [&] { return FFiles->CreateFileA(Path("Used.pas"), TFileMode::Create) != nullptr; }},
      {"write own", [&] { return FFiles->CreateFileA(Path("Used.pas"), TFileMode::CreateOwn) != nullptr; }},
      {"back up", [&] { return FFiles->CopyToOwnFile(Path("Used.pas"), Path("Used.~pas")); }},
      {"replace", [&] { return FFiles->CopyOverUnchanged(Path("New.pas"), Path("Used.pas"), stamp); }},
      {"delete", [&] { return FFiles->DeleteFileA(Path("Used.pas")); }},
  };
  const THandle other = Hold("Used.pas", 0);
  for (const auto& [what, operation] : rows) EXPECT_EQ(Outcome(operation()), ERROR_SHARING_VIOLATION) << what;
  EXPECT_EQ(SysErrorMessage(ERROR_SHARING_VIOLATION),
            "The process cannot access the file because it is being used by another process.");
  std::vector<std::string> names = FTree.Names();
  // Wine's ReplaceFile leaves such a file where it fails.
  if (IsWine()) std::erase_if(names, [](const std::string& name) { return name.ends_with(".tmp"); });
  EXPECT_EQ(names, (std::vector<std::string>{"New.pas", "Used.pas"}));
}

TEST_F(WindowsLayerTest, AFileThatOthersReadIsRead) {
  FTree.Write("Used.pas", "used");
  const THandle other = Hold("Used.pas", FILE_SHARE_READ | FILE_SHARE_WRITE);
  EXPECT_TRUE(FFiles->CreateFileA(Path("Used.pas"), TFileMode::OpenRead));
  EXPECT_TRUE(FFiles->CopyToOwnFile(Path("Used.pas"), Path("Used.~pas")));
  EXPECT_EQ(FTree.Read("Used.~pas"), "used");
}

// Returns a file's access list as a text.
std::wstring AccessOf(const std::wstring& name) {
  DWORD size = 0;
  GetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<char> descriptor(size);
  wchar_t* text = nullptr;
  if (!GetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size) ||
      !ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor.data(), SDDL_REVISION_1,
                                                            DACL_SECURITY_INFORMATION, &text, nullptr))
    return L"none";
  std::wstring result = text;
  LocalFree(text);
  return result;
}

TEST_F(WindowsLayerTest, AccessListsSurvive) {
  FTree.Write("Old.pas", "old");
  FTree.Write("New.pas", "new");
  TPrivateAccess access;
  ASSERT_TRUE(SetFileSecurityW(Wide("Old.pas").c_str(), DACL_SECURITY_INFORMATION,
                               access.Get()->lpSecurityDescriptor));
  const std::wstring isPrivate = AccessOf(Wide("Old.pas"));
  ASSERT_NE(isPrivate, AccessOf(Wide("New.pas")));
  EXPECT_TRUE(FFiles->CopyToOwnFile(Path("Old.pas"), Path("Old.~pas")));
  EXPECT_EQ(AccessOf(Wide("Old.~pas")), isPrivate);
  EXPECT_TRUE(FFiles->CopyFileA(Path("New.pas"), Path("Old.pas"), false));
  EXPECT_EQ(FTree.Read("Old.pas"), "new");
  EXPECT_EQ(AccessOf(Wide("Old.pas")), isPrivate);
  EXPECT_TRUE(FFiles->ReplaceFileContents(Path("Old.pas"), "newer"));
  EXPECT_EQ(AccessOf(Wide("Old.pas")), isPrivate);
}

TEST_F(WindowsLayerTest, ShortNamesAreTheFileOfTheLongOne) {
  FTree.Write("A very long name.pas", "old");
  wchar_t name[MAX_PATH] = {};
  ASSERT_GT(GetShortPathNameW(Wide("A very long name.pas").c_str(), name, MAX_PATH), 0U);
  const std::string shortPath = ToUtf8OrReplaced(name);
  if (shortPath == Path("A very long name.pas")) GTEST_SKIP() << "this volume has no short names";
  EXPECT_EQ(FFiles->GetLongPathNameA(shortPath), Path("A very long name.pas"));
  FTree.Write("New.pas", "new");
  EXPECT_TRUE(FFiles->CopyFileA(Path("New.pas"), shortPath, false));
  EXPECT_EQ(FTree.Names(), (std::vector<std::string>{"A very long name.pas", "New.pas"}));
  EXPECT_EQ(FTree.Read("A very long name.pas"), "new");
}

// Other systems create them, and the system's own functions with the prefix "\\?\".
TEST_F(WindowsLayerTest, NamesThatEndInADotAreSkipped) {
  const std::string path = Path("") + "\\Sub.";
  ASSERT_TRUE(CreateDirectoryW((LR"(\\?\)" + ToWideOrReplaced(path)).c_str(), nullptr));
  TFindData data;
  const auto walk = FFiles->FindFirstFileA(Path("") + "\\*.*", data);
  ASSERT_TRUE(walk && walk->Unnamed().size() == 1);
  EXPECT_EQ(walk->Unnamed()[0].Message, "Skipped, because no Windows path can name it: " + path);
  RemoveDirectoryW((LR"(\\?\)" + ToWideOrReplaced(path)).c_str());
}

TEST_F(WindowsLayerTest, NamesThatDifferInNormalisationAreTwoFiles) {
  EXPECT_TRUE(FFiles->ReplaceFileContents(Path("\u00E9.pas"), "one character"));
  EXPECT_TRUE(FFiles->ReplaceFileContents(Path("e\u0301.pas"), "two"));
  EXPECT_EQ(FTree.Names().size(), 2U);
  EXPECT_EQ(FTree.Read("\u00C9.pas"), "one character");
}

// A share of this machine, which tests/windows.sh has made, serves as a network drive.
TEST_F(WindowsLayerTest, NetworkDrives) {
  const char* const drive = std::getenv("KVA_TEST_SHARE");
  if (!drive) GTEST_SKIP() << "KVA_TEST_SHARE is not set";
  const std::string folder = drive + std::string(R"(\Folder)"), unit = folder + R"(\Unit1.pas)";
  ASSERT_TRUE(FFiles->CreateDirectoryA(folder)) << GetLastError();
  const std::wstring lockFile = ToWideOrReplaced(folder + R"(\~kvalock.$$$)");
  const auto open = [&](DWORD share, DWORD how) {
    return THandle(
        CreateFileW(lockFile.c_str(), GENERIC_READ, share, nullptr, how, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  };
  {
    const auto lock = FFiles->LockFolder(folder);
    EXPECT_TRUE(lock);
    EXPECT_FALSE(open(FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING).IsOpen());
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
    EXPECT_TRUE(FFiles->ReplaceFileContents(unit, "one"));
    EXPECT_TRUE(FFiles->CopyToOwnFile(unit, folder + R"(\Unit1.~pas)"));
    EXPECT_TRUE(FFiles->ReplaceFileContents(unit, "two"));
    EXPECT_TRUE(FFiles->MoveFileReplacing(folder + R"(\Unit1.~pas)", folder + R"(\UNIT1.PAS)"));
    EXPECT_EQ(FFiles->GetLongPathNameA(drive + std::string(R"(\FOLDER\unit1.PAS)")), unit);
    EXPECT_TRUE(FFiles->FlushWritten());
  }
  {
    const THandle otherComputer = open(0, CREATE_NEW);
    EXPECT_TRUE(otherComputer.IsOpen());
    EXPECT_EQ(Outcome(FFiles->LockFolder(folder) != nullptr), ERROR_SHARING_VIOLATION);
  }
  EXPECT_TRUE(FFiles->DeleteFileA(unit));
  EXPECT_TRUE(FFiles->RemoveDirectoryA(folder)) << GetLastError();  // so it is empty
}

// The program that opens the log.
TEST_F(WindowsLayerTest, AFileIsOpenedByItsProgram) {
  if (!std::getenv("KVA_TEST_MACHINE")) GTEST_SKIP() << "KVA_TEST_MACHINE is not set";
  const std::wstring opened = Wide("opened.txt");
  const auto set = [](const wchar_t* key, const std::wstring& value) {
    return RegSetKeyValueW(HKEY_CLASSES_ROOT, key, nullptr, REG_SZ, value.c_str(),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  };
  ASSERT_EQ(set(L".kvatest", L"kvatest"), 0);
  ASSERT_EQ(set(LR"(kvatest\shell\open\command)", LR"(cmd.exe /c copy "%1" ")" + opened + L"\""), 0);
  FTree.Write("A log \u00E9.kvatest", "read me");
  EXPECT_TRUE(ShellExecuteA("open", Path("A log \u00E9.kvatest"))) << GetLastError();
  for (int i = 0; i < 600 && FTree.Read("opened.txt") != "read me"; ++i) Sleep(100);
  EXPECT_EQ(FTree.Read("opened.txt"), "read me");
  EXPECT_EQ(Outcome(ShellExecuteA("open", Path("None.kvatest"))), ERROR_FILE_NOT_FOUND);
  FTree.Write("A.noprogram", "");
  EXPECT_EQ(Outcome(ShellExecuteA("open", Path("A.noprogram"))), ERROR_FILE_NOT_FOUND);
  RegDeleteTreeW(HKEY_CLASSES_ROOT, L".kvatest");
  RegDeleteTreeW(HKEY_CLASSES_ROOT, L"kvatest");
}

TEST(WindowsPathTest, FullPaths) {
  const struct {
    const char* Path;
    const wchar_t* Full;  // null: no file's name
  } rows[] = {
      {R"(C:\Src\Unit1.pas)", LR"(\\?\C:\Src\Unit1.pas)"},
      {R"(C:/Src\.\..\Unit1.pas)", LR"(\\?\C:\Unit1.pas)"},
      {R"(C:\)", LR"(\\?\C:\)"},
      {R"(\\server\share\Src\Unit1.pas)", LR"(\\?\UNC\server\share\Src\Unit1.pas)"},
      {R"(//server/share/../../Src/)", LR"(\\?\UNC\server\share\Src)"},
      {R"(\\server\share)", LR"(\\?\UNC\server\share)"},
      {R"(\\server\share\)", LR"(\\?\UNC\server\share\)"},
      {R"(\\?\UNC\server\share\Unit1.pas)", LR"(\\?\UNC\server\share\Unit1.pas)"},
      {R"(\\?\C:\Src\Unit1.pas)", LR"(\\?\C:\Src\Unit1.pas)"},
      {R"(C:\Src\con.pas)", LR"(\\?\C:\Src\con.pas)"},
      {R"(C:\Src\AUX)", LR"(\\?\C:\Src\AUX)"},
      {R"(C:\Src. .\con. )", LR"(\\?\C:\Src\con)"},
      {R"(\\?\C:\Src\Unit1.pas )", LR"(\\?\C:\Src\Unit1.pas )"},
      {R"(\Unit1.pas)", LR"(\\?\C:\Unit1.pas)"},
      {R"(Unit1.pas)", LR"(\\?\C:\windows\Unit1.pas)"},
      {R"(C:Unit1.pas)", LR"(\\?\C:\windows\Unit1.pas)"},
      {R"(C:)", LR"(\\?\C:\windows)"},
      {R"(C:\Src\Unit1.pas:stream)", nullptr},
      {R"(Unit1.pas::$DATA)", nullptr},
      {R"(C:\Src:stream\Unit1.pas)", nullptr},
      {R"(C:\Src\Unit?.pas)", nullptr},
      {"C:\\Src\\a\tb", nullptr},
      {"\xFF.pas", nullptr},
  };
  wchar_t before[MAX_PATH] = {};
  GetCurrentDirectoryW(MAX_PATH, before);
  ASSERT_TRUE(SetCurrentDirectoryW(LR"(C:\windows)"));
  for (const auto& row : rows) {
    std::wstring full;
    const bool isName = FullPath(row.Path, TPathKind::Folder, full);
    EXPECT_EQ(isName, row.Full != nullptr) << row.Path;
    if (isName && row.Full) {
      EXPECT_EQ(ToUtf8OrReplaced(full), ToUtf8OrReplaced(row.Full)) << row.Path;
    } else {
      EXPECT_EQ(GetLastError(), ERROR_INVALID_NAME) << row.Path;
    }
  }
  SetCurrentDirectoryW(before);
}

}  // namespace
}  // namespace win
