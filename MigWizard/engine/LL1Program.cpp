#include "MigWizard/engine/LL1Program.h"

#include <algorithm>
#include <bitset>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "MigWizard/engine/LL1Trie.h"

namespace mig {
namespace {

// The longest rule that is inlined, in steps.
constexpr size_t kMostInlinedSteps = 8;

bool IsEqual(const TLL1Step& left, const TLL1Step& right) {
  return left.Kind == right.Kind && left.Text == right.Text;
}

// The first set of a node or rule: byte values, and the end of the text.
struct TFirstSet {
  std::bitset<TLL1Program::kEnd + 1> Set;
  bool IsNullable = false;  // it can match without reading anything

  // Adds `other`. Returns whether anything was new.
  bool Add(const TFirstSet& other) {
    const bool isNew = (other.IsNullable && !IsNullable) || (other.Set & ~Set).any();
    IsNullable = IsNullable || other.IsNullable;
    Set |= other.Set;
    return isNew;
  }
};

template <class TCondition>
TFirstSet FirstSetWhere(TCondition condition) {
  TFirstSet first;
  for (unsigned next = 0; next <= TLL1Program::kEnd; ++next) first.Set[next] = condition(next);
  return first;
}

}  // namespace

class TLL1Program::TBuilder {
 public:
  TBuilder(TLL1Program& program, const TLL1Grammar& grammar, const TLL1Hooks& hooks,
           const TTerminalSource& terminals)
      : FProgram(program), FGrammar(grammar), FHooks(hooks), FTerminalSource(terminals) {}

  void Build();

 private:
  using TTrieNodes = std::span<const std::unique_ptr<TLL1TrieNode>>;

  // A rule that is inlined where it is referred to.
  struct TInlined {
    bool IsKnown = false;            // also while the rule itself is being looked at
    std::optional<TLL1Steps> Steps;  // none if it is not inlined
  };

  std::vector<TLL1Steps> AlternativesOf(size_t rule);
  TLL1Steps WithInlined(const TLL1Steps& steps);
  const std::optional<TLL1Steps>& Inlined(size_t rule);
  bool IsHook(const std::string& name) const;
  bool IsOptionalRun(const TLL1Steps& longer, const TLL1Steps& shorter);
  int32_t AddNodes(TTrieNodes list, bool endsRule);
  int32_t AddNode(TLL1NodeKind kind);
  const TLL1TrieNode* FillNode(TLL1Node& node, const TLL1TrieNode& source);
  void FillLiteral(TLL1Node& node, const TLL1TrieNode*& last);
  void FillNonterminal(TLL1Node& node, const std::string& name);
  void FillTerminal(TLL1Node& node, const std::string& name);
  int32_t NameIndex(const std::string& name);
  int32_t TerminalIndex(const std::string& name);
  void MarkPureRules();
  bool ReachesHook(const TLL1Node& node) const;
  std::vector<TFirstSet> FindFirstSets() const;
  bool BeginsAsItsRule(const TLL1Node& node) const;
  TFirstSet FirstSetOfStep(const TLL1Node& node) const;
  TFirstSet FirstSetOfList(int32_t first, std::span<const TFirstSet> nodes) const;
  void MakeChoices(const std::vector<TFirstSet>& firstSets);

  TLL1Node& Node(int32_t index) { return FProgram.FNodes[static_cast<size_t>(index)]; }

