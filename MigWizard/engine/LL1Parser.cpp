#include "MigWizard/engine/LL1Parser.h"

#include <algorithm>
#include <limits>

#include "MigWizard/engine/CallStack.h"
#include "MigWizard/engine/LL1Machine.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr size_t kLongestText = static_cast<size_t>(std::numeric_limits<int32_t>::max()) - 1;

// Half a megabyte of stack, with hooks as those of form parsers.
constexpr int kNestedCallsPerStack = 1000;

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

struct TBuiltInTerminal {
  std::string_view Name;
  TCharSet Chars;
  bool IsSingle;
};

const TBuiltInTerminal* FindTerminal(std::string_view name) {
  static const TBuiltInTerminal kTerminals[] = {
      {"<*char>", WordCharacters() & ~SetOf(kDigits), true},
      {"<*digit>", SetOf(kDigits), true},
      {"<*symbol>", AllButQuote(), true},
      {"<*digits>", SetOf(kDigits), false},
      {"<*hexs>", SetOf(kHexDigits), false},
      {"<*chars_or_digits>", WordCharacters(), false},
      {"<*symbols>", AllButQuote(), false},
  };
  const auto place = std::find_if(std::begin(kTerminals), std::end(kTerminals),
                                  [&](const TBuiltInTerminal& terminal) { return terminal.Name == name; });
  return place == std::end(kTerminals) ? nullptr : place;
}

// Increments a value for its lifetime.
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

// The compiled grammar and the machine that runs it, with the parser as its client.
class TLL1Parser::TEngine final : private TLL1Client {
 public:
  explicit TEngine(TLL1Parser& parser)
      : FParser(parser),
        FProgram(parser.FGrammar, *parser.FHooks,
                 [&parser](std::string_view name, TCharSet& chars, bool& single) {
                   parser.GetTerminalSet(name, chars, single);
                 }),
        FMachine(FProgram, *this, *parser.FState, parser.FCopies) {}

  TLL1Machine& Machine() { return FMachine; }

 private:
  // The inherited ParseNonterminal looks for the rule next, by its name.
  bool CallNonterminal(int32_t rule, std::string_view name) override {
    FParser.FCalledRule = rule;
    return FParser.ParseNonterminal(name);
  }
  bool CallTerminal(std::string_view name) override { return FParser.ParseTerminal(name); }
  void RaiseTooDeep(int32_t position) override { FParser.RaiseTooDeep(position); }

  TLL1Parser& FParser;
  TLL1Program FProgram;
  TLL1Machine FMachine;
};

// The scope of one Parse. However it ends, no copy of the state is left.
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
      FHooks(std::make_unique<TLL1Hooks>()),
      FState(FStateClass(*this)),
      FCopies([this] { return FStateClass(*this); }) {}

TLL1Parser::~TLL1Parser() = default;

void TLL1Parser::AddRule(std::string_view rule) {
  FGrammar.AddRule(rule);
}

void TLL1Parser::DeclareHooks(std::initializer_list<std::string_view> names) {
  rtl::Assert(!FGrammar.Prepared(), "TLL1Parser.DeclareHooks: the grammar is compiled");
  FHooks->IsEverything = false;
  FHooks->Names.insert(FHooks->Names.end(), names.begin(), names.end());
}

void TLL1Parser::RestrictHooksToRules() {
  rtl::Assert(!FGrammar.Prepared(), "TLL1Parser.RestrictHooksToRules: the grammar is compiled");
  FHooks->AreRestrictedToRules = true;
}

void TLL1Parser::DeclareWords(std::initializer_list<std::string_view> literals) {
  for (const std::string_view literal : literals) FGrammar.AddWord(literal);
}

void TLL1Parser::Prepare() {
  FGrammar.Prepare();
  if (!FEngine) FEngine = std::make_unique<TEngine>(*this);
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
  FEngine->Machine().Start(text, FRereadAllowance);
  bool success = ParseNonterminal(startSymbol);
  AfterParse(success);
  if (success) position = FState->Pos;
  return success;
}

int64_t TLL1Parser::Work() const {
  return FEngine ? FEngine->Machine().Work() : 0;
}

void TLL1Parser::GetTerminalSet(std::string_view name, TCharSet& chars, bool& single) {
  const TBuiltInTerminal* terminal = FindTerminal(name);
  rtl::Assert(terminal != nullptr, "TLL1Parser.GetTerminalSet: unknown terminal");
  chars = terminal->Chars;
  single = terminal->IsSingle;
}

bool TLL1Parser::ParseNonterminal(std::string_view name) {
  const int rule = FindRule(name);
  if (rule < 0) RaiseUnknownNonterminal(name);
  if (FNestedCalls == FMostNestedCalls) RaiseTooDeep(FState->Pos);
  const TCountGuard guard(FNestedCalls);
  return FNestedCalls % kNestedCallsPerStack == 0 ? RunOnNewStack(rule) : FEngine->Machine().Run(rule);
}

int TLL1Parser::FindRule(std::string_view name) const {
  if (FCalledRule >= 0 && FGrammar.Rules()[static_cast<size_t>(FCalledRule)].Name == name) return FCalledRule;
  return FGrammar.Find(name);
}

bool TLL1Parser::RunOnNewStack(int32_t rule) {
  bool result = false;
  if (!CallOnNewStack([&] { result = FEngine->Machine().Run(rule); })) RaiseTooDeep(FState->Pos);
  return result;
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

void TLL1Parser::RaiseTooDeep(int32_t position) const {
  const std::string_view before = FText.substr(0, static_cast<size_t>(position) - 1);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  throw ENestingTooDeep(rtl::Format("%s: the nesting at line %d is too deep.", {DescribeSubject(), line}));
}

}  // namespace mig
