#include "win/paths/PathComponents.h"

#include <algorithm>

namespace win {

void AppendComponents(std::string& result, size_t root, std::string_view path, std::string_view separators,
                      char separator, TParents parents) {
  while (!path.empty()) {
    const size_t end = std::min(path.find_first_of(separators), path.size());
    const std::string_view component = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (component.empty() || component == ".") continue;
    if (component == "..") {
      const std::string_view above = std::string_view(result).substr(root);
      const size_t last = above.rfind(separator) + 1;  // npos + 1 is 0
      if (!above.empty() && above.substr(last) != "..") {
        result.resize(root + last - (last > 0 ? 1 : 0));
        continue;
      }
      if (parents == TParents::Drop) continue;
    }
    if (result.size() > root) result += separator;
    result += component;
  }
}

bool TrimComponents(std::string& path, size_t root, std::string_view separators,
                    const std::function<bool(const std::string&)>& isKept) {
  for (size_t start = root; start < path.size(); ++start) {
    size_t end = std::min(path.find_first_of(separators, start), path.size());
    const std::string_view component = std::string_view(path).substr(start, end - start);
    const size_t length = component.find_last_not_of(". ") + 1;  // npos + 1 is 0
    const bool isTrimmed =
        length < component.size() && component != "." && component != ".." && !isKept(path.substr(0, end));
    if (isTrimmed && length == 0) return false;
    if (isTrimmed) {
      path.erase(start + length, component.size() - length);
      end = start + length;
    }
    start = end;
  }
  return true;
}

}  // namespace win
