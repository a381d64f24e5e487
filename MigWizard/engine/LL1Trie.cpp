#include "MigWizard/engine/LL1Trie.h"

#include <string>
#include <string_view>

namespace mig {
namespace {

// Moves `place` to its child for that step. Only the last child is shared, because alternatives between two
// equal beginnings must be tried between them.
void AddStep(TLL1TrieNode*& place, TLL1StepKind kind, std::string_view text, bool mayShare) {
  const bool isShared = mayShare && !place->Children.empty() && place->Children.back()->Step.Kind == kind &&
                        place->Children.back()->Step.Text == text;
  if (!isShared)
    place->Children.push_back(
        std::make_unique<TLL1TrieNode>(TLL1TrieNode{{kind, std::string(text)}, {}, false}));
  place = place->Children.back().get();
}

}  // namespace

void AddAlternative(TLL1TrieNode& root, const TLL1Steps& steps, bool mayShare) {
  TLL1TrieNode* place = &root;
  for (const TLL1Step& step : steps) {
    if (place->EndsRule) return;  // an earlier alternative always matches before this one is reached
    if (step.Kind == TLL1StepKind::Literal) {
      for (const char& c : step.Text) AddStep(place, step.Kind, {&c, 1}, mayShare);
    } else {
      AddStep(place, step.Kind, step.Text, mayShare);
    }
  }
  place->EndsRule = true;
}

}  // namespace mig
