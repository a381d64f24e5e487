// Runs the rules of a program over a text, for a client that has declared which nonterminals it hooks.
//
// The machine keeps a stack of its own: an entry for each rule under way, with where to go on when it has
// matched, and one for each alternative still to be tried, with the position and the state to go back to. So
// a list may be as long as it likes. Only a hooked nonterminal, which goes through the client, takes a piece
// of the call stack.
//
//  - Once a rule is certain to match, what its alternatives have left on the stack is dropped, and a
//  reference that
//    ends its rule leaves no entry. A list that is written as a right recursion therefore runs in constant
//    space.
//  - A rule that no hook can be reached from leaves no trace but the position, so none of its alternatives
//  keeps more.
//  - Results of such rules are remembered as soon as a parse is seen to read its text again and again, and
//  the work
//    from there on stays in proportion to the text. A parse that goes straight on pays nothing for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "MigWizard/engine/LL1Memo.h"
#include "MigWizard/engine/LL1Program.h"
#include "MigWizard/engine/LL1State.h"

namespace mig {

class TLL1Machine {
 public:
  // `client` makes the hooked calls; `state` is its live state and `copies` the copies of it. None is owned.
  TLL1Machine(const TLL1Program& program, TLL1Parser& client, TParseState& state, TStateStack& copies);

  // Starts on a text, at the live state's position. The text is to stay as it is up to the next Start.
  // `rereadAllowance` is the work, in bytes read and rules tried, that the parse may waste before it begins
  // to remember.
  void Start(std::string_view text, int64_t rereadAllowance);

  // Runs the rule of that index from the live state's position. True with the position behind the match;
  // False with the state as on entry. Hooks may run other rules meanwhile. After an exception the machine is
  // to be started anew.
  [[nodiscard]] bool Run(int32_t rule);

 private:
  // Of a rule under way: the node that refers to it, and the position where it began. Of an alternative: the
  // node to try, and the position and the state to try it from.
  struct TEntry {
    int32_t Node;
    int32_t Position;  // counted from 0
    int32_t
        Link;  // rule: where the frame of its caller begins; alternative: the copy of the state, or kNoCopy
    int32_t Rule;  // kAlternative for an alternative
  };
  static constexpr int32_t kAlternative = -1;
  static constexpr int32_t kNoCopy = -1;

  bool RunFrom(int32_t node, size_t floor);
  void Push(const TEntry& entry);
  void Grow();
  void PushAlternative(int32_t node, bool isPure);
  void CutTo(size_t size);
  int32_t TakeAlternative();
  int32_t Recall(int32_t rule) const;
  void Remember(const TEntry& entry, int32_t result);
  int32_t EnterRule(const TLL1Node& node, int32_t index);
  int32_t LeaveRule();
  bool CallHook(const TLL1Node& node);
  bool MatchLiteral(const TLL1Node& node);
  void SkipRun(const TLL1Node& node);
  void CheckWork();
  unsigned Next() const;

  const TLL1Program& FProgram;
  TLL1Parser& FClient;
  TParseState& FState;
  TStateStack& FCopies;
  std::string_view FText;
  std::vector<TEntry> FStack;  // FHeight of them are in use
  size_t FHeight = 0;
  size_t FFrame = 0;      // where the entries of the rule under way begin, behind that of the rule itself
  int32_t FPosition = 0;  // counted from 0
  TLL1Memo FMemo;
  bool FIsRemembering = false;
  int64_t FWork = 0;       // bytes read and rules tried
  int64_t FWorkLimit = 0;  // when to compare it with what has been gained
  int64_t FAllowance = 0;
  int32_t FFarthest = 0;
  int32_t FStart = 0;
};

}  // namespace mig
