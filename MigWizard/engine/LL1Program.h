// A compiled grammar in the form in which the machine runs it (MigWizard/LL1Machine.h).
//
// Each rule becomes a tree of nodes. Alternatives that follow one another and begin with the same steps share
// these steps: what matched once is not read again for the next alternative, which starts behind it. Ordered
// choice gives the same outcome either way, since a step that starts from the same state ends in the same
// state.
//
// From the bytes with which each node and what is behind it can begin, a table is made that tells which of a
// list of nodes is the first worth trying. So alternatives that cannot match are passed over in one step.
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

struct TLL1Node {
  enum class TKind : uint8_t {
    Literal,      // Length bytes of the literals from Argument on, against the lower-cased text
    WordEnd,      // no word character here
    One,          // one byte of the terminal Argument
    Run,          // as many bytes of the terminal Argument as there are, at least one
    Rule,         // the rule Argument, run by the machine
    HookedRule,   // the rule Argument, by way of the client
    UnknownRule,  // an error as soon as it is reached
    Done,         // the rule has matched
  };
  int32_t Argument = 0;
  int32_t Length = 0;
  int32_t Name = 0;         // of a reference: where its name stands
  int32_t Child = kNone;    // the first of the nodes to try behind this one
  int32_t Sibling = kNone;  // what to try in its place
  TKind Kind = TKind::Done;
  bool IsTail = false;      // behind this rule reference the rule is done
  bool CannotFail = false;  // once this node has matched, its rule is certain to match
  bool IsPure = true;       // its rule is pure

  static constexpr int32_t kNone = -1;
};

struct TLL1ProgramRule {
  std::string Name;
  int32_t Entry = TLL1Node::kNone;  // the first node to try
  bool IsHooked = false;
  bool IsPure = true;  // nothing that it reaches is hooked: reading it leaves no trace but the position
  bool IsRemembered = false;  // pure, and costly enough that its results are worth keeping
};

class TLL1Program {
 public:
  // Gives the characters of a terminal and whether it is one of them or a run.
  using TTerminalSource = std::function<void(std::string_view name, TCharSet& chars, bool& single)>;

  // `grammar` has been prepared. `hooks` are the names of the nonterminals that the client wants to see.
  TLL1Program(const TLL1Grammar& grammar, const std::vector<std::string>& hooks,
              const TTerminalSource& terminals);

  static constexpr unsigned kEnd = 256;  // stands for the end of the text, where a byte value is asked for

  // Rules in the order of the grammar's.
  const TLL1ProgramRule& Rule(int32_t index) const { return FRules[static_cast<size_t>(index)]; }
  const TLL1Node& Node(int32_t index) const { return FNodes[static_cast<size_t>(index)]; }
  // The first of the node `first` and its further siblings that can match where the byte value `next` comes
  // next, or kNone. Of a node that is no rule reference that byte is then certain to fit.
  int32_t FirstThatCanStart(int32_t first, unsigned next) const {
    if (first == TLL1Node::kNone) return first;
    return FChoices[static_cast<size_t>(first) * FClassCount + FClasses[next]];
  }
  const char* Literal(const TLL1Node& node) const { return FLiterals.data() + node.Argument; }
  // By byte value, 1 for a member.
  const uint8_t* Terminal(int32_t index) const { return FTerminals[static_cast<size_t>(index)].Members; }
  // The name of a rule reference as the alternative spells it.
  const std::string& ReferenceName(const TLL1Node& node) const {
    return FNames[static_cast<size_t>(node.Name)];
  }

 private:
  struct TTerminal {
    std::string Name;
    bool IsSingle;
    uint8_t Members[256];
  };
  class TBuilder;

  std::vector<TLL1ProgramRule> FRules;
  std::vector<TLL1Node> FNodes;
  // Byte values that no node tells apart are one class.
  std::array<uint16_t, kEnd + 1> FClasses{};
  size_t FClassCount = 0;
  std::vector<int32_t> FChoices;  // by node, then by class
  std::string FLiterals;
  std::vector<TTerminal> FTerminals;
  std::vector<std::string> FNames;
};

// A letter of the text as literals see it: A to Z in lower case, every other byte as it is.
inline constexpr uint8_t FoldByte(uint8_t byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<uint8_t>(byte - 'A' + 'a') : byte;
}

}  // namespace mig
