// Folder walks.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "win/FileSystem.h"

namespace win {

// TFileSystem::FindFirstFileA. Skips entries that no Windows path can name. Reports each of them to the user
// once: `reported` holds the messages.
std::unique_ptr<TFindHandle> FindFirst(std::unordered_set<std::string>& reported, std::string_view pattern,
                                       TFindData& data);

}  // namespace win
