#include "MigWizard/engine/LL1Parser.h"

#include <algorithm>
#include <limits>

#include "MigWizard/engine/LL1Machine.h"
#include "MigWizard/engine/LL1Program.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr size_t kLongestText = static_cast<size_t>(std::numeric_limits<int32_t>::max()) - 1;

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";

TCharSet SetOf(std::string_view characters) {
  TCharSet set;
  for (const char c : characters) set.set(static_cast<unsigned char>(c));
  return set;
}

TCharSet AllButQuote() {
  TCharSet set;
  set.set();
  set.reset(0).reset('\'');
  return set;
}

struct TTerminal {
  std::string_view Name;
  TCharSet Chars;
  bool IsSingle;
};

const TTerminal* FindTerminal(std::string_view name) {
  static const TTerminal kTerminals[] = {
      {"<*char>", WordCharacters() & ~SetOf(kDigits), true},
      {"<*digit>", SetOf(kDigits), true},
      {"<*symbol>", AllButQuote(), true},
      {"<*digits>", SetOf(kDigits), false},
      {"<*hexs>", SetOf(kHexDigits), false},
      {"<*chars_or_digits>", WordCharacters(), false},
      {"<*symbols>", AllButQuote(), false},
  };
  const auto place = std::find_if(std::begin(kTerminals), std::end(kTerminals),
                                  [&](const TTerminal& terminal) { return terminal.Name == name; });
  return place == std::end(kTerminals) ? nullptr : place;
}

// Counts a value up while it lives.
class TCountGuard {
 public:
  explicit TCountGuard(int& count) : FCount(count) { ++FCount; }
  ~TCountGuard() { --FCount; }
  TCountGuard(const TCountGuard&) = delete;
  TCountGuard& operator=(const TCountGuard&) = delete;

 private:
  int& FCount;
};

}  // namespace

// The time of one Parse. Whatever way it ends, no copy of the state is left.
class TLL1Parser::TParseGuard {
 public:
  explicit TParseGuard(TLL1Parser& parser) : FParser(parser) {
    rtl::Assert(!parser.FIsParsing, "TLL1Parser.Parse: called from a hook");
    parser.FIsParsing = true;
  }
  ~TParseGuard() {
    FParser.FCopies.Clear();
    FParser.FIsParsing = false;
  }
  TParseGuard(const TParseGuard&) = delete;
  TParseGuard& operator=(const TParseGuard&) = delete;

 private:
  TLL1Parser& FParser;
};

TLL1Parser::TLL1Parser(TParseStateClass stateClass)
    : FStateClass(std::move(stateClass)),
      FState(FStateClass(*this)),
      FCopies([this] { return FStateClass(*this); }) {}

TLL1Parser::~TLL1Parser() = default;

void TLL1Parser::AddRule(std::string_view rule) {
  FGrammar.AddRule(rule);
}

void TLL1Parser::DeclareHooks(std::initializer_list<std::string_view> names) {
  rtl::Assert(!FGrammar.Prepared(), "TLL1Parser.DeclareHooks: the grammar is compiled");
  if (!FHooks) FHooks.emplace();
  FHooks->insert(FHooks->end(), names.begin(), names.end());
}

void TLL1Parser::DeclareWords(std::initializer_list<std::string_view> literals) {
  for (const std::string_view literal : literals) FGrammar.AddWord(literal);
}

void TLL1Parser::Prepare() {
  FGrammar.Prepare();
  if (!FHooks || FMachine) return;
  FProgram = std::make_unique<TLL1Program>(
      FGrammar, *FHooks,
      [this](std::string_view name, TCharSet& chars, bool& single) { GetTerminalSet(name, chars, single); });
  FMachine = std::make_unique<TLL1Machine>(*FProgram, *this, *FState, FCopies);
}

bool TLL1Parser::Parse(std::string_view text, std::string_view startSymbol, int64_t& position) {
  const TParseGuard guard(*this);
  if (text.size() > kLongestText)
    throw rtl::Exception(
        rtl::Format("A text of %d bytes is too long to be parsed; the limit is %d.",
                    {static_cast<int64_t>(text.size()), static_cast<int64_t>(kLongestText)}));
  rtl::Assert(position >= 1 && position <= static_cast<int64_t>(text.size()) + 1,
              "TLL1Parser.Parse: the position is outside of the text");
  Prepare();
  FText = text;
  FState->Pos = static_cast<int32_t>(position);
  BeforeParse();
  if (FMachine) FMachine->Start(text, FRereadAllowance);
  bool success = ParseNonterminal(startSymbol);
  AfterParse(success);
  if (success) position = FState->Pos;
  return success;
}

