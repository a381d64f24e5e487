// kvamigrate form to-text and to-binary: one file into another, or forms in place.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "MigWizard/run/FileUtils.h"
#include "cli/Commands.h"
#include "cli/FormBytes.h"
#include "cli/Interrupt.h"
#include "cli/TypedPath.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace cli {
namespace {

constexpr char kStandardStream[] = "-";
constexpr std::string_view kTempPrefix = "$DS";

void Report(const std::string& message) {
  std::fprintf(stderr, "kvamigrate: %s\n", message.c_str());
}

std::string LastError() {
  return win::SysErrorMessage(win::GetLastError());
}

// What happens to the file at the Windows path `path`. In messages it is called `name`, as the user calls it.
template <typename TAction>
auto Naming(const std::string& path, const std::string& name, TAction action) {
  try {
    return action();
  } catch (const rtl::EStreamError& error) {
    std::string message = error.what();
    if (const size_t at = message.find(path); at != std::string::npos) message.replace(at, path.size(), name);
    throw rtl::EStreamError(message);
  }
}

std::string ReadFile(const std::string& path, const std::string& name) {
  return Naming(path, name,
                [&] { return rtl::TFileStream(path, rtl::fmOpenRead | rtl::fmShareDenyNone).ReadToEnd(); });
}

std::string ReadInput(const std::string& input) {
  if (input != kStandardStream) return ReadFile(WindowsPath(input), input);
  std::string bytes;
  char buffer[64 * 1024];
  for (size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, stdin)) > 0;)
    bytes.append(buffer, count);
  if (std::ferror(stdin)) throw rtl::EReadError("Cannot read the standard input.");
  return bytes;
}

void WriteOutput(const std::string& output, std::string_view bytes) {
  if (!output.empty() && output != kStandardStream) {
    const std::string path = WindowsPath(output);
    Naming(path, output, [&] { rtl::TFileStream(path, rtl::fmCreate).Write(bytes.data(), bytes.size()); });
    return;
  }
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
  if (std::fflush(stdout) != 0 || !written) throw rtl::EWriteError("Cannot write the standard output.");
}

// Converts, says so if something was dropped, and names the file in what goes wrong.
TConvertedForm Convert(std::string bytes, TFormKind wanted, const std::string& name) {
  try {
    TConvertedForm form = ConvertFormBytes(std::move(bytes), wanted);
    if (form.Dropped > 0)
      Report(rtl::Format("%s: %d bytes behind the form are not part of it.",
                         {name, static_cast<int64_t>(form.Dropped)}));
    return form;
  } catch (const rtl::Exception& error) {
    throw rtl::Exception(name + ": " + error.what());
  }
}

bool IsFormName(std::string_view name) {
  const std::string extension = rtl::ExtractFileExt(name);
  return rtl::SameText(extension, ".dfm") || rtl::SameText(extension, ".nfm");
}

// Forms that are converted where they are. All are converted into a folder of their own first, and put in
// place when they are safe on the disk; each file is at every moment either as it was or as it is to be.
class TInPlace {
 public:
  // `typed` is the file, or the folder that the files lie below, as the user typed it.
  TInPlace(TFormKind wanted, const std::string& typed)
      : FWanted(wanted),
        FTyped(typed),
        FRoot(WindowsPath(typed)),
        FTempDir(mig::CreateTempFolder(kTempPrefix, 1)) {
    if (FTempDir.empty()) throw rtl::EFCreateError("Failed to create directory.");
  }
  ~TInPlace() { mig::DeleteFolder(FTempDir); }
  TInPlace(const TInPlace&) = delete;
  TInPlace& operator=(const TInPlace&) = delete;

  void AddFolder();
  void AddFile() { AddFile(FRoot); }
  void PutInPlace();
  int Finish() const;

 private:
  struct TChanged {
    std::string FileName;
    std::string Temp;
  };
  void AddFile(const std::string& fileName);
  // The name, for messages, of a file or folder at or below FRoot: what was typed, and on from there.
  std::string Shown(const std::string& path) const;
  void Fail(const std::string& message) {
    Report(message);
    ++FFailed;
  }

  const TFormKind FWanted;
  const std::string FTyped;
  const std::string FRoot;  // all paths are Windows paths
  const std::string FTempDir;
  std::vector<TChanged> FChanged;
  size_t FConverted = 0;
  size_t FKept = 0;
  size_t FFailed = 0;
};

