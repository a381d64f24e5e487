#include "MigWizard/engine/LL1Program.h"

#include <algorithm>
#include <bitset>
#include <memory>
#include <span>
#include <utility>

namespace mig {
namespace {

// A step of a rule's tree before it is laid out. Literals are single characters here, so that alternatives
// can part within a literal.
struct TDraft {
  TLL1Item Step;
  std::vector<std::unique_ptr<TDraft>> Children;  // in trying order
  bool EndsRule = false;                          // behind the children the rule is done
};

void AddStep(TDraft*& place, TLL1Item::TKind kind, std::string_view text) {
  const bool isShared = !place->Children.empty() && place->Children.back()->Step.Kind == kind &&
                        place->Children.back()->Step.Text == text;
  if (!isShared)
    place->Children.push_back(std::make_unique<TDraft>(TDraft{{kind, std::string(text)}, {}, false}));
  place = place->Children.back().get();
}

void AddAlternative(TDraft& root, const std::vector<TLL1Item>& items) {
  TDraft* place = &root;
  for (const TLL1Item& item : items) {
    if (place->EndsRule) return;  // ordered choice never comes here
    if (item.Kind == TLL1Item::TKind::Literal) {
      for (const char& c : item.Text) AddStep(place, item.Kind, {&c, 1});
    } else {
      AddStep(place, item.Kind, item.Text);
    }
  }
  place->EndsRule = true;
}

// With what something can begin: byte values, and the end of the text.
struct TStart {
  std::bitset<TLL1Program::kEnd + 1> Set;
  bool IsNullable = false;  // it can match without reading anything

  // Whether anything was new.
  bool Unite(const TStart& other) {
    const bool isNew = (other.IsNullable && !IsNullable) || (other.Set & ~Set).any();
    IsNullable = IsNullable || other.IsNullable;
    Set |= other.Set;
    return isNew;
  }
};

}  // namespace

class TLL1Program::TBuilder {
 public:
  TBuilder(TLL1Program& program, const TLL1Grammar& grammar, const std::vector<std::string>& hooks,
           const TTerminalSource& terminals)
      : FProgram(program), FGrammar(grammar), FHooks(hooks), FTerminalSource(terminals) {}

  void Build();

 private:
  using TDrafts = std::span<const std::unique_ptr<TDraft>>;

  int32_t LayOut(TDrafts drafts, bool endsRule);
  int32_t AddNode(TLL1Node::TKind kind);
  const TDraft* LayOutStep(TLL1Node& node, const TDraft& draft);
  void LayOutReference(TLL1Node& node, const std::string& name);
  int32_t TerminalIndex(const std::string& name);
  void FindImpureRules();
  bool ReachesHook(const TLL1Node& node) const;
  std::vector<TStart> FindStarts() const;
  void MakeChoices(const std::vector<TStart>& starts);
  TStart StartOfStep(const TLL1Node& node) const;
  TStart StartOfList(int32_t first, std::span<const TStart> nodes) const;

  TLL1Node& Node(int32_t index) { return FProgram.FNodes[static_cast<size_t>(index)]; }

