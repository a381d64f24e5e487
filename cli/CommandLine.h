// The command line of kvamigrate, parsed into values.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "completion/Completion.h"

namespace cli {

inline constexpr int kExitOk = 0;         // everything requested was done
inline constexpr int kExitPart = 1;       // part of it was done
inline constexpr int kExitUsage = 2;      // the command line is wrong
inline constexpr int kExitException = 3;  // an exception, whose message is on standard error
inline constexpr int kExitFound = 4;      // a check found something
inline constexpr int kExitSignal = 128;   // plus the number of the signal that stopped the program
inline constexpr int kExitBrokenPipe = kExitSignal + 13;

enum class TCommand {
  Replace,
  Check,
  Restore,
  FormToText,
  FormToBinary,
  Catalogue,
  Wizard,
  Completion,
  ManPage,
  Rules,
  Help
};

// Paths and names are as typed.
struct TCommandLine {
  TCommand Command = TCommand::Help;
  std::vector<std::string> Arguments;  // all words but the command and the options, in order
  bool Quiet = false;

  // replace and check
  std::string Mode;  // "bde" or "ibx"
  std::string Folder;
  bool SubFolders = false;
  std::string Project;
  std::string ActiveProject;
  std::vector<std::string> Units;
  std::optional<std::string> BackupDir;
  bool OverwriteBackups = false;
  bool NoBackup = false;
  bool NoLog = false;
  bool ViewLog = false;
  std::vector<std::string> Exclude;
  bool SkipConverted = false;
  bool DryRun = false;  // set by --diff too
  bool Diff = false;
  bool Interactive = false;
  bool IgnoreSpace = false;
  std::string Colour = "auto";  // or "always" or "never"
  bool KeepGoing = false;
  std::optional<completion::TSteps> Complete;
  std::vector<std::string> Reports;
  std::string Baseline;
  std::string Catalogue;  // also for `catalogue`

  // restore
  bool All = false;
  bool Force = false;
  bool List = false;
  std::vector<std::string> Only;

  // form
  std::string Output;
  bool Bare = false;
  bool InPlace = false;

  unsigned CodePage = 1252;
  std::vector<std::pair<char, std::string>> Drives;
};

// Returns the command line. If nothing is left to do, returns the exit status instead: help or the version
// was requested and printed, or the command line is wrong and the reason was printed on standard error.
// Raises EOutput. Accesses no file.
std::variant<TCommandLine, int> ParseCommandLine(std::vector<std::string> words);

}  // namespace cli
