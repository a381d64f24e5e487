#include "MigWizard/engine/LL1Machine.h"

namespace mig {
namespace {

// Work for each byte of progress that counts as no waste. Form text takes less than two.
constexpr int64_t kWorkPerByte = 6;

constexpr size_t kKeptEntries = size_t{1} << 12;  // kept for the next parse
constexpr size_t kMostEntries = size_t{1} << 27;  // 2 GB

}  // namespace

// The scope of one Run. However it ends, its entries are popped and the caller's frame is current again.
class TLL1Machine::TOpenRun {
 public:
  explicit TOpenRun(TLL1Machine& machine)
      : FMachine(machine), FFloor(machine.FHeight), FCallersFrame(machine.FFrame) {}
  ~TOpenRun() {
    FMachine.PopTo(FFloor);
    FMachine.FFrame = FCallersFrame;
  }
  TOpenRun(const TOpenRun&) = delete;
  TOpenRun& operator=(const TOpenRun&) = delete;

  size_t Floor() const { return FFloor; }

 private:
  TLL1Machine& FMachine;
  const size_t FFloor;
  const size_t FCallersFrame;
};

TLL1Machine::TLL1Machine(const TLL1Program& program, TLL1Client& client, TParseState& state,
                         TStateStack& copies)
    : FProgram(program), FClient(client), FState(state), FCopies(copies), FStack(kKeptEntries) {}

void TLL1Machine::Start(std::string_view text, int64_t rereadAllowance) {
  FText = text;
  FHeight = FFrame = 0;
  if (FStack.size() > kKeptEntries) {
    FStack.resize(kKeptEntries);
    FStack.shrink_to_fit();
  }
  FMemo.Clear();
  FUsesMemo = false;
  FWork = 0;
  FWorkLimit = FAllowance = rereadAllowance;
  FStart = FFarthest = FState.Pos - 1;
}

bool TLL1Machine::Run(int32_t rule) {
  const TLL1ProgramRule& source = FProgram.Rule(rule);
  const TOpenRun run(*this);
  ++FWork;
  FPosition = FState.Pos - 1;
  PushAlternative(TLL1Node::kNone, source.IsPure);  // the last one: to fail
  FFrame = FHeight;
  const bool result = RunFrom(source.Entry, run.Floor());
  FState.Pos = FPosition + 1;
  return result;
}

bool TLL1Machine::RunFrom(int32_t node, size_t floor) {
  for (;;) {
    TLL1Choice choice = FProgram.Choose(node, Next());
    if (choice.Node == TLL1Node::kNone) {
      node = PopAlternative();
      if (node == TLL1Node::kNone) return false;
      choice = FProgram.Choose(node, Next());
    }
    const TLL1Node* step = &FProgram.Node(choice.Node);
    if (choice.Alternative != TLL1Node::kNone) PushAlternative(choice.Alternative, step->IsPure);

    // The node was chosen because it can start here, so the first byte is known to fit.
    bool matched = true;
    switch (step->Kind) {
      case TLL1NodeKind::Literal:
        matched = MatchLiteral(*step);
        break;
      case TLL1NodeKind::WordEnd:
        break;
      case TLL1NodeKind::One:
        ++FPosition;
        break;
      case TLL1NodeKind::Run:
        SkipRun(*step, 1);
        break;
      case TLL1NodeKind::OptionalRun:
        SkipRun(*step, 0);
        break;
      case TLL1NodeKind::HookedRule:
      case TLL1NodeKind::HookedTerminal:
        matched = CallHook(*step);
        break;
      case TLL1NodeKind::UnknownRule:
        FState.Pos = FPosition + 1;
        RaiseUnknownNonterminal(FProgram.ReferenceName(*step));
      case TLL1NodeKind::Rule: {
        const int32_t known = FindResult(step->Argument);
        if (known == TLL1Memo::kUnknown) {
          node = EnterRule(*step, choice.Node);
          continue;
        }
        matched = known != TLL1Memo::kFailed;
        if (matched) FPosition = known;
        break;
      }
      case TLL1NodeKind::Done:
        if (FFrame == floor + 1) return true;
        step = &FProgram.Node(LeaveRule());
        break;
    }
    if (matched && step->CannotFail && FHeight > FFrame) PopTo(FFrame);
    node = matched ? step->Child : TLL1Node::kNone;
  }
}

unsigned TLL1Machine::Next() const {
  const auto place = static_cast<size_t>(FPosition);
  return place < FText.size() ? static_cast<uint8_t>(FText[place]) : TLL1Program::kEnd;
}

inline void TLL1Machine::Push(const TStackEntry& entry) {
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

// Pops the entries down to that height, and their copies of the state. Within a frame, no alternative with a
// copy is above one without, so the lowest alternative decides.
void TLL1Machine::PopTo(size_t size) {
  size_t lowest = size;
  if (lowest < FHeight && FStack[lowest].Rule != kAlternative) ++lowest;
  if (lowest < FHeight && FStack[lowest].Link != kNoCopy) FCopies.PopTo(FStack[lowest].Link);
  FHeight = size;
}

// Pops the last alternative that is left, and the rules above it, which have failed. Returns the node to try.
int32_t TLL1Machine::PopAlternative() {
  for (;;) {
    const TStackEntry entry = FStack[--FHeight];
    if (entry.Rule == kAlternative) {
      if (entry.Link != kNoCopy) {
        FState.Assign(FCopies[entry.Link]);
        FCopies.PopTo(entry.Link);
      }
      FPosition = entry.Position;
      return entry.Node;
    }
    StoreResult(entry, TLL1Memo::kFailed);
    FFrame = static_cast<size_t>(entry.Link);
  }
}

// Returns the memo's result for the rule at the present position.
inline int32_t TLL1Machine::FindResult(int32_t rule) const {
  const bool mayBeKnown = FUsesMemo && FProgram.Rule(rule).IsRemembered;
  return mayBeKnown ? FMemo.Find(rule, FPosition) : TLL1Memo::kUnknown;
}

inline void TLL1Machine::StoreResult(const TStackEntry& entry, int32_t result) {
  if (FUsesMemo && FProgram.Rule(entry.Rule).IsRemembered) FMemo.Store(entry.Rule, entry.Position, result);
}

int32_t TLL1Machine::EnterRule(const TLL1Node& node, int32_t index) {
  const TLL1ProgramRule& rule = FProgram.Rule(node.Argument);
  if (++FWork > FWorkLimit) CheckWork();
  if (!node.IsTail || (FUsesMemo && rule.IsRemembered)) {
    Push({index, FPosition, static_cast<int32_t>(FFrame), node.Argument});
    FFrame = FHeight;
  }
  return rule.Entry;
}

// Pops the innermost open rule, which has matched. Returns the node that referred to it.
int32_t TLL1Machine::LeaveRule() {
  const TStackEntry entry = FStack[FFrame - 1];
  StoreResult(entry, FPosition);
  PopTo(FFrame - 1);
  FFrame = static_cast<size_t>(entry.Link);
  return entry.Node;
}

bool TLL1Machine::CallHook(const TLL1Node& node) {
  FState.Pos = FPosition + 1;
  const std::string& name = FProgram.ReferenceName(node);
  const bool result = node.Kind == TLL1NodeKind::HookedRule ? FClient.CallNonterminal(node.Argument, name)
                                                            : FClient.CallTerminal(name);
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

void TLL1Machine::SkipRun(const TLL1Node& node, int32_t known) {
  const uint8_t* members = FProgram.Terminal(node.Argument);
  const char* const start = FText.data() + FPosition;
  const char* const end = FText.data() + FText.size();
  const char* place = start + known;
  while (place != end && members[static_cast<uint8_t>(*place)] != 0) ++place;
  const auto count = static_cast<int32_t>(place - start);
  FPosition += count;
  FWork += count;
}

void TLL1Machine::CheckWork() {
  if (FPosition > FFarthest) FFarthest = FPosition;
  FWorkLimit = FAllowance + kWorkPerByte * (FFarthest - FStart);
  if (FWork <= FWorkLimit) return;
  FUsesMemo = true;
  FWorkLimit = INT64_MAX;
}

}  // namespace mig
