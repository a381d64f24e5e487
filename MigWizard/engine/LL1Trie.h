// The tree of a rule's steps, in which neighbouring alternatives share their common beginning: a trie.
#pragma once

#include <memory>
#include <vector>

#include "MigWizard/engine/LL1Grammar.h"

namespace mig {

using TLL1Steps = std::vector<TLL1Step>;

// A step of a rule's tree before its nodes are numbered. Literals are single characters here, so that
// alternatives can diverge within a literal.
struct TLL1TrieNode {
  TLL1Step Step;
  std::vector<std::unique_ptr<TLL1TrieNode>> Children;  // in trying order
  bool EndsRule = false;  // after the children have been tried, the rule is done
};

// Adds the steps of one alternative below `root`, after those that are there. With `mayShare`, reuses the
// nodes of the alternative before it as long as the steps are the same.
void AddAlternative(TLL1TrieNode& root, const TLL1Steps& steps, bool mayShare);

}  // namespace mig