  TLL1Program& FProgram;
  const TLL1Grammar& FGrammar;
  const std::vector<std::string>& FHooks;
  const TTerminalSource& FTerminalSource;
  std::vector<size_t> FNodeEnds;  // by rule: where its nodes end
};

void TLL1Program::TBuilder::Build() {
  for (const TLL1Grammar::TRule& source : FGrammar.Rules()) {
    TLL1ProgramRule& rule = FProgram.FRules.emplace_back();
    rule.Name = source.Name;
    rule.IsHooked = std::find(FHooks.begin(), FHooks.end(), source.Name) != FHooks.end();
  }
  for (size_t i = 0; i < FProgram.FRules.size(); ++i) {
    TDraft root;
    for (const auto& items : FGrammar.Rules()[i].Items) AddAlternative(root, items);
    FProgram.FRules[i].Entry = LayOut(root.Children, root.EndsRule);
    FNodeEnds.push_back(FProgram.FNodes.size());
  }
  FindImpureRules();
  MakeChoices(FindStarts());
}

// Lays out the nodes of a list of siblings, and what is behind them. The first of them.
int32_t TLL1Program::TBuilder::LayOut(TDrafts drafts, bool endsRule) {
  if (drafts.empty()) return endsRule ? AddNode(TLL1Node::TKind::Done) : TLL1Node::kNone;
  const int32_t index = AddNode(TLL1Node::TKind::Done);
  TLL1Node node;
  const TDraft* last = LayOutStep(node, *drafts.front());
  node.Child = LayOut(last->Children, last->EndsRule);
  node.CannotFail = last->EndsRule;
  node.IsTail = node.Kind == TLL1Node::TKind::Rule && last->EndsRule && last->Children.empty();
  node.Sibling = LayOut(drafts.subspan(1), endsRule);
  Node(index) = node;
  return index;
}

int32_t TLL1Program::TBuilder::AddNode(TLL1Node::TKind kind) {
  FProgram.FNodes.emplace_back().Kind = kind;
  return static_cast<int32_t>(FProgram.FNodes.size()) - 1;
}

// Fills `node` from the step, and from the steps behind it that go on with the same literal. The last of
// these.
const TDraft* TLL1Program::TBuilder::LayOutStep(TLL1Node& node, const TDraft& draft) {
  switch (draft.Step.Kind) {
    case TLL1Item::TKind::Literal: {
      node.Kind = TLL1Node::TKind::Literal;
      node.Argument = static_cast<int32_t>(FProgram.FLiterals.size());
      const TDraft* last = &draft;
      FProgram.FLiterals += last->Step.Text;
      while (!last->EndsRule && last->Children.size() == 1 &&
             last->Children.front()->Step.Kind == TLL1Item::TKind::Literal) {
        last = last->Children.front().get();
        FProgram.FLiterals += last->Step.Text;
      }
      node.Length = static_cast<int32_t>(FProgram.FLiterals.size()) - node.Argument;
      return last;
    }
    case TLL1Item::TKind::WordEnd:
      node.Kind = TLL1Node::TKind::WordEnd;
      break;
    case TLL1Item::TKind::Terminal:
      node.Argument = TerminalIndex(draft.Step.Text);
      node.Kind = FProgram.FTerminals[static_cast<size_t>(node.Argument)].IsSingle ? TLL1Node::TKind::One
                                                                                   : TLL1Node::TKind::Run;
      break;
    case TLL1Item::TKind::Nonterminal:
      LayOutReference(node, draft.Step.Text);
      break;
  }
  return &draft;
}

void TLL1Program::TBuilder::LayOutReference(TLL1Node& node, const std::string& name) {
  node.Argument = FGrammar.Find(name);
  node.Name = static_cast<int32_t>(FProgram.FNames.size());
  FProgram.FNames.push_back(name);
  if (node.Argument < 0) {
    node.Kind = TLL1Node::TKind::UnknownRule;
  } else {
    node.Kind = FProgram.Rule(node.Argument).IsHooked ? TLL1Node::TKind::HookedRule : TLL1Node::TKind::Rule;
  }
}

int32_t TLL1Program::TBuilder::TerminalIndex(const std::string& name) {
  std::vector<TTerminal>& terminals = FProgram.FTerminals;
  auto place = std::find_if(terminals.begin(), terminals.end(),
                            [&](const TTerminal& terminal) { return terminal.Name == name; });
  if (place == terminals.end()) {
    TCharSet chars;
    bool single = false;
    FTerminalSource(name, chars, single);
    place = terminals.insert(terminals.end(), TTerminal{name, single, {}});
    for (size_t i = 0; i < 256; ++i) place->Members[i] = chars[i] ? 1 : 0;
  }
  return static_cast<int32_t>(place - terminals.begin());
}

bool TLL1Program::TBuilder::ReachesHook(const TLL1Node& node) const {
  return node.Kind == TLL1Node::TKind::HookedRule ||
         (node.Kind == TLL1Node::TKind::Rule && !FProgram.Rule(node.Argument).IsPure);
}

void TLL1Program::TBuilder::FindImpureRules() {
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
      if (rule.IsPure && FProgram.FNodes[node].Kind == TLL1Node::TKind::Rule) rule.IsRemembered = true;
    }
  }
}

