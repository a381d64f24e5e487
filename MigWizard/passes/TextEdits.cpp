#include "MigWizard/passes/TextEdits.h"

namespace mig {

void TTextEdits::Replace(size_t position, size_t length, std::string replacement) {
  FEdits.push_back({position, length, std::move(replacement)});
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
