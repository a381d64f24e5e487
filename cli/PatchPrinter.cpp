#include "cli/PatchPrinter.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

#include "MigWizard/passes/FileConversion.h"
#include "cli/Console.h"
#include "diff/LineDiff.h"
#include "report/FilePatch.h"
#include "rtl/text/Files.h"
#include "win/FileApi.h"
#include "win/paths/CodePage.h"

namespace cli {
namespace {

bool IsTerminal() {
  const char* const terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) == 1 && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

bool WantsColours(const std::string& colour) {
  if (colour != "auto") return colour == "always";
  const char* const noColor = std::getenv("NO_COLOR");
  return IsTerminal() && (noColor == nullptr || *noColor == '\0');
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

// Replaces this process by the pager, which reads from `input`.
[[noreturn]] void BecomePager(int input) {
  dup2(input, STDIN_FILENO);
  setenv("LESS", "FRX", /*overwrite=*/0);
  const char* const pager = std::getenv("PAGER");
  execl("/bin/sh", "sh", "-c", pager != nullptr && *pager != '\0' ? pager : "less || cat", nullptr);
  _exit(127);
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
    : FFolder(folder), FIgnoresSpace(line.IgnoreSpace), FColour(line.Colour), FHasPager(IsTerminal()) {}

TPatchPrinter::~TPatchPrinter() {
  if (FPager < 0) return;
  close(FPager);
  while (waitpid(FPagerProcess, nullptr, 0) < 0 && errno == EINTR) {
  }
}

void TPatchPrinter::Print(const std::string& fileName, const mig::TFileConversion& conversion) {
  if (!FPrinted.insert(win::UpperFileName(fileName)).second) return;
  Write(MakePatch(fileName, conversion, FFolder, FIgnoresSpace));
}

void TPatchPrinter::Write(std::string_view patch) {
  if (!FHasPager && FColour != "always") return WriteOutput(patch);
  const std::string text = ShownPatch(patch, FColour);
  int ends[2];
  if (FHasPager && FPager < 0 && pipe(ends) == 0) {
    FPagerProcess = fork();
    if (FPagerProcess == 0) {
      close(ends[1]);
      BecomePager(ends[0]);
    }
    close(ends[0]);
    FPager = ends[1];
  }
  if (FPager < 0) return WriteOutput(text);
  for (std::string_view rest = text; !rest.empty();) {
    const ssize_t count = write(FPager, rest.data(), rest.size());
    if (count < 0 && errno != EINTR) return;  // the reader has closed the pager
    if (count > 0) rest.remove_prefix(static_cast<size_t>(count));
  }
}

}  // namespace cli
