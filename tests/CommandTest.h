// A folder of two units with forms, and the commands of the command line program run on it.
#pragma once

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

#include "cli/Shell.h"
#include "tests/RunCommand.h"
#include "win/paths/Drives.h"

namespace tests {

class TCommandTest : public testing::Test {
 protected:
  static constexpr char kUnit[] = "unit A;\r\nvar Q: TQuery;\r\n{$R *.dfm}\r\n";
  static constexpr char kForm[] = "object A: TForm\r\n  object Q: TQuery\r\n  end\r\nend\r\n";

  TCommandTest() {
    FTree.Write("src/A.pas", kUnit);
    FTree.Write("src/A.dfm", kForm);
    FTree.Write("src/old/B.pas", kUnit);
    FTree.Write("src/old/B.dfm", "no form");
  }

  // Returns a pattern or a path in the quotes of this host's shells.
  static std::string Quoted(const std::string& word) { return cli::kShellQuote + word + cli::kShellQuote; }

  // Omits the summary at the end of a run, which has its own test.
  std::string Run(const std::string& arguments) {
    const std::string text = RunCommand(FTree, arguments);
    return text.substr(0, text.find("Files:     "));
  }
  static std::string NothingRestored() {
    return win::CanMapDrives() ? "Nothing was restored. Were the backups moved, or was the run given --drive "
                                 "options that are missing here?\n"
                               : "Nothing was restored. Were the backups moved?\n";
  }
  // Writes a file that is newer than all files written by runs.
  void Edit(std::string_view name, std::string_view text) {
    FTree.Write(name, text);
    namespace fs = std::filesystem;
    fs::last_write_time(FTree.HostPath(name), fs::file_time_type::clock::now() + std::chrono::seconds(1));
  }

  TTempTree FTree;
};

}  // namespace tests
