#include "cli/PatchPrinter.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/TextFile.h"
#include "MigWizard/run/FileUtils.h"
#include "cli/Console.h"
#include "diff/GitPatch.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
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

// Returns a file's text as UTF-8; for a binary form, as `form to-text` prints it. Returns an empty string
// if the form is damaged.
std::string ReadableText(const std::string& bytes) {
  try {
    if (!mig::IsBinaryForm(bytes)) {
      const mig::TTextFile file = mig::DecodeTextFile(bytes);
      return *file.Encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(file.Text) : file.Text;
    }
    mig::TRCData rcData;
    rtl::TBinaryTextOptions options;
    options.ForPeople = true;
    rtl::TBinaryInfo info;
    return win::SourceToUtf8(rtl::ObjectBinaryToText(mig::ReadFormHeader(bytes, rcData), options, info));
  } catch (const rtl::Exception&) {
    return {};
  }
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

std::string Coloured(std::string_view patch, bool hasColours) {
  std::string result;
  for (std::string_view line : diff::SplitLines(patch)) {
    const bool hasEnd = line.ends_with('\n');
    if (hasEnd) line.remove_suffix(1);
    if (line.ends_with('\r')) line.remove_suffix(1);  // part of the file's line end, not visible
    const std::string_view colour = hasColours ? ColourOf(line) : std::string_view();
    result.append(colour).append(WithoutControls(line)).append(colour.empty() ? "" : "\033[m");
    if (hasEnd) result += '\n';
  }
  return result;
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

TPatchPrinter::TPatchPrinter(const TCommandLine& line, std::string_view folder)
    : FFolder(mig::JoinPath(folder, "")),
      FIgnoresSpace(line.IgnoreSpace),
      FHasPager(IsTerminal()),
      FHasColours(WantsColours(line.Colour)) {}

TPatchPrinter::~TPatchPrinter() {
  if (FPager < 0) return;
  close(FPager);
  while (waitpid(FPagerProcess, nullptr, 0) < 0 && errno == EINTR) {
  }
}

void TPatchPrinter::Print(const std::string& fileName, const mig::TFileConversion& conversion) {
  if (!FPrinted.insert(win::UpperFileName(fileName)).second) return;
  const std::string before = rtl::ReadFile(fileName);
  const std::string after = std::string(conversion.Mark).append(conversion.Bytes);
  std::string path = rtl::ExtractRelativePath(FFolder, win::FileSystem().GetLongPathNameA(fileName));
  std::replace(path.begin(), path.end(), '\\', '/');
  diff::TPatchFile file = {path, before, after, {}, {}};
  std::string oldText, newText;
  if (diff::NeedsBinaryPatch(file)) {
    oldText = ReadableText(before);
    newText = ReadableText(after);
    file.OldText = oldText;
    file.NewText = newText;
  }
  Write(diff::GitPatch(file, FIgnoresSpace ? diff::TIgnore::Space : diff::TIgnore::Nothing));
}

void TPatchPrinter::Write(std::string_view patch) {
  if (!FHasPager && !FHasColours) return WriteOutput(patch);
  const std::string text = Coloured(patch, FHasColours);
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