// By node. Those of rule references are the least sets that hold what the rule can begin with and, where that
// can be nothing, what comes behind it.
std::vector<TStart> TLL1Program::TBuilder::FindStarts() const {
  std::vector<TStart> nodes;
  for (const TLL1Node& node : FProgram.FNodes) nodes.push_back(StartOfStep(node));
  std::vector<TStart> rules(FProgram.FRules.size());
  for (bool changed = true; changed;) {
    changed = false;
    for (size_t i = nodes.size(); i-- > 0;) {  // children stand behind their parents
      const TLL1Node& node = FProgram.FNodes[i];
      if (node.Kind != TLL1Node::TKind::Rule && node.Kind != TLL1Node::TKind::HookedRule) continue;
      TStart start = rules[static_cast<size_t>(node.Argument)];
      if (std::exchange(start.IsNullable, false)) start.Unite(StartOfList(node.Child, nodes));
      if (nodes[i].Unite(start)) changed = true;
    }
    for (size_t i = 0; i < rules.size(); ++i) {
      if (rules[i].Unite(StartOfList(FProgram.FRules[i].Entry, nodes))) changed = true;
    }
  }
  return nodes;
}

// With what the step can begin as far as it tells by itself.
TStart TLL1Program::TBuilder::StartOfStep(const TLL1Node& node) const {
  const auto setWhere = [](auto condition) {
    TStart start;
    for (unsigned next = 0; next <= kEnd; ++next) start.Set[next] = condition(next);
    return start;
  };
  switch (node.Kind) {
    case TLL1Node::TKind::Literal: {
      const auto first = static_cast<uint8_t>(*FProgram.Literal(node));
      return setWhere(
          [&](unsigned next) { return next != kEnd && FoldByte(static_cast<uint8_t>(next)) == first; });
    }
    case TLL1Node::TKind::WordEnd:
      return setWhere([&](unsigned next) { return next == kEnd || !WordCharacters()[next]; });
    case TLL1Node::TKind::One:
    case TLL1Node::TKind::Run:
      return setWhere(
          [&](unsigned next) { return next != kEnd && FProgram.Terminal(node.Argument)[next] != 0; });
    case TLL1Node::TKind::UnknownRule: {
      TStart start = setWhere([](unsigned) { return true; });  // so that it is reached, and noticed
      start.IsNullable = true;
      return start;
    }
    case TLL1Node::TKind::Done:
      return {{}, true};
    case TLL1Node::TKind::Rule:
    case TLL1Node::TKind::HookedRule:
      break;
  }
  return {};
}

void TLL1Program::TBuilder::MakeChoices(const std::vector<TStart>& starts) {
  const auto canStart = [&](size_t node, unsigned next) {
    return starts[node].IsNullable || starts[node].Set[next];
  };
  // Each node in turn parts the classes that it tells apart.
  std::array<uint16_t, kEnd + 1>& classes = FProgram.FClasses;
  size_t count = 1;
  for (size_t i = 0; i < starts.size(); ++i) {
    std::vector<int> numbers(2 * count, -1);
    count = 0;
    for (unsigned next = 0; next <= kEnd; ++next) {
      int& number = numbers[2 * classes[next] + (canStart(i, next) ? 1U : 0U)];
      if (number < 0) number = static_cast<int>(count++);
      classes[next] = static_cast<uint16_t>(number);
    }
  }
  FProgram.FClassCount = count;
  FProgram.FChoices.resize(starts.size() * count);
  std::vector<unsigned> examples(count);
  for (unsigned next = 0; next <= kEnd; ++next) examples[classes[next]] = next;
  for (size_t i = starts.size(); i-- > 0;) {  // siblings stand behind each other
    for (size_t k = 0; k < count; ++k) {
      const int32_t sibling = FProgram.FNodes[i].Sibling;
      FProgram.FChoices[i * count + k] = canStart(i, examples[k])
                                             ? static_cast<int32_t>(i)
                                             : FProgram.FirstThatCanStart(sibling, examples[k]);
    }
  }
}

TStart TLL1Program::TBuilder::StartOfList(int32_t first, std::span<const TStart> nodes) const {
  TStart start;
  for (int32_t i = first; i != TLL1Node::kNone; i = FProgram.Node(i).Sibling)
    start.Unite(nodes[static_cast<size_t>(i)]);
  return start;
}

TLL1Program::TLL1Program(const TLL1Grammar& grammar, const std::vector<std::string>& hooks,
                         const TTerminalSource& terminals) {
  TBuilder(*this, grammar, hooks, terminals).Build();
}

}  // namespace mig
