#include "MigWizard/passes/TextEdits.h"

#include <algorithm>

namespace mig {

void TTextEdits::Replace(size_t position, size_t length, std::string replacement) {
  FEdits.push_back({position, length, std::move(replacement)});
}

std::vector<size_t> TTextEdits::RemoveIf(const std::function<bool(size_t)>& isRemoved) {
  std::vector<size_t> removed;
  std::erase_if(FEdits, [&](const TEdit& edit) {
    if (!isRemoved(edit.Position)) return false;
    removed.push_back(edit.Position);
    return true;
  });
  return removed;
}

bool TTextEdits::HasAt(size_t position) const {
  const auto place = std::lower_bound(FEdits.begin(), FEdits.end(), position,
                                      [](const TEdit& edit, size_t at) { return edit.Position < at; });
  return place != FEdits.end() && place->Position == position;
}

std::string TTextEdits::Apply(std::string_view text) const {
  std::string changed;
  changed.reserve(text.size() + 32 * FEdits.size());
  size_t done = 0;
  for (const TEdit& edit : FEdits) {
    changed.append(text.substr(done, edit.Position - done)).append(edit.Replacement);
    done = edit.Position + edit.Length;
  }
  return changed.append(text.substr(done));
}

}  // namespace mig
