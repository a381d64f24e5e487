// Shell patterns against the path of a file below the folder of a run.
//
// `*` matches any characters, including separators; `?` matches one character; `[a-z]` and `[!a-z]` match one
// character of a set. Upper and lower case match each other, and so do the two separators. A pattern must
// match the whole path, or, if it has no separator, the bare file name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

class TPathPatterns {
 public:
  explicit TPathPatterns(const std::vector<std::string>& patterns);
  bool Empty() const { return FPatterns.empty(); }
  // Returns whether any pattern matches. `path` is UTF-8, with either separator.
  bool Match(std::string_view path) const;

 private:
  std::vector<std::string> FPatterns;
};

}  // namespace cli