  TLL1Program& FProgram;
  const TLL1Grammar& FGrammar;
  const TLL1Hooks& FHooks;
  const TTerminalSource& FTerminalSource;
  std::vector<TInlined> FInlined;  // by rule
  std::vector<size_t> FNodeEnds;   // by rule: the index after its last node
};

void TLL1Program::TBuilder::Build() {
  FProgram.FRules.resize(FGrammar.Rules().size());
  FInlined.resize(FGrammar.Rules().size());
  for (size_t i = 0; i < FProgram.FRules.size(); ++i) {
    TLL1TrieNode root;
    for (const TLL1Steps& steps : AlternativesOf(i)) AddAlternative(root, steps, !FHooks.IsEverything);
    FProgram.FRules[i].Entry = AddNodes(root.Children, root.EndsRule);
    FNodeEnds.push_back(FProgram.FNodes.size());
  }
  MarkPureRules();
  MakeChoices(FindFirstSets());
}

// Returns the steps of the rule's alternatives, with other rules inlined.
std::vector<TLL1Steps> TLL1Program::TBuilder::AlternativesOf(size_t rule) {
  const std::vector<TLL1Steps>& alternatives = FGrammar.Rules()[rule].Steps;
  if (FHooks.IsEverything) return alternatives;
  if (const std::optional<TLL1Steps>& steps = Inlined(rule)) return {*steps};
  std::vector<TLL1Steps> result;
  result.reserve(alternatives.size());
  for (const TLL1Steps& steps : alternatives) result.push_back(WithInlined(steps));
  return result;
}

TLL1Steps TLL1Program::TBuilder::WithInlined(const TLL1Steps& steps) {
  TLL1Steps result;
  for (const TLL1Step& step : steps) {
    const int rule =
        step.Kind == TLL1StepKind::Nonterminal && !IsHook(step.Text) ? FGrammar.Find(step.Text) : -1;
    const std::optional<TLL1Steps> inlined = rule < 0 ? std::nullopt : Inlined(static_cast<size_t>(rule));
    if (inlined) {
      result.insert(result.end(), inlined->begin(), inlined->end());
    } else {
      result.push_back(step);
    }
  }
  return result;
}

// Returns the steps of the rule if it is inlined: if it refers to no rule that is not inlined itself, and has
// one alternative, so that matching it leaves no choice open.
const std::optional<TLL1Steps>& TLL1Program::TBuilder::Inlined(size_t rule) {
  TInlined& known = FInlined[rule];
  if (std::exchange(known.IsKnown, true)) return known.Steps;
  std::vector<TLL1Steps> alternatives;
  for (const TLL1Steps& steps : FGrammar.Rules()[rule].Steps) alternatives.push_back(WithInlined(steps));
  if (alternatives.size() == 2 && IsOptionalRun(alternatives[0], alternatives[1])) {
    alternatives[0].back().Kind = TLL1StepKind::OptionalRun;
    alternatives.pop_back();
  }
  const auto isReference = [](const TLL1Step& step) { return step.Kind == TLL1StepKind::Nonterminal; };
  if (alternatives.size() == 1 && alternatives[0].size() <= kMostInlinedSteps &&
      std::none_of(alternatives[0].begin(), alternatives[0].end(), isReference))
    known.Steps = std::move(alternatives[0]);
  return known.Steps;
}

// Returns whether `longer`, which is tried first, is `shorter` with a run after it.
bool TLL1Program::TBuilder::IsOptionalRun(const TLL1Steps& longer, const TLL1Steps& shorter) {
  return longer.size() == shorter.size() + 1 && longer.back().Kind == TLL1StepKind::Terminal &&
         std::equal(shorter.begin(), shorter.end(), longer.begin(), IsEqual) &&
         !FProgram.FTerminals[static_cast<size_t>(TerminalIndex(longer.back().Text))].IsSingle;
}

bool TLL1Program::TBuilder::IsHook(const std::string& name) const {
  return FHooks.IsEverything ||
         std::find(FHooks.Names.begin(), FHooks.Names.end(), name) != FHooks.Names.end();
}

// Adds the nodes of a list of siblings and of all that follows them. Returns the first of the siblings. Nodes
// come before their children and their further siblings.
int32_t TLL1Program::TBuilder::AddNodes(TTrieNodes list, bool endsRule) {
  if (list.empty()) return endsRule ? AddNode(TLL1NodeKind::Done) : TLL1Node::kNone;
  const int32_t index = AddNode(TLL1NodeKind::Done);
  TLL1Node node;
  const TLL1TrieNode* last = FillNode(node, *list.front());
  node.Child = AddNodes(last->Children, last->EndsRule);
  node.CannotFail = last->EndsRule;
  node.IsTail = node.Kind == TLL1NodeKind::Rule && last->EndsRule && last->Children.empty();
  node.Sibling = AddNodes(list.subspan(1), endsRule);
  Node(index) = node;
  return index;
}

int32_t TLL1Program::TBuilder::AddNode(TLL1NodeKind kind) {
  FProgram.FNodes.emplace_back().Kind = kind;
  return static_cast<int32_t>(FProgram.FNodes.size()) - 1;
}

// Fills `node` from `source` and from the steps after it that continue the same literal. Returns the last of
// these.
const TLL1TrieNode* TLL1Program::TBuilder::FillNode(TLL1Node& node, const TLL1TrieNode& source) {
  const TLL1TrieNode* last = &source;
  switch (source.Step.Kind) {
    case TLL1StepKind::Literal:
      FillLiteral(node, last);
      break;
    case TLL1StepKind::WordEnd:
      node.Kind = TLL1NodeKind::WordEnd;
      break;
    case TLL1StepKind::Terminal:
      FillTerminal(node, source.Step.Text);
      break;
    case TLL1StepKind::OptionalRun:
      node.Kind = TLL1NodeKind::OptionalRun;
      node.Argument = TerminalIndex(source.Step.Text);
      break;
    case TLL1StepKind::Nonterminal:
      FillNonterminal(node, source.Step.Text);
      break;
  }
  return last;
}

void TLL1Program::TBuilder::FillLiteral(TLL1Node& node, const TLL1TrieNode*& last) {
  node.Kind = TLL1NodeKind::Literal;
  node.Argument = static_cast<int32_t>(FProgram.FLiterals.size());
  FProgram.FLiterals += last->Step.Text;
  while (!last->EndsRule && last->Children.size() == 1 &&
         last->Children.front()->Step.Kind == TLL1StepKind::Literal) {
    last = last->Children.front().get();
    FProgram.FLiterals += last->Step.Text;
  }
  node.Length = static_cast<int32_t>(FProgram.FLiterals.size()) - node.Argument;
}

void TLL1Program::TBuilder::FillNonterminal(TLL1Node& node, const std::string& name) {
  node.Argument = FGrammar.Find(name);
  node.Name = NameIndex(name);
  if (IsHook(name)) {
    node.Kind = TLL1NodeKind::HookedRule;
  } else {
    node.Kind = node.Argument < 0 ? TLL1NodeKind::UnknownRule : TLL1NodeKind::Rule;
  }
}

void TLL1Program::TBuilder::FillTerminal(TLL1Node& node, const std::string& name) {
  if (FHooks.IsEverything) {
    node.Kind = TLL1NodeKind::HookedTerminal;
    node.Name = NameIndex(name);
    return;
  }
  node.Argument = TerminalIndex(name);
  const bool isSingle = FProgram.FTerminals[static_cast<size_t>(node.Argument)].IsSingle;
  node.Kind = isSingle ? TLL1NodeKind::One : TLL1NodeKind::Run;
}

int32_t TLL1Program::TBuilder::NameIndex(const std::string& name) {
  FProgram.FNames.push_back(name);
  return static_cast<int32_t>(FProgram.FNames.size()) - 1;
}

int32_t TLL1Program::TBuilder::TerminalIndex(const std::string& name) {
  std::vector<TTerminalTable>& terminals = FProgram.FTerminals;
  auto place = std::find_if(terminals.begin(), terminals.end(),
                            [&](const TTerminalTable& terminal) { return terminal.Name == name; });
  if (place == terminals.end()) {
    TCharSet chars;
    bool single = false;
    FTerminalSource(name, chars, single);
    place = terminals.insert(terminals.end(), TTerminalTable{name, single, {}});
    for (size_t i = 0; i < 256; ++i) place->Members[i] = chars[i] ? 1 : 0;
  }
  return static_cast<int32_t>(place - terminals.begin());
}

bool TLL1Program::TBuilder::ReachesHook(const TLL1Node& node) const {
  return node.Kind == TLL1NodeKind::HookedRule || node.Kind == TLL1NodeKind::HookedTerminal ||
         (node.Kind == TLL1NodeKind::Rule && !FProgram.Rule(node.Argument).IsPure);
}

void TLL1Program::TBuilder::MarkPureRules() {
  for (bool changed = true; changed;) {
    changed = false;
    size_t node = 0;
    for (size_t i = 0; i < FProgram.FRules.size(); ++i) {
      TLL1ProgramRule& rule = FProgram.FRules[i];
      for (; node < FNodeEnds[i]; ++node) {
        if (!rule.IsPure || !ReachesHook(FProgram.FNodes[node])) continue;
        rule.IsPure = false;
        changed = true;
      }
    }
  }
  size_t node = 0;
  for (size_t i = 0; i < FProgram.FRules.size(); ++i) {
    TLL1ProgramRule& rule = FProgram.FRules[i];
    for (; node < FNodeEnds[i]; ++node) {
      FProgram.FNodes[node].IsPure = rule.IsPure;
      if (rule.IsPure && FProgram.FNodes[node].Kind == TLL1NodeKind::Rule) rule.IsRemembered = true;
    }
  }
}

// Returns the first sets by node. Those of rule references are the least sets that contain the first set of
// the rule and, if the rule can match nothing, those of the nodes after the reference. Those of optional runs
// are likewise.
std::vector<TFirstSet> TLL1Program::TBuilder::FindFirstSets() const {
  std::vector<TFirstSet> nodes;
  for (const TLL1Node& node : FProgram.FNodes) nodes.push_back(FirstSetOfStep(node));
  std::vector<TFirstSet> rules(FProgram.FRules.size());
  for (bool changed = true; changed;) {
    changed = false;
    for (size_t i = nodes.size(); i-- > 0;) {  // children before their parents
      const TLL1Node& node = FProgram.FNodes[i];
      const bool isOptional = node.Kind == TLL1NodeKind::OptionalRun;
      if (!isOptional && !BeginsAsItsRule(node)) continue;
      TFirstSet first = isOptional ? FirstSetOfStep(node) : rules[static_cast<size_t>(node.Argument)];
      if (std::exchange(first.IsNullable, false) || isOptional) first.Add(FirstSetOfList(node.Child, nodes));
      if (nodes[i].Add(first)) changed = true;
    }
    for (size_t i = 0; i < rules.size(); ++i) {
      if (rules[i].Add(FirstSetOfList(FProgram.FRules[i].Entry, nodes))) changed = true;
    }
  }
  return nodes;
}

// Returns whether the node can begin only where its rule can.
bool TLL1Program::TBuilder::BeginsAsItsRule(const TLL1Node& node) const {
  return node.Kind == TLL1NodeKind::Rule ||
         (node.Kind == TLL1NodeKind::HookedRule && FHooks.AreRestrictedToRules && node.Argument >= 0);
}

// Returns the first set of the node as far as it depends on nothing else.
TFirstSet TLL1Program::TBuilder::FirstSetOfStep(const TLL1Node& node) const {
  if (BeginsAsItsRule(node)) return {};
  switch (node.Kind) {
    case TLL1NodeKind::Literal: {
      const auto first = static_cast<uint8_t>(*FProgram.Literal(node));
      return FirstSetWhere(
          [&](unsigned next) { return next != kEnd && FoldByte(static_cast<uint8_t>(next)) == first; });
    }
    case TLL1NodeKind::WordEnd:
      return FirstSetWhere([&](unsigned next) { return next == kEnd || !WordCharacters()[next]; });
    case TLL1NodeKind::One:
    case TLL1NodeKind::Run:
    case TLL1NodeKind::OptionalRun:
      return FirstSetWhere(
          [&](unsigned next) { return next != kEnd && FProgram.Terminal(node.Argument)[next] != 0; });
    case TLL1NodeKind::HookedRule:
    case TLL1NodeKind::HookedTerminal:
    case TLL1NodeKind::UnknownRule: {
      TFirstSet first = FirstSetWhere([](unsigned) { return true; });
      first.IsNullable = true;
      return first;
    }
    case TLL1NodeKind::Rule:
    case TLL1NodeKind::Done:
      break;
  }
  return {{}, true};
}

TFirstSet TLL1Program::TBuilder::FirstSetOfList(int32_t first, std::span<const TFirstSet> nodes) const {
  TFirstSet all;
  for (int32_t i = first; i != TLL1Node::kNone; i = FProgram.Node(i).Sibling)
    all.Add(nodes[static_cast<size_t>(i)]);
  return all;
}

void TLL1Program::TBuilder::MakeChoices(const std::vector<TFirstSet>& firstSets) {
  const auto canStart = [&](size_t node, unsigned next) {
    return firstSets[node].IsNullable || firstSets[node].Set[next];
  };
  // Splits each byte class by whether the node's first set contains it, node by node.
  std::array<uint16_t, kEnd + 1>& classes = FProgram.FClasses;
  size_t count = 1;
  for (size_t i = 0; i < firstSets.size(); ++i) {
    std::vector<int> numbers(2 * count, -1);
    count = 0;
    for (unsigned next = 0; next <= kEnd; ++next) {
      int& number = numbers[2 * classes[next] + (canStart(i, next) ? 1U : 0U)];
      if (number < 0) number = static_cast<int>(count++);
      classes[next] = static_cast<uint16_t>(number);
    }
  }
  FProgram.FClassCount = count;
  FProgram.FChoices.resize(firstSets.size() * count);
  std::vector<unsigned> examples(count);
  for (unsigned next = 0; next <= kEnd; ++next) examples[classes[next]] = next;
  for (size_t i = firstSets.size(); i-- > 0;) {  // further siblings before their predecessors
    for (size_t k = 0; k < count; ++k) {
      const TLL1Choice others = FProgram.Choose(FProgram.FNodes[i].Sibling, examples[k]);
      FProgram.FChoices[i * count + k] =
          canStart(i, examples[k]) ? TLL1Choice{static_cast<int32_t>(i), others.Node} : others;
    }
  }
}

TLL1Program::TLL1Program(const TLL1Grammar& grammar, const TLL1Hooks& hooks,
                         const TTerminalSource& terminals) {
  TBuilder(*this, grammar, hooks, terminals).Build();
}

}  // namespace mig
