// A compiled grammar in the form in which the machine runs it (MigWizard/engine/LL1Machine.h).
//
// Each rule becomes a tree of nodes, and each hook of the client becomes a node that calls the client. There
// are two ways to build the trees:
//
//  - For a client that names its hooks, neighbouring alternatives share their common beginning. Text that
//    has matched once is not read again for the next alternative, which starts after it. The outcome is that of
//    ordered choice, because a step that starts in the same state ends in the same state. Small rules that
//    leave no choice open, such as a name, are inlined where they are referred to.
//  - For a client that names none, every reference is a hook and nothing is shared, so the client sees each
//    attempt at each alternative.
//
// Each node has a first set: the bytes with which it, or what follows it if it can match nothing, can begin.
// A table made from these sets gives the first two of a list of nodes that are worth trying at a byte, so
// alternatives that cannot match are skipped in one step. A hook may match anything, wherever it likes, so
// its first set is full, unless the client promises that its hooks match only where their rules do.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/engine/LL1Grammar.h"

namespace mig {

enum class TLL1NodeKind : uint8_t {
  Literal,         // Length bytes of the literals from Argument on, against the lower-cased text
  WordEnd,         // no word character here
  One,             // one byte of the terminal Argument
  Run,             // the longest run of bytes of the terminal Argument, at least one
  OptionalRun,     // the longest run of bytes of the terminal Argument, which may be empty
  Rule,            // the rule Argument, run by the machine
  HookedRule,      // the nonterminal Name, by a call of the client; Argument is its rule, or kNone
  HookedTerminal,  // the terminal Name, by a call of the client
  UnknownRule,     // the nonterminal Name, which has no rule: an error as soon as it is reached
  Done,            // the rule has matched
};

struct TLL1Node {
  int32_t Argument = 0;
  int32_t Length = 0;
  int32_t Name = 0;         // of a reference: the index of its name
  int32_t Child = kNone;    // the first of the nodes to try after this one
  int32_t Sibling = kNone;  // the next one to try in its place
  TLL1NodeKind Kind = TLL1NodeKind::Done;
  bool IsTail = false;      // a rule reference after which the rule is done
  bool CannotFail = false;  // once this node has matched, its rule is certain to match
  bool IsPure = true;       // its rule is pure

  static constexpr int32_t kNone = -1;
};

// The first of a list of siblings that is worth trying, and the next one after it; kNone if there is none.
struct TLL1Choice {
  int32_t Node = TLL1Node::kNone;
  int32_t Alternative = TLL1Node::kNone;
};

struct TLL1ProgramRule {
  int32_t Entry = TLL1Node::kNone;  // the first node to try
  bool IsPure = true;               // it reaches no hook: reading it changes the position and nothing else
  bool IsRemembered = false;        // pure, and costly enough for the memo
};

// The references of a parse that go through the client.
struct TLL1Hooks {
  bool IsEverything = true;           // every nonterminal and every terminal
  std::vector<std::string> Names;     // otherwise: these nonterminals, with their brackets and in lower case
  bool AreRestrictedToRules = false;  // each of these matches only where its rule matches
};

class TLL1Program {
 public:
  // Gives the characters of a terminal, and whether it is one of them or a run.
  using TTerminalSource = std::function<void(std::string_view name, TCharSet& chars, bool& single)>;

  // Compiles `grammar`, which must be prepared and may be destroyed after that. Asks `terminals` once for
  // each terminal that is no hook.
  TLL1Program(const TLL1Grammar& grammar, const TLL1Hooks& hooks, const TTerminalSource& terminals);

  static constexpr unsigned kEnd = 256;  // the end of the text, where a byte value is expected

  // Rules have the indices that they have in the grammar.
  const TLL1ProgramRule& Rule(int32_t index) const { return FRules[static_cast<size_t>(index)]; }
  const TLL1Node& Node(int32_t index) const { return FNodes[static_cast<size_t>(index)]; }
  // Returns the first two of the node `first` and its further siblings that can match before the byte value
  // `next`. For a literal, WordEnd, One or Run that byte is then certain to fit.
  TLL1Choice Choose(int32_t first, unsigned next) const {
    if (first == TLL1Node::kNone) return {};
    return FChoices[static_cast<size_t>(first) * FClassCount + FClasses[next]];
  }
  const char* Literal(const TLL1Node& node) const { return FLiterals.data() + node.Argument; }
  // Returns 256 flags indexed by byte value, 1 for a member.
  const uint8_t* Terminal(int32_t index) const { return FTerminals[static_cast<size_t>(index)].Members; }
  // Returns the name of a reference, with its brackets.
  const std::string& ReferenceName(const TLL1Node& node) const {
    return FNames[static_cast<size_t>(node.Name)];
  }

 private:
  struct TTerminalTable {
    std::string Name;
    bool IsSingle;
    uint8_t Members[256];
  };
  class TBuilder;

  std::vector<TLL1ProgramRule> FRules;
  std::vector<TLL1Node> FNodes;
  std::array<uint16_t, kEnd + 1>
      FClasses{};  // by byte value; values that no first set separates share a class
  size_t FClassCount = 0;
  std::vector<TLL1Choice> FChoices;  // by node, then by class
  std::string FLiterals;
  std::vector<TTerminalTable> FTerminals;
  std::vector<std::string> FNames;
};

// Returns a byte of the text as literals see it: A to Z in lower case, every other byte unchanged.
inline constexpr uint8_t FoldByte(uint8_t byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<uint8_t>(byte - 'A' + 'a') : byte;
}

}  // namespace mig
