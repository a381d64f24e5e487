// A tree and a file system object for it, for tests of the Windows file functions.
#pragma once

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/TempTree.h"
#include "win/FileApi.h"
#include "win/posix/PosixFileSystem.h"

namespace win {

using TNames = std::vector<std::string>;

class WinFilesTest : public testing::Test {
 protected:
  ~WinFilesTest() override { ResetDrives(); }

  // Returns the contents of `name`, spelled as in the program, or "error N".
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
  // Returns "name attributes" of each entry.
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
  // Waits until the folder's times are old enough for its listing to be trusted.
  void Settle() { std::this_thread::sleep_for(std::chrono::milliseconds(60)); }

  tests::TTempTree FTree;
  TPosixFileSystem FFiles;
};

}  // namespace win
