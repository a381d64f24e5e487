// The contracts of win/FileSystem.h that hold on every host, on the host's own files.
#include <chrono>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#include "tests/TempTree.h"
#include "win/FileApi.h"

namespace win {
namespace {

class WinLayerTest : public testing::Test {
 protected:
  std::string Path(std::string_view name) const { return FTree.WindowsPath() + "\\" + std::string(name); }
  static uint32_t Outcome(bool succeeded) { return succeeded ? ERROR_SUCCESS : GetLastError(); }
  uint32_t Open(std::string_view name, TFileMode mode) {
    return Outcome(FFiles->CreateFileA(Path(name), mode) != nullptr);
  }
  uint32_t Walk(std::string_view name, std::vector<std::string>& names) {
    TFindData data;
    auto walk = FFiles->FindFirstFileA(Path(name) + "\\*.*", data);
    if (!walk) return GetLastError();
    do names.push_back(data.FileName + (data.FileAttributes == FILE_ATTRIBUTE_DIRECTORY ? "\\" : ""));
    while (walk->Next(data));
    return GetLastError();
  }
  void SetReadOnly(std::string_view name, bool isReadOnly) {
    namespace fs = std::filesystem;
    fs::permissions(FTree.HostPath(name),
                    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    isReadOnly ? fs::perm_options::remove : fs::perm_options::add);
  }

