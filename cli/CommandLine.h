// The command line of kvamigrate: what the user asked for, as values.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;     // the operation returned False
inline constexpr int kExitUsage = 2;      // the command line is wrong
inline constexpr int kExitException = 3;  // an exception, with its message on standard error
inline constexpr int kExitSignal = 128;   // and the signal's number

enum class TCommand { Replace, Restore, FormToText, FormToBinary, Catalogue, Wizard };

// Paths stand as typed.
struct TCommandLine {
  TCommand Command = TCommand::Replace;

  // replace
  bool ModeIBX = false;
  std::string Folder;
  bool SubFolders = false;
  std::string Project;  // of `wizard` too
  std::string ActiveProject;
  std::vector<std::string> Units;
  std::optional<std::string> BackupDir;
  bool NoBackup = false;
  bool NoLog = false;
  bool ViewLog = false;
  std::vector<std::string> Exclude;
  std::string Catalogue;  // of `catalogue` too

  // restore
  std::string UndoFile;

  // form
  std::string Input, Output;
  bool Bare = false;
  bool InPlace = false;

  unsigned CodePage = 1252;
  std::vector<std::pair<char, std::string>> Drives;
};

// The command line, or, where there is nothing to run, the exit status: help was asked for and printed, or
// what is wrong was printed on standard error.
std::variant<TCommandLine, int> ParseCommandLine(int argc, const char* const* argv);

}  // namespace cli
