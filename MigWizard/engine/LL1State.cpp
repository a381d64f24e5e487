#include "MigWizard/engine/LL1State.h"

namespace mig {
namespace {

constexpr size_t kKeptCopies = 256;

}  // namespace

int32_t TStateStack::Push(const TParseState& state) {
  const auto place = static_cast<size_t>(FCount);
  if (place == FCopies.size()) FCopies.push_back(FMaker());
  FCopies[place]->Assign(state);
  return FCount++;
}

void TStateStack::Clear() {
  FCount = 0;
  if (FCopies.size() > kKeptCopies) FCopies.resize(kKeptCopies);
}

}  // namespace mig