std::string TInPlace::Shown(const std::string& path) const {
  std::string below = path.substr(FRoot.size());
  if (below.empty()) return FTyped;
  const bool isWindows =
      FTyped.find('/') == std::string::npos && FTyped.find_first_of("\\:") != std::string::npos;
  if (!isWindows) std::replace(below.begin(), below.end(), '\\', '/');
  const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
  if (isSeparator(below.front())) below.erase(0, 1);
  if (isSeparator(FTyped.back())) return FTyped + below;
  return FTyped + (isWindows ? '\\' : '/') + below;
}

void TInPlace::AddFolder() {
  std::vector<std::string> folders{FRoot};
  while (!folders.empty()) {
    const std::string folder = std::move(folders.back());
    folders.pop_back();
    std::vector<std::string> below;
    win::TFindData entry;
    const auto walk = win::FindFirstFileA(mig::JoinPath(folder, "*.*"), entry);
    for (bool found = walk != nullptr; found; found = win::FindNextFileA(*walk, entry)) {
      if (entry.FileName == "." || entry.FileName == "..") continue;
      const std::string path = mig::JoinPath(folder, entry.FileName);
      if (!(entry.FileAttributes & win::FILE_ATTRIBUTE_DIRECTORY)) {
        if (IsFormName(entry.FileName)) AddFile(path);
      } else if (!(entry.FileAttributes & win::FILE_ATTRIBUTE_REPARSE_POINT)) {
        below.push_back(path);
      }
    }
    if (!walk || win::GetLastError() != win::ERROR_NO_MORE_FILES)
      Fail("The folder \"" + Shown(folder) + "\" could not be read. " + LastError());
    folders.insert(folders.end(), below.rbegin(), below.rend());
  }
}

void TInPlace::AddFile(const std::string& fileName) {
  StopIfInterrupted();
  const std::string name = Shown(fileName);
  try {
    TConvertedForm form = Convert(ReadFile(fileName, name), FWanted, name);
    if (!form.Changed) {
      ++FKept;
      return;
    }
    const std::string temp = mig::JoinPath(FTempDir, std::to_string(FChanged.size()));
    rtl::TFileStream(temp, rtl::fmCreate).Write(form.Bytes.data(), form.Bytes.size());
    (void)win::FileSystem().CopyPermissions(fileName, temp);
    FChanged.push_back({fileName, temp});
  } catch (const rtl::EWriteError&) {
    throw;  // the temporary folder is full: nothing has been changed yet
  } catch (const rtl::Exception& error) {
    Fail(error.what());
  }
}

void TInPlace::PutInPlace() {
  if (FChanged.empty()) return;
  if (!win::FileSystem().FlushWritten())
    throw rtl::EWriteError("Cannot write the changed files to the disk. " + LastError());
  for (const TChanged& changed : FChanged) {
    if (win::CopyFileA(changed.Temp, changed.FileName, false)) {
      ++FConverted;
    } else {
      Fail("Cannot replace \"" + Shown(changed.FileName) + "\". " + LastError());
    }
  }
}

int TInPlace::Finish() const {
  std::printf("Converted: %zu, left as they are: %zu, failed: %zu\n", FConverted, FKept, FFailed);
  return FFailed == 0 ? kExitOk : kExitFailed;
}

void CheckOptions(const TCommandLine& line, bool isFolder) {
  if (line.Bare && line.Command == TCommand::FormToText) throw EUsage("--bare is for binary output.");
  if (line.InPlace && !line.Output.empty()) throw EUsage("--in-place takes no OUTPUT.");
  if (line.InPlace && line.Input == kStandardStream)
    throw EUsage("The standard input cannot be converted in place.");
  if (isFolder && !line.InPlace)
    throw EUsage("\"" + line.Input + "\" is a folder; its forms are converted with --in-place.");
}

}  // namespace

int RunForm(const TCommandLine& line) {
  const bool standardInput = line.Input == kStandardStream;
  const bool isFolder = !standardInput && rtl::DirectoryExists(WindowsPath(line.Input));
  CheckOptions(line, isFolder);
  const TFormKind wanted = line.Command == TCommand::FormToText ? TFormKind::Text
                           : line.Bare                          ? TFormKind::BareBinary
                                                                : TFormKind::Binary;
  if (!line.InPlace) {
    const std::string name = standardInput ? "standard input" : line.Input;
    WriteOutput(line.Output, Convert(ReadInput(line.Input), wanted, name).Bytes);
    return kExitOk;
  }
  CatchInterrupts();
  TInPlace forms(wanted, line.Input);
  if (isFolder) {
    forms.AddFolder();
  } else {
    forms.AddFile();
  }
  forms.PutInPlace();
  return forms.Finish();
}

}  // namespace cli
