#include "MigWizard/passes/Findings.h"

#include <algorithm>
#include <utility>

namespace mig {
namespace {

// So many findings are compared with each, so that the time is proportional to the number of findings. A file
// rarely has more that differ.
constexpr size_t kCompared = 16;

bool CountAlike(const TFinding& left, const TFinding& right) {
  return left.Rule == right.Rule && left.Level == right.Level && left.IsEvent == right.IsEvent &&
         left.Subject == right.Subject && left.Value == right.Value && left.OldClass == right.OldClass;
}

}  // namespace

void MergeEqual(std::vector<TFinding>& findings, size_t first) {
  size_t kept = first;
  for (size_t i = first; i < findings.size(); ++i) {
    const auto end = findings.begin() + static_cast<std::ptrdiff_t>(kept);
    const auto begin = end - static_cast<std::ptrdiff_t>(std::min(kept, kCompared));
    const auto equal = std::find_if(
        begin, end, [&finding = findings[i]](const TFinding& each) { return CountAlike(each, finding); });
    if (equal != end) {
      equal->Count += findings[i].Count;
    } else {
      if (kept != i) findings[kept] = std::move(findings[i]);
      ++kept;
    }
  }
  findings.resize(kept);
}

}  // namespace mig
