#include "MigWizard/engine/LL1Program.h"

#include <algorithm>
#include <bitset>
#include <memory>
#include <span>
#include <utility>

namespace mig {
namespace {

// A step of a rule's tree before its nodes are numbered. Literals are single characters here, so that
// alternatives can diverge within a literal.
struct TTrieNode {
  TLL1Step Step;
  std::vector<std::unique_ptr<TTrieNode>> Children;  // in trying order
  bool EndsRule = false;                             // after the children have been tried, the rule is done
};

// Moves `place` to its child for that step. Only the last child is shared, because alternatives between two
// equal beginnings must be tried between them.
void AddStep(TTrieNode*& place, TLL1StepKind kind, std::string_view text, bool mayShare) {
  const bool isShared = mayShare && !place->Children.empty() && place->Children.back()->Step.Kind == kind &&
                        place->Children.back()->Step.Text == text;
  if (!isShared)
    place->Children.push_back(std::make_unique<TTrieNode>(TTrieNode{{kind, std::string(text)}, {}, false}));
  place = place->Children.back().get();
}

void AddAlternative(TTrieNode& root, const std::vector<TLL1Step>& steps, bool mayShare) {
  TTrieNode* place = &root;
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
  using TTrieNodes = std::span<const std::unique_ptr<TTrieNode>>;

  int32_t AddNodes(TTrieNodes list, bool endsRule);
  int32_t AddNode(TLL1NodeKind kind);
  const TTrieNode* FillNode(TLL1Node& node, const TTrieNode& source);
  void FillLiteral(TLL1Node& node, const TTrieNode*& last);
  void FillNonterminal(TLL1Node& node, const std::string& name);
  void FillTerminal(TLL1Node& node, const std::string& name);
  int32_t NameIndex(const std::string& name);
  int32_t TerminalIndex(const std::string& name);
  void MarkPureRules();
  bool ReachesHook(const TLL1Node& node) const;
  std::vector<TFirstSet> FindFirstSets() const;
  TFirstSet FirstSetOfStep(const TLL1Node& node) const;
  TFirstSet FirstSetOfList(int32_t first, std::span<const TFirstSet> nodes) const;
  void MakeChoices(const std::vector<TFirstSet>& firstSets);

  TLL1Node& Node(int32_t index) { return FProgram.FNodes[static_cast<size_t>(index)]; }

  TLL1Program& FProgram;
  const TLL1Grammar& FGrammar;
  const TLL1Hooks& FHooks;
  const TTerminalSource& FTerminalSource;
  std::vector<size_t> FNodeEnds;  // by rule: the index after its last node
};

void TLL1Program::TBuilder::Build() {
  FProgram.FRules.resize(FGrammar.Rules().size());
  for (size_t i = 0; i < FProgram.FRules.size(); ++i) {
    TTrieNode root;
    for (const auto& steps : FGrammar.Rules()[i].Steps) AddAlternative(root, steps, !FHooks.IsEverything);
    FProgram.FRules[i].Entry = AddNodes(root.Children, root.EndsRule);
    FNodeEnds.push_back(FProgram.FNodes.size());
  }
  MarkPureRules();
  MakeChoices(FindFirstSets());
}

// Adds the nodes of a list of siblings and of all that follows them. Returns the first of the siblings. Nodes
// come before their children and their further siblings.
int32_t TLL1Program::TBuilder::AddNodes(TTrieNodes list, bool endsRule) {
  if (list.empty()) return endsRule ? AddNode(TLL1NodeKind::Done) : TLL1Node::kNone;
  const int32_t index = AddNode(TLL1NodeKind::Done);
  TLL1Node node;
  const TTrieNode* last = FillNode(node, *list.front());
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
const TTrieNode* TLL1Program::TBuilder::FillNode(TLL1Node& node, const TTrieNode& source) {
  const TTrieNode* last = &source;
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
    case TLL1StepKind::Nonterminal:
      FillNonterminal(node, source.Step.Text);
      break;
  }
  return last;
}

void TLL1Program::TBuilder::FillLiteral(TLL1Node& node, const TTrieNode*& last) {
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
  const std::vector<std::string>& names = FHooks.Names;
  node.Argument = FGrammar.Find(name);
  node.Name = NameIndex(name);
  if (FHooks.IsEverything || std::find(names.begin(), names.end(), name) != names.end()) {
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
// the rule and, if the rule can match nothing, those of the nodes after the reference.
std::vector<TFirstSet> TLL1Program::TBuilder::FindFirstSets() const {
  std::vector<TFirstSet> nodes;
  for (const TLL1Node& node : FProgram.FNodes) nodes.push_back(FirstSetOfStep(node));
  std::vector<TFirstSet> rules(FProgram.FRules.size());
  for (bool changed = true; changed;) {
    changed = false;
    for (size_t i = nodes.size(); i-- > 0;) {  // children before their parents
      const TLL1Node& node = FProgram.FNodes[i];
      if (node.Kind != TLL1NodeKind::Rule) continue;
      TFirstSet first = rules[static_cast<size_t>(node.Argument)];
      if (std::exchange(first.IsNullable, false)) first.Add(FirstSetOfList(node.Child, nodes));
      if (nodes[i].Add(first)) changed = true;
    }
    for (size_t i = 0; i < rules.size(); ++i) {
      if (rules[i].Add(FirstSetOfList(FProgram.FRules[i].Entry, nodes))) changed = true;
    }
  }
  return nodes;
}

// Returns the first set of the node as far as it depends on nothing else.
TFirstSet TLL1Program::TBuilder::FirstSetOfStep(const TLL1Node& node) const {
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
      return FirstSetWhere(
          [&](unsigned next) { return next != kEnd && FProgram.Terminal(node.Argument)[next] != 0; });
    case TLL1NodeKind::HookedRule:
    case TLL1NodeKind::HookedTerminal:
    case TLL1NodeKind::UnknownRule: {
      TFirstSet first = FirstSetWhere([](unsigned) { return true; });
      first.IsNullable = true;
      return first;
    }
    case TLL1NodeKind::Done:
      return {{}, true};
    case TLL1NodeKind::Rule:
      break;
  }
  return {};
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
      const int32_t sibling = FProgram.FNodes[i].Sibling;
      FProgram.FChoices[i * count + k] = canStart(i, examples[k])
                                             ? static_cast<int32_t>(i)
                                             : FProgram.FirstThatCanStart(sibling, examples[k]);
    }
  }
}

TLL1Program::TLL1Program(const TLL1Grammar& grammar, const TLL1Hooks& hooks,
                         const TTerminalSource& terminals) {
  TBuilder(*this, grammar, hooks, terminals).Build();
}

}  // namespace mig
