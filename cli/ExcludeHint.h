// Hints for excluding a file that stops a run.
#pragma once

#include <string>
#include <string_view>

namespace cli {

// Returns the path of a file below the folder of the run; --exclude patterns are matched against it.
std::string PathBelow(std::string_view folder, std::string_view fileName);

// Returns a sentence with the options that exclude a file. Names are full Windows paths.
std::string ExcludeHint(const std::string& fileName, std::string_view folder);

// Returns a sentence with the option that excludes one of two files and not the other. Returns an empty
// string if there is no such option, for example because the names differ only in case.
std::string ExcludeOneHint(const std::string& one, const std::string& other, std::string_view folder);

}  // namespace cli