  tests::TTempTree FTree;
  const std::unique_ptr<TFileSystem> FFiles = AnotherHostFileSystem();
};

TEST_F(WinLayerTest, Errors) {
  FTree.Write("File.pas", "old");
  FTree.Write("Locked.pas", "locked");
  FTree.Write("Folder/Inner.pas", "inner");
  SetReadOnly("Locked.pas", true);
  std::vector<std::string> names;
  TFileSystem& files = *FFiles;
  const auto copy = [&](const char* from, const char* to, bool onlyIfFree = false) {
    return Outcome(files.CopyFileA(Path(from), Path(to), onlyIfFree));
  };
  const auto move = [&](const char* from, const char* to) {
    return Outcome(files.MoveFileReplacing(Path(from), Path(to)));
  };
  const std::tuple<const char*, std::function<uint32_t()>, uint32_t> rows[] = {
      {"read nothing", [&] { return Open("None.pas", TFileMode::OpenRead); }, ERROR_FILE_NOT_FOUND},
      {"read in no folder", [&] { return Open("None\\File.pas", TFileMode::OpenRead); },
       ERROR_PATH_NOT_FOUND},
      {"read a folder", [&] { return Open("Folder", TFileMode::OpenRead); }, ERROR_ACCESS_DENIED},
      {"read a name of a folder", [&] { return Open("File.pas\\", TFileMode::OpenRead); },
       ERROR_INVALID_NAME},
      {"write read-only", [&] { return Open("Locked.pas", TFileMode::Create); }, ERROR_ACCESS_DENIED},
      {"write own read-only", [&] { return Open("Locked.pas", TFileMode::CreateOwn); }, ERROR_ACCESS_DENIED},
      {"write in no folder", [&] { return Open("None\\File.pas", TFileMode::Create); }, ERROR_PATH_NOT_FOUND},
      {"copy nothing", [&] { return copy("None.pas", "To.pas"); }, ERROR_FILE_NOT_FOUND},
      {"copy to taken", [&] { return copy("File.pas", "FILE2.pas") + copy("File.pas", "File2.PAS", true); },
       ERROR_FILE_EXISTS},
      {"copy to itself", [&] { return copy("File.pas", "FILE.PAS"); }, ERROR_SHARING_VIOLATION},
      {"copy to read-only", [&] { return copy("File.pas", "Locked.pas"); }, ERROR_ACCESS_DENIED},
      {"copy to folder", [&] { return copy("File.pas", "Folder"); }, ERROR_ACCESS_DENIED},
      {"copy to no folder", [&] { return copy("File.pas", "None\\File.pas"); }, ERROR_PATH_NOT_FOUND},
      {"move nothing", [&] { return move("None.pas", "To.pas"); }, ERROR_FILE_NOT_FOUND},
      {"move to read-only", [&] { return move("File.pas", "Locked.pas"); }, ERROR_ACCESS_DENIED},
      {"move to folder", [&] { return move("File.pas", "Folder"); }, ERROR_ACCESS_DENIED},
      {"move a folder", [&] { return move("Folder", "Other"); }, ERROR_ACCESS_DENIED},
      {"delete read-only", [&] { return Outcome(files.DeleteFileA(Path("Locked.pas"))); },
       ERROR_ACCESS_DENIED},
      {"delete a folder", [&] { return Outcome(files.DeleteFileA(Path("Folder"))); }, ERROR_ACCESS_DENIED},
      {"remove full", [&] { return Outcome(files.RemoveDirectoryA(Path("Folder"))); }, ERROR_DIR_NOT_EMPTY},
      {"remove a file", [&] { return Outcome(files.RemoveDirectoryA(Path("File.pas"))); }, ERROR_DIRECTORY},
      {"create taken", [&] { return Outcome(files.CreateDirectoryA(Path("FOLDER"))); }, ERROR_ALREADY_EXISTS},
      {"walk nothing", [&] { return Walk("None", names); }, ERROR_PATH_NOT_FOUND},
      {"walk a file", [&] { return Walk("File.pas", names); }, ERROR_DIRECTORY},
      {"lock nothing", [&] { return Outcome(files.LockFolder(Path("None")) != nullptr); },
       ERROR_PATH_NOT_FOUND},
      {"lock a file", [&] { return Outcome(files.LockFolder(Path("File.pas")) != nullptr); },
       ERROR_PATH_NOT_FOUND},
      {"flush nothing", [&] { return Outcome(files.FlushFolder(Path("None"))); }, ERROR_PATH_NOT_FOUND},
      {"not a name", [&] { return Open(std::string_view("a\0b", 3), TFileMode::OpenRead); },
       ERROR_INVALID_NAME},
      {"dots and blanks", [&] { return Open(". .", TFileMode::Create); }, ERROR_INVALID_NAME},
  };
  for (const auto& [name, operation, error] : rows) EXPECT_EQ(operation(), error) << name;
  EXPECT_EQ(FTree.Names(), (std::vector<std::string>{"FILE2.pas", "File.pas", "Folder", "Locked.pas"}));
  EXPECT_EQ(FTree.Read("Locked.pas"), "locked");
  SetReadOnly("Locked.pas", false);
}

TEST_F(WinLayerTest, NamesIgnoreCaseAndKeepTheirSpelling) {
  FTree.Write("Src/Unit.pas", "old");
  FTree.Write("new.tmp", "new");
  for (const char* const name : {"SRC\\uNIT.PAS", "src.\\Unit.pas", "Src . \\.\\unit.pas. "})
    EXPECT_EQ(FFiles->GetLongPathNameA(Path(name)), Path("Src\\Unit.pas")) << name;
  EXPECT_TRUE(FFiles->CopyFileA(Path("NEW.tmp"), Path("src.\\UNIT.pas "), false));
  EXPECT_TRUE(FFiles->ReplaceFileContents(Path("NEW.TMP"), "newer"));
  EXPECT_EQ(FTree.Names("Src"), std::vector<std::string>{"Unit.pas"});
  EXPECT_EQ(FTree.Read("Src/Unit.pas") + FTree.Read("new.tmp"), "newnewer");
  EXPECT_TRUE(FFiles->ReplaceFileContents(Path("Öl.pas."), ""));
  EXPECT_EQ(FFiles->GetLongPathNameA(Path("öL.PAS")), Path("Öl.pas"));
}

TEST_F(WinLayerTest, WalksInTheOrderOfUpperCasedNames) {
  for (const char* const name : {"b.pas", "A.pas", "a_.pas", "Z.pas"}) FTree.Write(name, "");
  EXPECT_TRUE(FFiles->ReplaceFileContents(Path("é.pas"), ""));
  EXPECT_TRUE(FFiles->ReplaceFileContents(Path("con.pas"), "a file, not the device"));
  FTree.MakeFolder("Aa");
  std::vector<std::string> names;
  EXPECT_EQ(Walk("", names), ERROR_NO_MORE_FILES);
  EXPECT_EQ(names, (std::vector<std::string>{".\\", "..\\", "A.pas", "Aa\\", "a_.pas", "b.pas", "con.pas",
                                             "Z.pas", "é.pas"}));
  EXPECT_TRUE(FFiles->DeleteFileA(Path("con.pas")));  // the libraries of the tests cannot
}

TEST_F(WinLayerTest, ACopyHasTheTimeOfItsSource) {
  FTree.Write("Old.pas", "contents");
  const auto then = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000);
  std::filesystem::last_write_time(FTree.HostPath("Old.pas"), then);
  FTree.Write("Taken.pas", "other");
  EXPECT_TRUE(FFiles->CopyFileA(Path("Old.pas"), Path("Taken.pas"), false));
  EXPECT_TRUE(FFiles->CopyToOwnFile(Path("Old.pas"), Path("Old.~pas")));
  for (const char* const name : {"Taken.pas", "Old.~pas"})
    EXPECT_EQ(FFiles->GetFileStamp(Path(name))->Modified, FFiles->GetFileStamp(Path("Old.pas"))->Modified)
        << name;
}

TEST_F(WinLayerTest, AChangedFileIsNotReplaced) {
  FTree.Write("Unit.pas", "read");
  FTree.Write("New.pas", "new");
  const TFileStamp stamp = *FFiles->GetFileStamp(Path("Unit.pas"));
  FTree.Write("Unit.pas", "changed since");
  EXPECT_EQ(Outcome(FFiles->CopyOverUnchanged(Path("New.pas"), Path("Unit.pas"), stamp)), ERROR_FILE_INVALID);
  EXPECT_EQ(FTree.Read("New.pas"), "new");
  EXPECT_EQ(FTree.Read("Unit.pas"), "changed since");
  EXPECT_TRUE(
      FFiles->CopyOverUnchanged(Path("New.pas"), Path("Unit.pas"), *FFiles->GetFileStamp(Path("Unit.pas"))));
  EXPECT_EQ(FTree.Read("Unit.pas"), "new");
  (void)FFiles->DeleteFileA(Path("New.pas"));  // it may be gone already
  EXPECT_EQ(FTree.Names(), std::vector<std::string>{"Unit.pas"});
}

TEST_F(WinLayerTest, OwnFilesAndFoldersAreHeldByOne) {
  auto log = FFiles->CreateFileA(Path("Log.txt"), TFileMode::CreateOwn);
  ASSERT_TRUE(log && log->Write("one", 3));
  EXPECT_EQ(Open("LOG.txt", TFileMode::CreateOwn), ERROR_SHARING_VIOLATION);
  EXPECT_TRUE(FFiles->FlushWritten());  // while it is held
  log.reset();
  EXPECT_TRUE(FFiles->FlushWritten());
  EXPECT_EQ(FTree.Read("Log.txt"), "one");
  auto lock = FFiles->LockFolder(Path(""));
  EXPECT_TRUE(lock);
  EXPECT_EQ(Outcome(AnotherHostFileSystem()->LockFolder(Path("")) != nullptr), ERROR_SHARING_VIOLATION);
  lock.reset();
  EXPECT_TRUE(FFiles->LockFolder(Path("")));
}

TEST_F(WinLayerTest, PathsOfAnyLength) {
  std::string folder;
  for (int i = 0; i < 12; ++i) {
    folder.append(folder.empty() ? "" : "\\").append(40, 'x');
    ASSERT_TRUE(FFiles->CreateDirectoryA(Path(folder))) << GetLastError();
  }
  EXPECT_TRUE(FFiles->ReplaceFileContents(Path(folder + "\\Unit.pas"), "far"));
  EXPECT_TRUE(FFiles->CopyFileA(Path(folder + "\\Unit.pas"), Path("Near.pas"), true));
  EXPECT_EQ(FTree.Read("Near.pas"), "far");
}

}  // namespace
}  // namespace win
