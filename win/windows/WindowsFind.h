// Folder walks.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

#include "win/FileSystem.h"

namespace win {

// TFileSystem::FindFirstFileA. Entries that no UTF-8 path can name are passed over; the user is told of those that are
// not in `reported`, which receives them.
std::unique_ptr<TFindHandle> FindFirst(std::unordered_set<std::wstring>& reported, std::string_view pattern,
                                       TFindData& data);

}  // namespace win
