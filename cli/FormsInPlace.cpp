#include "cli/FormsInPlace.h"

#include <algorithm>
#include <utility>

#include "MigWizard/run/FileUtils.h"
#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/FormFiles.h"
#include "cli/Interrupt.h"
#include "cli/TypedPath.h"
#include "rtl/text/Files.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace cli {
namespace {

std::string LastError() {
  return win::SysErrorMessage(win::GetLastError());
}

bool IsFormName(std::string_view name) {
  const std::string extension = rtl::ExtractFileExt(name);
  return rtl::SameText(extension, ".dfm") || rtl::SameText(extension, ".nfm");
}

}  // namespace

// Returns the name, for messages, of a file or folder at or below the root: the root as typed, and the rest
// with the separator that the user typed.
std::string TFormsInPlace::Shown(const TRoot& root, const std::string& path) {
  const std::string& typed = root.Typed;
  std::string below = path.substr(root.Path.size());
  if (below.empty()) return typed;
  const bool isWindows =
      typed.find('/') == std::string::npos && typed.find_first_of("\\:") != std::string::npos;
  if (!isWindows) std::replace(below.begin(), below.end(), '\\', '/');
  const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
  if (isSeparator(below.front())) below.erase(0, 1);
  if (isSeparator(typed.back())) return typed + below;
  return typed + (isWindows ? '\\' : '/') + below;
}

void TFormsInPlace::Fail(const std::string& message) {
  Complain(message);
  ++FFailed;
}

void TFormsInPlace::Add(const std::string& typed) {
  const TRoot root = {typed, WindowsPath(typed)};
  if (rtl::DirectoryExists(root.Path)) {
    AddFolder(root);
  } else {
    AddFile(root, root.Path);
  }
}

void TFormsInPlace::AddFolder(const TRoot& root) {
  std::vector<std::string> folders{root.Path};
  while (!folders.empty()) {
    const std::string folder = std::move(folders.back());
    folders.pop_back();
    std::vector<std::string> below;
    rtl::TFolderEntries entries(folder);
    while (entries.Next()) {
      if (!entries.IsFolder()) {
        if (IsFormName(entries.Name())) AddFile(root, entries.Path());
      } else if (!entries.IsLink()) {
        below.push_back(entries.Path());
      }
    }
    if (!entries.IsComplete())
      Fail("The folder \"" + Shown(root, folder) + "\" could not be read. " +
           win::SysErrorMessage(entries.Error()));
    for (const win::TUnnamedEntry& entry : entries.Unnamed())
      if (entry.IsFolder || IsFormName(entry.Name)) ++FFailed;  // the user was told
    folders.insert(folders.end(), below.rbegin(), below.rend());
  }
}

void TFormsInPlace::AddFile(const TRoot& root, const std::string& fileName) {
  StopIfInterrupted("Stopped: no file was replaced.");
  const std::string name = Shown(root, fileName);
  try {
    TConvertedForm form = ConvertForm(ReadFormFile(fileName, name), FWanted, name);
    if (!form.Changed) {
      ++FKept;
      return;
    }
    const std::string temp = mig::JoinPath(FTempFolder.Path(), std::to_string(FChanged.size()));
    WriteTempForm(temp, form.Bytes, fileName);
    FChanged.push_back({fileName, name, temp});
  } catch (const rtl::EWriteError&) {
    throw;  // the temporary folder is full; no original was changed
  } catch (const rtl::EFCreateError&) {
    throw;
  } catch (const rtl::Exception& error) {
    Fail(error.what());
  }
}

void TFormsInPlace::Replace() {
  if (FChanged.empty()) return;
  if (!win::FileSystem().FlushWritten())
    throw rtl::EWriteError("Cannot write the changed files to the disk. " + LastError());
  for (const TChanged& changed : FChanged) {
    if (PutForm(changed.Temp, changed.FileName)) {
      ++FConverted;
    } else {
      Fail("Cannot replace \"" + changed.Shown + "\". " + LastError());
    }
  }
  if (!win::FileSystem().FlushWritten())
    throw rtl::EWriteError("The forms are converted, but they may not all be on the disk. " + LastError());
}

int TFormsInPlace::Finish(bool isQuiet) const {
  const std::string numbers = "Converted: " + std::to_string(FConverted) +
                              ", left as they are: " + std::to_string(FKept) +
                              ", failed: " + std::to_string(FFailed);
  return PrintOutcome(FFailed == 0, numbers, numbers, isQuiet);
}

}  // namespace cli
