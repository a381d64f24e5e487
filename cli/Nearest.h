// What the user probably meant by a word that is not known.
#pragma once

#include <string_view>
#include <vector>

namespace cli {

// Returns the one of `names` that `typed` is the beginning of, or from which it differs by the fewest letters
// left out, added, replaced or swapped, at most a third of its own. Returns an empty text if there is none.
std::string_view Nearest(std::string_view typed, const std::vector<std::string_view>& names);

}  // namespace cli
