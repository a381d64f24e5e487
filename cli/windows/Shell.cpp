#include "cli/Shell.h"

#include <algorithm>

#include "cli/Commands.h"
#include "cli/PathPattern.h"
#include "cli/TypedPath.h"
#include "rtl/text/Files.h"

namespace cli {

const char kShellQuote = '"';

std::vector<std::string> ExpandWildcards(const std::string& typed) {
  const size_t start = typed.find_last_of("\\/:") + 1;  // npos + 1 is 0
  const std::string folder = typed.substr(0, start);
  std::string pattern = typed.substr(start);
  if (pattern.find_first_of("*?") == std::string::npos) return {typed};
  std::replace(pattern.begin(), pattern.end(), '[', '?');  // no set of characters here
  const TPathPatterns patterns({pattern});
  std::vector<std::string> files;
  rtl::TFolderEntries entries(WindowsPath(folder.empty() ? "." : folder));
  while (entries.Next()) {
    if (!entries.IsFolder() && patterns.Match(entries.Name())) files.push_back(folder + entries.Name());
  }
  if (files.empty()) throw EUsage("No file matches \"" + typed + "\".");
  return files;
}

}  // namespace cli
