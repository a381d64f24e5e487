// Runs the rules of a program over a text, by ordered choice with full backtracking.
//
// The machine keeps a stack of its own, with an entry for each open rule (where to continue when it has
// matched) and an entry for each alternative still to be tried (the position and the state to go back to). So
// a list may have any length. Only a hook, which is a call of the client, uses the call stack.
//
//  - Once a rule is certain to match, its remaining alternatives are popped, and a reference that ends its
//    rule pushes no entry. A list that is written as a right recursion therefore runs in constant space.
//  - Reading a rule that reaches no hook changes nothing but the position, so its alternatives keep no copy
//    of the state.
//  - Results of such rules go to the memo as soon as a parse is seen to read its text again and again
//    (MigWizard/engine/LL1Memo.h). A parse that goes straight on never uses it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "MigWizard/engine/LL1Memo.h"
#include "MigWizard/engine/LL1Program.h"
#include "MigWizard/engine/LL1State.h"

namespace mig {

// The client of a machine. The machine calls its hooks at the live state's position. A hook may move the
// position, run rules, and report a match or a failure as it likes.
class TLL1Client {
 public:
  // Parses the nonterminal `name`; `rule` is the index of its rule, or TLL1Node::kNone.
  virtual bool CallNonterminal(int32_t rule, std::string_view name) = 0;
  virtual bool CallTerminal(std::string_view name) = 0;
  // Raises the exception for a text that nests too deeply at `position`, counted from 1.
  virtual void RaiseTooDeep(int32_t position) = 0;

 protected:
  ~TLL1Client() = default;
};

class TLL1Machine {
 public:
  // Uses `state`, the live state, and `copies`, the copies of it. Owns none of its arguments.
  TLL1Machine(const TLL1Program& program, TLL1Client& client, TParseState& state, TStateStack& copies);

  // Starts on a text, at the live state's position. The text must not change up to the next Start.
  // `rereadAllowance` is the work that the parse may waste before the memo is switched on.
  void Start(std::string_view text, int64_t rereadAllowance);

  // Runs the rule of that index from the live state's position. Returns True with the position after the
  // match, or False with the state as on entry. Hooks may call Run in turn. After an exception the machine is
  // as it was before the call; the live state stays where the exception was raised.
  [[nodiscard]] bool Run(int32_t rule);

  // Returns the work since Start: rules tried, and bytes read by runs of characters.
  int64_t Work() const { return FWork; }

 private:
  class TOpenRun;

  // An open rule, with the node that refers to it and the position where it began; or an alternative, with
  // the node to try and the position and state to try it from.
  struct TStackEntry {
    int32_t Node;
    int32_t Position;  // counted from 0
    int32_t Link;      // rule: where the frame of its caller begins; alternative: its copy, or kNoCopy
    int32_t Rule;      // kAlternative for an alternative
  };
  static constexpr int32_t kAlternative = -1;
  static constexpr int32_t kNoCopy = -1;

  bool RunFrom(int32_t node, size_t floor);
  void Push(const TStackEntry& entry);
  void Grow();
  void PushAlternative(int32_t node, bool isPure);
  void PopTo(size_t size);
  int32_t PopAlternative();
  int32_t FindResult(int32_t rule) const;
  void StoreResult(const TStackEntry& entry, int32_t result);
  int32_t EnterRule(const TLL1Node& node, int32_t index);
  int32_t LeaveRule();
  bool CallHook(const TLL1Node& node);
  bool MatchLiteral(const TLL1Node& node);
  void SkipRun(const TLL1Node& node, int32_t known);
  void CheckWork();
  unsigned Next() const;

  const TLL1Program& FProgram;
  TLL1Client& FClient;
  TParseState& FState;
  TStateStack& FCopies;
  std::string_view FText;
  std::vector<TStackEntry> FStack;  // the first FHeight are in use
  size_t FHeight = 0;
  size_t FFrame = 0;      // the first entry of the innermost open rule, after the entry of the rule itself
  int32_t FPosition = 0;  // counted from 0
  TLL1Memo FMemo;
  bool FUsesMemo = false;
  int64_t FWork = 0;
  int64_t FWorkLimit = 0;  // the work at which to compare it with the progress
  int64_t FAllowance = 0;
  int32_t FFarthest = 0;
  int32_t FStart = 0;
};

}  // namespace mig
