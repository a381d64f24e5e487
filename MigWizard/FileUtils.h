// Paths and folders of a run, and its log file. Paths are Windows paths (UTF-8, backslashes); failures are a
// Boolean or an empty string, and only TLogWriter::Open raises.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace rtl {
class TFileStream;
}

namespace mig {

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
bool DeleteTempFolder(std::string_view dir);

// Mirrors the contents of `source` over the existing folder `target`, deleting nothing there. An entry that
// fails ends the walk of its own folder alone, makes the result False, and is told to `failed`: the name in
// `target`, with the reason in win::GetLastError.
[[nodiscard]] bool CopyFolder(std::string_view source, std::string_view target,
                              const std::function<void(std::string_view name)>& failed = {});

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
