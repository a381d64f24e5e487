#include "win/FileApi.h"

#include <cstdio>

namespace win {

std::string GetTempFileNameA(std::string_view path, std::string_view prefix, uint32_t unique) {
  char number[8];
  std::snprintf(number, sizeof number, "%X", unique & 0xFFFF);
  std::string name(path);
  if (!name.empty() && name.back() != '\\') name += '\\';
  return name.append(prefix.substr(0, 3)).append(number).append(".tmp");
}

}  // namespace win
