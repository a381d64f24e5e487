// Names and folders: look-ups ignoring case, walks, links, long paths, and concurrent changes by others.
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/posix/WinFiles.h"
#include "win/Diagnostics.h"
#include "win/paths/FileNames.h"

namespace win {
namespace {

using WinFoldersTest = WinFilesTest;

TEST_F(WinFoldersTest, LookUpIgnoresCaseAndTakesTheExactNameFirst) {
  for (const char* const name : {"Unit1.dfm", "TWIN", "Twin", "twin", "ärger", "форма.pas", "straße", "dosyı",
                                 "𐐨", "Sub/Deep/x.PAS", "sub2/y", "only/UPPER", "ONLY/lower"}) {
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
      {"𐐀", "𐐨"},
      {"sUB/dEEP/X.pas", "Sub/Deep/x.PAS"},
      {"SUB2/Y", "sub2/y"},
      {"only/lower", "error 2"},  // the existing folder is the one spelled as given
      {"Only/LOWER", "ONLY/lower"},
      {"Unit1.dfm/x", "error 3"},
      {"nowhere/x", "error 3"},
      {"nowhere", "error 2"},
  };
  for (const auto& [wanted, found] : rows) EXPECT_EQ(Open(wanted), found) << wanted;
}

TEST_F(WinFoldersTest, WritingKeepsTheCaseOnDiskAndMakesNoTwin) {
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

TEST_F(WinFoldersTest, LinksAndAttributes) {
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

TEST_F(WinFoldersTest, WalksGoInNtfsOrderAndPassOverWhatHasNoWindowsName) {
  for (const char* const name :
       {"b", "_", "a", "B1", "Ä", "z", "A", "a\\b.pas", "\xE4.pas", "a:b.pas", "a\nb"})
    FTree.Write(name, "");
  TNames lines;
  const auto previous = SetDiagnosticsSink([&lines](std::string_view line) { lines.emplace_back(line); });
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Walk(""), (TNames{". D", ".. D", "A N", "a N", "b N", "B1 N", "z N", "_ N", "Ä N"}));
  }
  SetDiagnosticsSink(previous);
  const std::string text = "Skipped, because no Windows path can name it: " + FTree.HostPath();
  EXPECT_EQ(lines, (TNames{text + "/a\\x0Ab", text + "/a:b.pas", text + "/a\\b.pas", text + "/\\xE4.pas"}));
  EXPECT_EQ(Walk("none"), TNames{"error 3"});
  EXPECT_EQ(Walk("a"), TNames{"error 267"});
}

TEST_F(WinFoldersTest, LongNamesAndLongPaths) {
  const std::string name(255, 'n');
  EXPECT_EQ(Create(name), ERROR_SUCCESS);
  EXPECT_EQ(Copy(name, std::string(255, 'm')), ERROR_SUCCESS);
  EXPECT_EQ(Create(std::string(256, 'n')), ERROR_FILENAME_EXCED_RANGE);
  std::string folder = FTree.WindowsPath();
  for (int i = 0; i < 40; ++i) {  // about 8,000 bytes
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

// Changes made by others are seen at once, whether the folder's listing is trusted, was just read, or is
// kept current.
TEST_F(WinFoldersTest, ForeignChangesBetweenLookUpsAreSeen) {
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

// A recent look-up in a folder neither hides changes of the folder itself nor entries added by others.
TEST_F(WinFoldersTest, AListingDoesNotHideWhatIsThere) {
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

TEST(WinManyFilesTest, AFolderOfManyNamesIsNotReadForEachOfThem) {
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
  // Own changes keep a listing in use for at least a tenth of a second.
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  EXPECT_LT(files.FolderReadings(), 100 + static_cast<size_t>(10 * seconds.count()));
  EXPECT_EQ(tree.Names(), TNames{"Unit0"});
}

}  // namespace
}  // namespace win
