// The differences between the hosts' shells: quotation marks and wildcards.
#pragma once

#include <string>
#include <vector>

namespace cli {

// The quotation mark for a word with blanks: ' or, on Windows, ".
extern const char kShellQuote;

// Returns the files that a typed path with "*" or "?" in its name stands for, spelled with the folder as
// typed. Returns the path as it is if it has none of them, or if the shells of this host have expanded it
// already. Raises EUsage if no file matches.
std::vector<std::string> ExpandWildcards(const std::string& typed);

}  // namespace cli
