// Shell patterns against the path of a file below the folder of a run.
//
// `*` stands for any characters, separators too, `?` for one, `[a-z]` and `[!a-z]` for one of a set. Both
// separators are the same, and so are the cases of a letter. A pattern fits the whole path, or, where it has
// no separator, the bare file name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

class TPathPatterns {
 public:
  explicit TPathPatterns(const std::vector<std::string>& patterns);
  bool Empty() const { return FPatterns.empty(); }
  // Whether any pattern fits. `path` is UTF-8, with either separator.
  bool Match(std::string_view path) const;

 private:
  std::vector<std::string> FPatterns;
};

}  // namespace cli
