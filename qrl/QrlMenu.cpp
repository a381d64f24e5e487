#include "qrl/QrlMenu.h"

#include <algorithm>

namespace qrl {

std::string RemoveAmpersands(std::string_view text) {
  std::string result(text);
  std::erase(result, '&');
  return result;
}

}  // namespace qrl
