// Paths and folders of a run, and its log file. Paths are Windows paths (UTF-8, backslashes); failures are a
// Boolean or an empty string, and only TLogWriter::Open raises.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rtl {
class TFileStream;
class TStringList;
}  // namespace rtl

namespace mig {

class TTeam;

// `dir`, one backslash, `name`. An empty name gives the folder with its trailing backslash; one leading
// backslash of a longer name goes; an empty folder adds nothing in front.
std::string JoinPath(std::string_view dir, std::string_view name);

// The file name with ".~" put in front of its extension's letters: Unit1.pas, Unit1.~pas.
std::string BackupFileName(std::string_view fileName);

// Creates a folder and all folders above it. True also where `path` exists, even as a file.
bool ForceFolders(std::string_view path);

// Creates a folder of its own under the system's temporary path: `prefix` and the first free number from
// `unique` (1 or more), in hexadecimal. Empty on failure.
[[nodiscard]] std::string CreateTempFolder(std::string_view prefix, uint32_t unique);

// Deletes a folder with all in it. What cannot be deleted stays, and the result is then False. A link to a
// folder goes, not what it leads to. `dir` is not empty.
bool DeleteFolder(std::string_view dir);
// The same, by a team that has no other tasks.
bool DeleteTempFolder(const std::string& dir, TTeam& team);

// A file or folder, by its full name, and the reason (win/Errors.h).
using TCopyFailures = std::vector<std::pair<std::string, uint32_t>>;

// Mirrors the contents of `source` over the existing folder `target`, deleting nothing there. An entry that
// fails ends the walk of its own folder alone. The entries that failed, sorted by name; the team has no other
// tasks.
[[nodiscard]] TCopyFailures CopyFolder(const std::string& source, const std::string& target, TTeam& team);

// Copies a file from the folder `source` over each of `targets`, full names, that has one of its bare name
// there. A failure does not keep the others from being copied. Those that failed, sorted by name; the team
// has no other tasks.
[[nodiscard]] TCopyFailures CopyFiles(const std::string& source, const rtl::TStringList& targets,
                                      TTeam& team);

// The log of a run. Each line reaches the file at once. A closed writer drops what it is given.
class TLogWriter {
 public:
  TLogWriter();
  ~TLogWriter();
  TLogWriter(const TLogWriter&) = delete;
  TLogWriter& operator=(const TLogWriter&) = delete;

  void SetTitle(std::string_view title) { FTitle = title; }
  void SetCreatedCaption(std::string_view caption) { FCreatedCaption = caption; }
  void SetDoubleSpaced(bool doubleSpaced) { FDoubleSpaced = doubleSpaced; }

  // Creates or empties the file and writes the header. Raises rtl::EFCreateError; the log stays closed then.
  void Open(std::string_view fileName);
  // Writes `line` (not empty) and its line end, unless it ends in one. A single blank stands for an empty
  // line. A write that fails is not reported.
  void WriteLine(std::string_view line);
  void Close();

 private:
  std::unique_ptr<rtl::TFileStream> FStream;
  std::string FTitle;
  std::string FCreatedCaption = "Log created at:";
  bool FDoubleSpaced = false;
};

}  // namespace mig
