#include "MigWizard/engine/LL1Machine.h"

#include "MigWizard/engine/LL1Parser.h"

namespace mig {
namespace {

// Work for each byte gained that counts as no waste. Form text takes less than two.
constexpr int64_t kWorkPerByte = 6;

constexpr size_t kKeptEntries = size_t{1} << 12;  // stack that is kept for the next parse
constexpr size_t kMostEntries = size_t{1} << 27;  // 2 GB

}  // namespace

TLL1Machine::TLL1Machine(const TLL1Program& program, TLL1Parser& client, TParseState& state,
                         TStateStack& copies)
    : FProgram(program), FClient(client), FState(state), FCopies(copies), FStack(kKeptEntries) {}

void TLL1Machine::Start(std::string_view text, int64_t rereadAllowance) {
  FText = text;
  FHeight = FFrame = 0;
  if (FStack.size() > kKeptEntries) FStack = std::vector<TEntry>(kKeptEntries);
  FMemo.Clear();
  FIsRemembering = false;
  FWork = 0;
  FWorkLimit = FAllowance = rereadAllowance;
  FStart = FFarthest = FState.Pos - 1;
}

bool TLL1Machine::Run(int32_t rule) {
  const TLL1ProgramRule& source = FProgram.Rule(rule);
  const size_t floor = FHeight;
  const size_t callersFrame = FFrame;
  FPosition = FState.Pos - 1;
  PushAlternative(TLL1Node::kNone, source.IsPure);  // the last one: to fail
  FFrame = FHeight;
  const bool result = RunFrom(source.Entry, floor);
  FFrame = callersFrame;
  FState.Pos = FPosition + 1;
  return result;
}

bool TLL1Machine::RunFrom(int32_t node, size_t floor) {
  for (;;) {
    unsigned next = Next();
    node = FProgram.FirstThatCanStart(node, next);
    if (node == TLL1Node::kNone) {
      node = TakeAlternative();
      if (node == TLL1Node::kNone) return false;
      next = Next();
    }
    const TLL1Node* step = &FProgram.Node(node);
    const int32_t alternative = FProgram.FirstThatCanStart(step->Sibling, next);
    if (alternative != TLL1Node::kNone) PushAlternative(alternative, step->IsPure);

    // The node was chosen because it can start here: of what it matches, the next byte is known to fit.
    bool matched = true;
    switch (step->Kind) {
      case TLL1Node::TKind::Literal:
        matched = MatchLiteral(*step);
        break;
      case TLL1Node::TKind::WordEnd:
        break;
      case TLL1Node::TKind::One:
        ++FPosition;
        break;
      case TLL1Node::TKind::Run:
        SkipRun(*step);
        break;
      case TLL1Node::TKind::HookedRule:
        matched = CallHook(*step);
        break;
      case TLL1Node::TKind::UnknownRule:
        TLL1Parser::RaiseUnknownNonterminal(FProgram.ReferenceName(*step));
      case TLL1Node::TKind::Rule: {
        const int32_t known = Recall(step->Argument);
        if (known == TLL1Memo::kUnknown) {
          node = EnterRule(*step, node);
          continue;
        }
        matched = known != TLL1Memo::kFailed;
        if (matched) FPosition = known;
        break;
      }
      case TLL1Node::TKind::Done:
        if (FFrame == floor + 1) {
          CutTo(floor);
          return true;
        }
        step = &FProgram.Node(LeaveRule());
        break;
    }
    if (matched && step->CannotFail && FHeight > FFrame) CutTo(FFrame);
    node = matched ? step->Child : TLL1Node::kNone;
  }
}

unsigned TLL1Machine::Next() const {
  const auto place = static_cast<size_t>(FPosition);
  return place < FText.size() ? static_cast<uint8_t>(FText[place]) : TLL1Program::kEnd;
}

inline void TLL1Machine::Push(const TEntry& entry) {
  if (FHeight == FStack.size()) Grow();
  FStack[FHeight++] = entry;
}

void TLL1Machine::Grow() {
  if (FStack.size() >= kMostEntries) FClient.RaiseTooDeep(FPosition + 1);
  FStack.resize(FStack.size() * 2);
}

void TLL1Machine::PushAlternative(int32_t node, bool isPure) {
  int32_t copy = kNoCopy;
  if (!isPure) {
    FState.Pos = FPosition + 1;
    copy = FCopies.Push(FState);
  }
  Push({node, FPosition, copy, kAlternative});
}

// Drops the entries from number `size` on, and their copies of the state. Alternatives with a copy never
// stand above one without in the same frame, so the lowest alternative tells.
void TLL1Machine::CutTo(size_t size) {
  size_t lowest = size;
  if (lowest < FHeight && FStack[lowest].Rule != kAlternative) ++lowest;
  if (lowest < FHeight && FStack[lowest].Link != kNoCopy) FCopies.CutTo(FStack[lowest].Link);
  FHeight = size;
}

// Goes back to the last alternative that is left. The rules on the way to it have failed. The node to try.
int32_t TLL1Machine::TakeAlternative() {
  for (;;) {
    const TEntry entry = FStack[--FHeight];
    if (entry.Rule == kAlternative) {
      if (entry.Link != kNoCopy) {
        FState.Assign(FCopies[entry.Link]);
        FCopies.CutTo(entry.Link);
      }
      FPosition = entry.Position;
      return entry.Node;
    }
    Remember(entry, TLL1Memo::kFailed);
    FFrame = static_cast<size_t>(entry.Link);
  }
}

// What the rule is known to match here.
inline int32_t TLL1Machine::Recall(int32_t rule) const {
  const bool mayBeKnown = FIsRemembering && FProgram.Rule(rule).IsRemembered;
  return mayBeKnown ? FMemo.Find(rule, FPosition) : TLL1Memo::kUnknown;
}

inline void TLL1Machine::Remember(const TEntry& entry, int32_t result) {
  if (FIsRemembering && FProgram.Rule(entry.Rule).IsRemembered)
    FMemo.Store(entry.Rule, entry.Position, result);
}

int32_t TLL1Machine::EnterRule(const TLL1Node& node, int32_t index) {
  const TLL1ProgramRule& rule = FProgram.Rule(node.Argument);
  if (++FWork > FWorkLimit) CheckWork();
  if (!node.IsTail || (FIsRemembering && rule.IsRemembered)) {
    Push({index, FPosition, static_cast<int32_t>(FFrame), node.Argument});
    FFrame = FHeight;
  }
  return rule.Entry;
}

// Ends the rule under way, which has matched. The node that referred to it.
int32_t TLL1Machine::LeaveRule() {
  const TEntry entry = FStack[FFrame - 1];
  Remember(entry, FPosition);
  CutTo(FFrame - 1);
  FFrame = static_cast<size_t>(entry.Link);
  return entry.Node;
}

bool TLL1Machine::CallHook(const TLL1Node& node) {
  FState.Pos = FPosition + 1;
  const bool result = FClient.CallHook(node.Argument, FProgram.ReferenceName(node));
  FPosition = FState.Pos - 1;
  return result;
}

bool TLL1Machine::MatchLiteral(const TLL1Node& node) {
  const auto length = static_cast<size_t>(node.Length);
  const auto place = static_cast<size_t>(FPosition);
  if (length > FText.size() - place) return false;
  const char* literal = FProgram.Literal(node);
  for (size_t i = 1; i < length; ++i)
    if (FoldByte(static_cast<uint8_t>(FText[place + i])) != static_cast<uint8_t>(literal[i])) return false;
  FPosition += node.Length;
  return true;
}

void TLL1Machine::SkipRun(const TLL1Node& node) {
  const uint8_t* members = FProgram.Terminal(node.Argument);
  const char* const start = FText.data() + FPosition;
  const char* const end = FText.data() + FText.size();
  const char* place = start + 1;
  while (place != end && members[static_cast<uint8_t>(*place)] != 0) ++place;
  const auto count = static_cast<int32_t>(place - start);
  FPosition += count;
  FWork += count;
}

void TLL1Machine::CheckWork() {
  if (FPosition > FFarthest) FFarthest = FPosition;
  FWorkLimit = FAllowance + kWorkPerByte * (FFarthest - FStart);
  if (FWork <= FWorkLimit) return;
  FIsRemembering = true;
  FWorkLimit = INT64_MAX;
}

}  // namespace mig
