// The components in the text of a path.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace win {

// The separators of the components of a path.
inline constexpr std::string_view kHostSeparators = "/";
inline constexpr std::string_view kWindowsSeparators = "/\\";

enum class TParents {
  Drop,  // as in a root folder, which is its own parent
  Keep
};

// Appends the components of `path` to `result`, with `separator` between them. Skips empty components and
// "."; ".." removes one component. The first `root` bytes of `result` are kept, and get no separator after
// them; if there is no component after them to remove, ".." is dropped or kept.
void AppendComponents(std::string& result, size_t root, std::string_view path, std::string_view separators,
                      char separator = '/', TParents parents = TParents::Drop);

// Removes the dots and blanks at the end of each component after the first `root` bytes: they are not part of
// a name on Windows. Leaves "." and "..", and a component that `isKept` returns true for, which gets the path
// up to the component's end. Returns false if a component consists of nothing else.
[[nodiscard]] bool TrimComponents(std::string& path, size_t root, std::string_view separators,
                                  const std::function<bool(const std::string&)>& isKept);

}  // namespace win
