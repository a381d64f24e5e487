// A folder with two units and their forms, one pair in a subfolder, and a replacer for runs over it.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/run/FileUtils.h"
#include "target/KVAReplacer.h"
#include "tests/TempTree.h"

namespace tests {

inline constexpr char kUnit[] = "unit A;\r\nuses DBTables;\r\nvar Q: TQuery;\r\n{$R *.dfm}\r\n";
inline constexpr char kForm[] = "object A: TForm\r\n  object Q: TQuery\r\n    Left = 1\r\n  end\r\nend\r\n";

class TRunTree : public testing::Test {
 protected:
  TRunTree() : FMigration(target::TCatalogue::BuiltIn()) {
    FTree.Write("src/A.pas", kUnit);
    FTree.Write("src/A.dfm", kForm);
    FTree.Write("src/Sub/B.pas", kUnit);
    FTree.Write("src/Sub/B.dfm", kForm);
    mig::TReplaceOptions& options = FMigration.Options();
    options.Dest = mig::sdFolder;
    options.Directory = mig::JoinPath(FTree.WindowsPath(), "src");
    options.IncludeSubDirs = true;
    options.BackupDir = mig::JoinPath(options.Directory, "RBackup");
    std::filesystem::create_directory(FTree.HostPath("tmp"));
    Replacer().OnWarning = [this](std::string_view message) { FWarnings.emplace_back(message); };
  }

  target::TKVAComponentReplacer& Replacer() { return FMigration.BDE(); }
  std::string UndoFile() { return mig::JoinPath(FMigration.Options().BackupDir, "RExpert.reu"); }
  std::string Read(const std::string& name) { return FTree.Exists(name) ? FTree.Read(name) : std::string(); }
  std::map<std::string, std::string> Sources() {
    std::map<std::string, std::string> files;
    for (const char* name : {"src/A.pas", "src/A.dfm", "src/Sub/B.pas", "src/Sub/B.dfm"})
      files[name] = Read(name);
    return files;
  }
  // Returns the message of the exception that Replace raises, with <dir> in place of the tree's folder.
  template <typename TError>
  std::string Failure() {
    try {
      EXPECT_TRUE(Replacer().Replace());
      return "no exception";
    } catch (const TError& error) {
      return Shown(error.what());
    }
  }
  std::string Shown(std::string text) {
    for (size_t at; (at = text.find(FTree.WindowsPath())) != std::string::npos;)
      text.replace(at, FTree.WindowsPath().size(), "<dir>");
    return text;
  }
  std::string ShownWarnings() {
    std::string text;
    for (const std::string& warning : FWarnings) text += Shown(warning) + "\n";
    return text;
  }
  bool TempFolderIsEmpty() { return std::filesystem::is_empty(FTree.HostPath("tmp")); }

  // Flushing costs nothing in /dev/shm.
  TTempTree FTree{std::filesystem::exists("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path()};
  target::TKVAMigration FMigration;
  std::vector<std::string> FWarnings;

 private:
  const TVariable FTemporary{kTemporaryVariable, FTree.HostPath("tmp")};
};

}  // namespace tests
