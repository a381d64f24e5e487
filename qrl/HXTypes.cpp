#include "qrl/HXTypes.h"

#include <algorithm>

#include "rtl/text/SysUtils.h"

namespace qrl {

void TIntValueStringList::Add(std::string_view key, int value) {
  FItems.emplace_back(key, value);
}

void TIntValueStringList::Sort() {
  std::sort(FItems.begin(), FItems.end(), [](const auto& left, const auto& right) {
    return rtl::CompareText(left.first, right.first) < 0;
  });
}

int TIntValueStringList::Lookup(std::string_view key) const {
  const auto place = std::lower_bound(
      FItems.begin(), FItems.end(), key,
      [](const auto& item, std::string_view wanted) { return rtl::CompareText(item.first, wanted) < 0; });
  return place != FItems.end() && rtl::SameText(place->first, key) ? place->second : 0;
}

}  // namespace qrl
