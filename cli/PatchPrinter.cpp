#include "cli/PatchPrinter.h"

#include <cstdlib>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/FileUtils.h"
#include "cli/Console.h"
#include "cli/Progress.h"
#include "cli/StandardStreams.h"
#include "diff/LineDiff.h"
#include "report/FilePatch.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"
#include "win/paths/FileNames.h"

namespace cli {
namespace {

bool WantsColours(const std::string& colour) {
  if (colour != "auto") return colour == "always";
  const char* const noColor = std::getenv("NO_COLOR");
  return IsTerminal(TStream::Output) && (noColor == nullptr || *noColor == '\0');
}

// Returns a line for display on a terminal: control characters except tab become "^X".
std::string WithoutControls(std::string_view line) {
  std::string result;
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 32 && byte != 127) {
      result += c;
    } else if (c == '\t' || c == '\n') {
      result += c;
    } else {
      result += {'^', static_cast<char>(byte ^ 64)};
    }
  }
  return result;
}

// Returns the colour that git uses for the line.
std::string_view ColourOf(std::string_view line) {
  if (line.starts_with("# ")) line.remove_prefix(2);
  if (line.starts_with("@@")) return "\033[36m";
  if (line.starts_with("+++") || line.starts_with("---") || line.starts_with("diff ") ||
      line.starts_with("index "))
    return "\033[1m";
  if (line.starts_with('+')) return "\033[32m";
  if (line.starts_with('-')) return "\033[31m";
  return {};
}

// Returns whether the folder is in a working tree of git, but not its top.
bool IsBelowWorkingTree(const std::string& folder) {
  for (std::string dir = folder, parent;; dir = parent) {
    const std::string marker = mig::JoinPath(dir, ".git");  // a file in a linked working tree
    if (rtl::DirectoryExists(marker) || rtl::FileExists(marker)) return dir != folder;
    parent = rtl::ExtractFileDir(dir);
    if (parent == dir) return false;
  }
}

}  // namespace

std::string ShownPatch(std::string_view patch, const std::string& colour) {
  const bool hasColours = WantsColours(colour);
  std::string result;
  for (std::string_view line : diff::SplitLines(patch)) {
    const bool hasEnd = line.ends_with('\n');
    if (hasEnd) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);  // part of the file's line end, not visible
    const std::string_view start = hasColours ? ColourOf(line) : std::string_view();
    result.append(start).append(WithoutControls(line)).append(start.empty() ? "" : "\033[m");
    if (hasEnd) result += '\n';
  }
  return result;
}

std::string ShownName(const std::string& fileName, std::string_view folder) {
  return report::PatchPath(folder, win::FileSystem().GetLongPathNameA(fileName));
}

std::string MakePatch(const std::string& fileName, const mig::TFileConversion& conversion,
                      std::string_view folder, bool ignoresSpace) {
  const std::string after = std::string(conversion.Mark).append(conversion.Bytes);
  return report::FilePatch(ShownName(fileName, folder), rtl::ReadFile(fileName), after, ignoresSpace);
}

TPatchPrinter::TPatchPrinter(const TCommandLine& line, std::string_view folder)
    : FFolder(folder),
      FIgnoresSpace(line.IgnoreSpace),
      FColour(line.Colour),
      FHasPager(IsTerminal(TStream::Output)) {}

void TPatchPrinter::Print(const std::string& fileName, const mig::TFileConversion& conversion) {
  if (!FPrinted.insert(win::UpperFileName(fileName)).second) return;
  FHasOutside = FHasOutside || ShownName(fileName, FFolder).starts_with("../");
  Write(MakePatch(fileName, conversion, FFolder, FIgnoresSpace));
}

std::string TPatchPrinter::ApplyHint() const {
  if (FIgnoresSpace || FPrinted.empty() || !(FHasOutside || IsBelowWorkingTree(FFolder))) return {};
  return "Apply the patch in the folder \"" + win::ToHostName(FFolder) +
         "\" with: git --git-dir=. apply --unsafe-paths";
}

void TPatchPrinter::Write(std::string_view patch) {
  if (!FHasPager && FColour != "always") return WriteOutput(patch);
  const std::string text = ShownPatch(patch, FColour);
  ClearProgress();
  if (FHasPager && FPager.Start()) return FPager.Write(text);
  WriteOutput(text);
}

}  // namespace cli