void TLL1Parser::GetTerminalSet(std::string_view name, TCharSet& chars, bool& single) {
  const TTerminal* terminal = FindTerminal(name);
  rtl::Assert(terminal != nullptr, "TLL1Parser.GetTerminalSet: unknown terminal");
  chars = terminal->Chars;
  single = terminal->IsSingle;
}

bool TLL1Parser::ParseNonterminal(std::string_view name) {
  const int rule = FindRule(name);
  if (rule < 0) RaiseUnknownNonterminal(name);
  if (FNestedCalls == kMostNestedCalls) RaiseTooDeep(FState->Pos);
  const TCountGuard guard(FNestedCalls);
  return FMachine ? FMachine->Run(rule) : TryAlternatives(FGrammar.Rules()[static_cast<size_t>(rule)]);
}

// A call by the machine, which knows the rule; the inherited ParseNonterminal will look for it next.
bool TLL1Parser::CallHook(int32_t rule, std::string_view name) {
  FCalledRule = rule;
  return ParseNonterminal(name);
}

int TLL1Parser::FindRule(std::string_view name) const {
  if (FCalledRule >= 0 && FGrammar.Rules()[static_cast<size_t>(FCalledRule)].Name == name) return FCalledRule;
  return FGrammar.Find(name);
}

bool TLL1Parser::TryAlternatives(const TLL1Grammar::TRule& rule) {
  for (const std::vector<TLL1Item>& items : rule.Items) {
    const int32_t copy = FCopies.Push(*FState);
    const bool matched = MatchItems(items);
    if (!matched) FState->Assign(FCopies[copy]);
    FCopies.CutTo(copy);
    if (matched) return true;
  }
  return false;
}

bool TLL1Parser::MatchItems(const std::vector<TLL1Item>& items) {
  for (const TLL1Item& item : items) {
    bool matched = false;
    switch (item.Kind) {
      case TLL1Item::TKind::Literal:
        matched = MatchLiteral(item.Text);
        break;
      case TLL1Item::TKind::WordEnd:
        matched = AtWordEnd();
        break;
      case TLL1Item::TKind::Terminal:
        matched = ParseTerminal(item.Text);
        break;
      case TLL1Item::TKind::Nonterminal:
        matched = ParseNonterminal(item.Text);
        break;
    }
    if (!matched) return false;
  }
  return true;
}

bool TLL1Parser::MatchLiteral(std::string_view literal) {
  for (const char c : literal) {
    const auto place = static_cast<size_t>(FState->Pos) - 1;
    if (place >= FText.size() || FoldByte(static_cast<uint8_t>(FText[place])) != static_cast<uint8_t>(c))
      return false;
    ++FState->Pos;
  }
  return true;
}

bool TLL1Parser::AtWordEnd() const {
  const auto place = static_cast<size_t>(FState->Pos) - 1;
  return place >= FText.size() || !WordCharacters()[static_cast<uint8_t>(FText[place])];
}

bool TLL1Parser::ParseTerminal(std::string_view name) {
  TCharSet chars;
  bool single = false;
  GetTerminalSet(name, chars, single);
  const auto start = static_cast<size_t>(FState->Pos) - 1;
  size_t place = start;
  while (place < FText.size() && chars[static_cast<uint8_t>(FText[place])] && (place == start || !single))
    ++place;
  FState->Pos = static_cast<int32_t>(place) + 1;
  return place > start;
}

void TLL1Parser::RaiseUnknownNonterminal(std::string_view name) {
  throw EGrammarError("Unknown nonterminal: " + std::string(name));
}

void TLL1Parser::RaiseTooDeep(int32_t position) const {
  const std::string_view before = FText.substr(0, static_cast<size_t>(position) - 1);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  throw ENestingTooDeep(rtl::Format("%s: the nesting at line %d is too deep.", {DescribeSubject(), line}));
}

}  // namespace mig
