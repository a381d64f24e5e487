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

// Returns `dir`, one backslash and `name`. If `name` is empty, returns the folder with a trailing backslash.
// Drops one leading backslash of a longer name. If `dir` is empty, returns `name` without a prefix.
std::string JoinPath(std::string_view dir, std::string_view name);

// Returns a full path without "." and "..", as the file functions understand it.
std::string ResolveDots(std::string_view path);

// Returns the file name with ".~" at the start of its extension: Unit1.~pas for Unit1.pas.
std::string BackupFileName(std::string_view fileName);

// Creates a folder and its parents, from the top down. Returns True also if `path` exists already, even as a
// file, which rtl::CreateFolders, for folders outside of a run, does not.
bool ForceFolders(std::string_view path);

// Creates a folder under the system's temporary path and returns its full name: `prefix` and the first free
// number from `unique` (1 or more), in hexadecimal. Returns an empty string on failure.
[[nodiscard]] std::string CreateTempFolder(std::string_view prefix, uint32_t unique);
// The same, but also skips files with such a name. Appends the full names of all skipped files and folders to
// `taken`.
[[nodiscard]] std::string CreateTempFolder(std::string_view prefix, uint32_t unique,
                                           std::vector<std::string>& taken);

// Deletes a folder with everything in it. Returns False if something could not be deleted; everything else is
// deleted then. Deletes links to folders without following them. `dir` must not be empty.
bool DeleteFolder(std::string_view dir);

// Full names of files or folders, each with the reason for its failure, a sentence.
using TCopyFailures = std::vector<std::pair<std::string, std::string>>;
// Copies a file over another. Returns an empty string, or the reason for the failure. May be called by
// several threads at a time.
using TCopyFile = std::function<std::string(const std::string& source, const std::string& target)>;

// Copies the contents of `source` into the existing folder `target` by `copy`, as tasks of a queue that has
// no other tasks. Deletes nothing in `target`. A failure ends the walk of the entry's own folder only.
// Calls `onIdle`, if set, as TWorkQueue::Wait does, and after each file that this thread has copied. Returns
// the entries that failed, sorted by name.
[[nodiscard]] TCopyFailures CopyFolder(const std::string& source, const std::string& target,
                                       const TCopyFile& copy, TWorkQueue& queue,
                                       const std::function<void()>& onIdle = {});

// Copies pairs of source and target by `copy`, as tasks of a queue that has no other tasks. Continues after
// failures. Calls `onIdle` as CopyFolder does. Returns the targets that failed, sorted by name.
[[nodiscard]] TCopyFailures CopyFiles(const std::vector<std::pair<std::string, std::string>>& files,
                                      const TCopyFile& copy, TWorkQueue& queue,
                                      const std::function<void()>& onIdle = {});

// The log of a run. Writes each line to the file at once. A closed writer ignores all lines.
class TLogWriter {
 public:
  TLogWriter();
  ~TLogWriter();
  TLogWriter(const TLogWriter&) = delete;
  TLogWriter& operator=(const TLogWriter&) = delete;

  void SetTitle(std::string_view title) { FTitle = title; }
  void SetCreatedCaption(std::string_view caption) { FCreatedCaption = caption; }
  void SetDoubleSpaced(bool doubleSpaced) { FDoubleSpaced = doubleSpaced; }

  // Creates or truncates the file and writes the header. Nobody else can open the file as a log until it is
  // closed. On failure raises rtl::EFCreateError, and the log stays closed.
  void Open(std::string_view fileName);
  // Writes `line`, which is not empty, and a line end unless it has one. A single blank writes an empty line.
  // Failures to write are not reported.
  void WriteLine(std::string_view line);
  void Close();

 private:
  std::unique_ptr<rtl::TFileStream> FStream;
  std::string FTitle;
  std::string FCreatedCaption = "Log created at:";
  bool FDoubleSpaced = false;
};

}  // namespace mig
