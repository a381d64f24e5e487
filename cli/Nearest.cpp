#include "cli/Nearest.h"

#include <algorithm>

namespace cli {
namespace {

size_t Distance(std::string_view left, std::string_view right) {
  std::vector<std::vector<size_t>> rows(left.size() + 1, std::vector<size_t>(right.size() + 1));
  for (size_t i = 0; i <= left.size(); ++i) {
    for (size_t j = 0; j <= right.size(); ++j) {
      if (i == 0 || j == 0) {
        rows[i][j] = i + j;
        continue;
      }
      const size_t replaced = rows[i - 1][j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
      rows[i][j] = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, replaced});
      if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1])
        rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
    }
  }
  return rows[left.size()][right.size()];
}

}  // namespace

std::string_view Nearest(std::string_view typed, const std::vector<std::string_view>& names) {
  std::string_view nearest;
  size_t least = typed.size() / 3 + 1;
  for (const std::string_view name : names) {
    // The "--" alone does not count as a prefix of an option.
    const bool begins = typed.find_first_not_of('-') != std::string_view::npos && name.starts_with(typed);
    const size_t distance = begins ? 0 : Distance(typed, name);
    if (distance >= least) continue;
    least = distance;
    nearest = name;
  }
  return nearest;
}

std::string DidYouMean(std::string_view typed, const std::vector<std::string_view>& names) {
  const std::string_view nearest = Nearest(typed, names);
  return nearest.empty() ? std::string(".") : ". Did you mean " + std::string(nearest) + "?";
}

}  // namespace cli
