// Resolves "." and ".." in the text of a path.
#pragma once

#include <string>
#include <string_view>

namespace win {

// What divides the components of a path.
inline constexpr std::string_view kHostDividers = "/";
inline constexpr std::string_view kWindowsDividers = "/\\";

enum class TParents {
  Drop,  // as in a root folder, which is its own parent
  Keep
};

// Appends the components of `path` to `result`, with `divider` between them. Skips empty components and ".";
// ".." removes one component. The first `root` bytes of `result` are kept, and get no divider after them; if
// there is no component after them to remove, ".." is dropped or kept.
void AppendComponents(std::string& result, size_t root, std::string_view path, std::string_view dividers,
                      char divider = '/', TParents parents = TParents::Drop);

}  // namespace win
