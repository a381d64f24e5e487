#include "cli/ExcludeHint.h"

#include <utility>

#include "MigWizard/run/FileUtils.h"
#include "cli/PathPattern.h"
#include "cli/Shell.h"
#include "rtl/text/SysUtils.h"

namespace cli {
namespace {

// Replaces characters that are special in a pattern or between the quotes of a shell by "?".
std::string PatternOf(const std::string& fileName, std::string_view folder) {
  std::string pattern = PathBelow(folder, fileName);
  for (char& c : pattern)
    if (c == '[' || c == '*' || c == kShellQuote) c = '?';
  return pattern;
}

std::string Quoted(const std::string& pattern) {
  return kShellQuote + pattern + kShellQuote;
}

}  // namespace

std::string PathBelow(std::string_view folder, std::string_view fileName) {
  return rtl::ExtractRelativePath(mig::JoinPath(folder, ""), fileName);
}

std::string ExcludeHint(const std::string& fileName, std::string_view folder) {
  return "Leave the file out with --exclude " + Quoted(PatternOf(fileName, folder)) +
         ", or all such files with --keep-going, to convert the others. No file was changed.";
}

std::string ExcludeOneHint(const std::string& one, const std::string& other, std::string_view folder) {
  for (const auto& [out, kept] : {std::pair(one, other), std::pair(other, one)}) {
    const std::string pattern = PatternOf(out, folder);
    if (TPathPatterns({pattern}).Match(PathBelow(folder, kept))) continue;
    return "Leave one of them out with --exclude " + Quoted(pattern) +
           " and convert it in a run of its own. No file was changed.";
  }
  return {};
}

}  // namespace cli
