// What to tell the user about leaving out a file that stops a run.
#pragma once

#include <string>
#include <string_view>

namespace cli {

// Returns the path of a file below the folder of the run, which --exclude patterns are matched against.
std::string PathBelow(std::string_view folder, std::string_view fileName);

// Returns the sentence with the options that leave out a file; names are full Windows paths.
std::string ExcludeHint(const std::string& fileName, std::string_view folder);

// Returns the sentence with the option that leaves out one of two files and not the other; empty if there is
// none, as for names that differ in case alone.
std::string ExcludeOneHint(const std::string& one, const std::string& other, std::string_view folder);

}  // namespace cli
