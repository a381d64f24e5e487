// Paths and folders of a run, and its log file. Paths are Windows paths (UTF-8, backslashes). Operations
// report failure by a Boolean or an empty string; only TLogWriter::Open raises.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rtl {
class TFileStream;
}  // namespace rtl

namespace mig {

class TWorkQueue;

// Returns `dir`, one backslash and `name`. An empty name gives the folder with its trailing backslash; one
// leading backslash of a longer name is dropped; an empty folder adds nothing.
std::string JoinPath(std::string_view dir, std::string_view name);

// Returns the file name with ".~" at the start of its extension: Unit1.pas gives Unit1.~pas.
std::string BackupFileName(std::string_view fileName);

// Creates a folder and all folders above it. Returns True also if `path` exists, even as a file.
bool ForceFolders(std::string_view path);

// Creates a folder under the system's temporary path and returns its full name: `prefix` and the first free
// number from `unique` (1 or more), in hexadecimal. Returns an empty string on failure.
[[nodiscard]] std::string CreateTempFolder(std::string_view prefix, uint32_t unique);
// The same, but steps over files of such a name as well. Appends the full names of all files and folders that
// were stepped over to `taken`.
[[nodiscard]] std::string CreateTempFolder(std::string_view prefix, uint32_t unique,
                                           std::vector<std::string>& taken);

// Deletes a folder with everything in it. Returns False if something could not be deleted; the rest is gone
// then. A link to a folder is deleted, and not the folder to which it leads. `dir` must not be empty.
bool DeleteFolder(std::string_view dir);
// The same, as tasks of a queue that has no other tasks.
bool DeleteTempFolder(const std::string& dir, TWorkQueue& queue);

// Files or folders by their full names, each with the reason, a sentence.
using TCopyFailures = std::vector<std::pair<std::string, std::string>>;
// Copies a file over another. Returns the reason of a failure, or an empty string. Called by several threads.
using TCopyFile = std::function<std::string(const std::string& source, const std::string& target)>;

// Mirrors the contents of `source` over the existing folder `target`, as tasks of a queue that has no other
// tasks. Files are copied by `copy`. Deletes nothing in `target`. An entry that fails ends the walk of its own folder only. Returns the
// entries that failed, sorted by name.
[[nodiscard]] TCopyFailures CopyFolder(const std::string& source, const std::string& target,
                                       const TCopyFile& copy, TWorkQueue& queue);

// Copies files by `copy`, given as pairs of source and target, as tasks of a queue that has no other tasks. A
// failure does not keep the other files from being copied. Returns the targets that failed, sorted by name.
[[nodiscard]] TCopyFailures CopyFiles(const std::vector<std::pair<std::string, std::string>>& files,
                                      const TCopyFile& copy, TWorkQueue& queue);

// The log of a run. Each line is written to the file at once. A closed writer ignores what it is given.
class TLogWriter {
 public:
  TLogWriter();
  ~TLogWriter();
  TLogWriter(const TLogWriter&) = delete;
  TLogWriter& operator=(const TLogWriter&) = delete;

  void SetTitle(std::string_view title) { FTitle = title; }
  void SetCreatedCaption(std::string_view caption) { FCreatedCaption = caption; }
  void SetDoubleSpaced(bool doubleSpaced) { FDoubleSpaced = doubleSpaced; }

  // Creates or empties the file and writes the header. Nobody else can open the file as a log until it is
  // closed. Raises rtl::EFCreateError; the log stays closed then.
  void Open(std::string_view fileName);
  // Writes `line` (not empty) and its line end, unless it ends in one. A single blank gives an empty line. A
  // write that fails is not reported.
  void WriteLine(std::string_view line);
  void Close();

 private:
  std::unique_ptr<rtl::TFileStream> FStream;
  std::string FTitle;
  std::string FCreatedCaption = "Log created at:";
  bool FDoubleSpaced = false;
};

}  // namespace mig
