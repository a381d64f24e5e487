// Finds the known word that is most similar to an unknown one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

// Returns the name that `typed` is a prefix of, or the one at the smallest edit distance from it (letters
// omitted, added, replaced or swapped), which is at most a third of the length of `typed`. Returns an empty
// string if there is none.
std::string_view Nearest(std::string_view typed, const std::vector<std::string_view>& names);

// Returns ". Did you mean NAME?" if one of `names` is similar to `typed`, else ".".
std::string DidYouMean(std::string_view typed, const std::vector<std::string_view>& names);

}  // namespace cli
