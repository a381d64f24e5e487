// The grammar engine: both kinds of programs compared with the plain engine.
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>

#include "MigWizard/engine/LL1Parser.h"
#include "tests/ErrorOf.h"
#include "tests/PlainEngine.h"

namespace mig {
namespace {

using TStrings = std::vector<std::string>;

struct TVisit {
  std::string Name;
  size_t Start, End;
  bool operator==(const TVisit&) const = default;
};

std::ostream& operator<<(std::ostream& out, const TVisit& visit) {
  return out << visit.Name << " " << visit.Start << ".." << visit.End;
}

enum class THook {
  Watch,       // accepts any match
  Refuse,      // refuses some matches
  Claim,       // claims a match in any case
  SkipBefore,  // skips a run of z
  SkipAfter,
  LookAhead,  // matches without moving
  Swallow,    // catches EGrammarError
  MatchY,     // does not call the inherited operation
};

using THooks = std::map<std::string, THook, std::less<>>;

// Performs the actions of a hook of that kind. `position` is that of the live state.
template <class TPosition>
bool RunHook(THook hook, std::string_view text, TPosition& position, const std::function<bool()>& inherited) {
  const TPosition start = position;
  const auto next = [&] {
    const auto at = static_cast<size_t>(position);
    return at > text.size() ? '\0' : text[at - 1];
  };
  const auto skip = [&] {
    while (next() == 'z') ++position;
    return true;
  };
  switch (hook) {
    case THook::Watch:
      break;
    case THook::Refuse:
      return inherited() && position % 5 != 0;
    case THook::Claim:
      return inherited() || skip();
    case THook::SkipBefore:
      skip();
      break;
    case THook::SkipAfter:
      return inherited() && skip();
    case THook::LookAhead: {
      const bool result = inherited();
      position = start;
      return result;
    }
    case THook::Swallow:
      try {
        return inherited();
      } catch (const EGrammarError&) {
        return position % 2 == 0;
      }
    case THook::MatchY:
      if (next() != 'y' && next() != 'Y') return false;
      ++position;
      return true;
  }
  return inherited();
}

// A client that keeps the nonterminals of the match, as form parsers keep their properties, and records
// every entry.
class TTracer : public TLL1Parser {
 public:
  // Every reference is a hook.
  explicit TTracer(const TStrings& rules, THooks hooks = {})
      : TLL1Parser(ParseStateClass<TTraceState>()), FHooks(std::move(hooks)) {
    for (const std::string& rule : rules) AddRule(rule);
  }
  void DeclareOwnHooks() {
    DeclareHooks({});
    bool follow = true;
    for (const auto& [name, hook] : FHooks) {
      DeclareHooks({name});
      follow = follow && (hook == THook::Watch || hook == THook::Refuse || hook == THook::SkipAfter ||
                          hook == THook::LookAhead);
    }
    if (follow) RestrictHooksToRules();
  }
  using TLL1Parser::DeclareWords;
  using TLL1Parser::SetMostNestedCalls;
  using TLL1Parser::SetRereadAllowance;

  std::vector<TVisit> Matched;
  TStrings Entered;

 protected:
  class TTraceState : public TParseState {
   public:
    using TParseState::TParseState;
    void Assign(const TParseState& source) override {
      TParseState::Assign(source);
      Count = static_cast<const TTraceState&>(source).Count;
      auto& matched = static_cast<TTracer&>(Owner()).Matched;
      if (matched.size() > Count) matched.resize(Count);
    }
    size_t Count = 0;
  };

  void BeforeParse() override {
    static_cast<TTraceState&>(State()).Count = 0;
    Matched.clear();
    Entered.clear();
  }
  bool ParseNonterminal(std::string_view name) override {
    const auto start = static_cast<size_t>(State().Pos);
    Entered.push_back(std::string(name) + std::to_string(start));
    const auto inherited = [&] {
      const int32_t position = State().Pos;
      const bool result = TLL1Parser::ParseNonterminal(name);
      if (!result) {
        EXPECT_EQ(State().Pos, position);
      }
      return result;
    };
    const auto hook = FHooks.find(name);
    if (hook == FHooks.end() ? !inherited() : !RunHook(hook->second, Text(), State().Pos, inherited))
      return false;
    Matched.push_back({std::string(name), start, static_cast<size_t>(State().Pos)});
    ++static_cast<TTraceState&>(State()).Count;
    return true;
  }

 private:
  THooks FHooks;
};

class TPlainTracer : public plain::TEngine {
 public:
  explicit TPlainTracer(THooks hooks) : FHooks(std::move(hooks)) {}

  std::vector<TVisit> Matched;
  TStrings Entered;

 protected:
  bool ParseNonterminal(const std::string& name) override {
    const size_t start = FPos;
    Entered.push_back(name + std::to_string(start));
    const auto inherited = [&] { return TEngine::ParseNonterminal(name); };
    const auto hook = FHooks.find(name);
    if (hook == FHooks.end() ? !inherited() : !RunHook(hook->second, FText, FPos, inherited)) return false;
    Matched.push_back({name, start, FPos});
    return true;
  }
  std::function<void()> Snapshot() override {
    return [this, count = Matched.size()] { Matched.resize(count); };
  }

 private:
  THooks FHooks;
};

// Generates grammars over few letters, so that many texts match. None is left recursive: references before
// the first character of an alternative are to later rules only. `<own>` and `<none>` have no rules.
class TRandomGrammar {
 public:
  explicit TRandomGrammar(unsigned seed) : FRandom(seed) {}

  size_t Below(size_t limit) { return FRandom() % limit; }

  TStrings Rules() {
    TStrings rules;
    const size_t count = 2 + Below(4);
    const size_t nullable = Below(2 * count);  // one at most, since inlining multiplies
    for (size_t i = 0; i < count; ++i) {
      std::string rule = Name(i) + "-";
      const size_t alternatives = 1 + Below(4);
      for (size_t k = 0; k < alternatives; ++k) rule.append(k > 0 ? "|" : "").append(Alternative(i, count));
      rules.push_back(rule + (i == nullable ? "|" : ""));
    }
    return rules;
  }

  std::string Text() {
    std::string text;
    for (size_t i = Below(24); i > 0; --i) text += "xxyYXz1"[Below(7)];
    return text;
  }

  // Returns hooks for some of the rules, and for `<own>`.
  THooks Hooks(size_t ruleCount) {
    THooks hooks;
    for (size_t i = 0; i < ruleCount; ++i) {
      if (Below(3) == 0) hooks[Name(i)] = Below(3) == 0 ? static_cast<THook>(Below(7)) : THook::Refuse;
    }
    if (Below(2) == 0) hooks["<own>"] = THook::MatchY;
    return hooks;
  }

  static std::string Name(size_t rule) { return std::string("<") + static_cast<char>('a' + rule) + ">"; }

 private:
  std::string Alternative(size_t rule, size_t count) {
    const char* const terminals[] = {"<*digit>", "<*char>", "<*digits>", "<*chars_or_digits>"};
    std::string text;
    bool reads = false;
    for (size_t i = 1 + Below(3); i > 0; --i) {
      const size_t kind = Below(8);
      if (Below(25) == 0) {
        text += Below(3) == 0 ? "<none>" : "<own>";
      } else if (kind >= 4 && (reads || rule + 1 < count)) {
        text += Name(reads ? Below(count) : rule + 1 + Below(count - rule - 1));
      } else {
        text += kind == 3 ? std::string(terminals[Below(4)]) : std::string(1, "xyz"[kind % 3]);
        reads = true;
      }
    }
    return text;
  }

  std::mt19937 FRandom;
};

// Returns the position after the match, or "-", or the message of an EGrammarError.
template <class TParser, class TPosition>
std::string Outcome(TParser& parser, const std::string& text, TPosition position) {
  const TPosition start = position;
  try {
    if (parser.Parse(text, "<a>", position)) return std::to_string(position);
    EXPECT_EQ(position, start);
    return "-";
  } catch (const EGrammarError& error) {
    EXPECT_EQ(position, start);
    return error.what();
  }
}

TEST(LL1ParserTest, BothWaysOfRunningAgreeWithThePlainEngine) {
  int compared = 0, matches = 0, errors = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    TRandomGrammar random(seed);
    const TStrings rules = random.Rules();
    const THooks hooks = random.Hooks(rules.size());
    const std::string word = seed % 2 == 0 ? "x" : "xy";
    TPlainTracer reference(hooks);
    TTracer all(rules, hooks), declared(rules, hooks);
    declared.DeclareOwnHooks();
    for (const std::string& rule : rules) reference.AddRule(rule);
    reference.Words = {word};
    all.DeclareWords({word});
    declared.DeclareWords({word});
    if (seed % 3 != 0) declared.SetRereadAllowance(0);

    for (int i = 0; i < 12; ++i) {
      const std::string text = random.Text();
      const size_t position = 1 + random.Below(text.size() + 1);
      reference.Matched.clear();
      reference.Entered.clear();
      reference.Steps = 20000;
      std::string expected;
      try {
        expected = Outcome(reference, text, position);
      } catch (const plain::EOutOfSteps&) {
        continue;
      }
      std::string description = text + " with";
      for (const std::string& rule : rules) description += " " + rule;
      for (const auto& [name, hook] : hooks)
        description += " " + name + std::to_string(static_cast<int>(hook));
      SCOPED_TRACE(description);
      ASSERT_EQ(Outcome(all, text, static_cast<int64_t>(position)), expected);
      ASSERT_EQ(Outcome(declared, text, static_cast<int64_t>(position)), expected);
      ASSERT_EQ(all.Entered, reference.Entered);
      ++compared;
      if (expected[0] == 'U') ++errors;
      if (expected[0] == 'U' || expected[0] == '-') continue;
      ++matches;
      ASSERT_EQ(all.Matched, reference.Matched);
      // Of the nonterminals that are not hooks, only the start symbol is seen.
      const TVisit start = reference.Matched.back();
      std::erase_if(reference.Matched, [&](const TVisit& visit) { return !hooks.contains(visit.Name); });
      if (!hooks.contains("<a>")) reference.Matched.push_back(start);
      ASSERT_EQ(declared.Matched, reference.Matched);
    }
    for (size_t i = 0; compared > 0 && i < rules.size(); ++i)
      ASSERT_EQ(declared.Grammar().Rules()[i].Alternatives, reference.Rules[i].second) << seed;
  }
  EXPECT_GT(compared, 30000);
  EXPECT_GT(matches, 9000);
  EXPECT_GT(errors, 500);
}

// The result is "+" or "-", and the position after the match.
TEST(LL1ParserTest, EdgesOfMatching) {
  const std::tuple<TStrings, std::string_view, int64_t, const char*> rows[] = {
      {{"<a>-ab|a"}, "ac", 1, "+2"},
      {{"<a>-end"}, "xEnDx", 2, "+5"},
      {{"<a>-end"}, "EN", 1, "-1"},
      {{"<a>-\\69nd"}, "END", 1, "-1"},  // a literal in upper case never matches
      {{"<a>-<*char>"}, "", 1, "-1"},
      {{"<a>-<*digits>"}, "12", 3, "-3"},
      {{"<a>-<*digits>2"}, "12", 1, "-1"},
      {{"<a>-<*digit>2"}, "12", 1, "+3"},
      {{"<a>-<*symbols>'"}, "a\xE4\n<'", 1, "+6"},
      {{"<a>-<*symbols>"}, std::string_view("\0a", 2), 1, "-1"},
      {{"<a>-<b>", "<b>-x|"}, "y", 1, "+1"},
      {{"<a>-"}, "x", 1, "-1"},
      {{"<a>-<b"}, "<B", 1, "+3"},  // literal angle brackets
      {{"<a>-x<"}, "x<", 1, "+3"},
      {{"<a>-<>b>"}, "<>b>", 1, "+5"},
      {{"<a>-<b<z>", "<z>-z"}, "<bz", 1, "+4"},
      {{"<a>-x<*hexs>y<<z>>", "<z>-z"}, "XaF09Y<z>", 1, "+10"},
  };
  for (const auto& [rules, text, position, expected] : rows) {
    for (const bool isDeclared : {false, true}) {
      TTracer parser(rules);
      if (isDeclared) parser.DeclareOwnHooks();
      int64_t end = position;
      const char* outcome = parser.Parse(text, "<a>", end) ? "+" : "-";
      EXPECT_EQ(outcome + std::to_string(end), expected) << rules.front() << " " << isDeclared;
    }
  }
}

TEST(LL1ParserTest, AParserCanBeUsedAgainAfterAnError) {
  const TStrings rules = {"<a>-x<*digits>|y<none>|(<a>)"};
  struct TRow {
    std::string Text;
    const char* Start;
    int64_t From;
    const char* Message;
  };
  const TRow rows[] = {
      {"((y", "<a>", 1, "Unknown nonterminal: <none>"},
      {"x", "<b>", 1, "Unknown nonterminal: <b>"},
      {"\n" + std::string(1701, '('), "<a>", 2, "Text: the nesting at line 2 is too deep."},
  };
  for (const bool isDeclared : {false, true}) {
    TTracer parser(rules, {{"<a>", THook::Watch}});
    if (isDeclared) parser.DeclareOwnHooks();
    parser.SetMostNestedCalls(1700);
    int64_t position = 0;
    for (const TRow& row : rows) {
      position = row.From;
      EXPECT_EQ(tests::ErrorOf([&] { return parser.Parse(row.Text, row.Start, position); }), row.Message);
      EXPECT_EQ(position, row.From);
    }
    EXPECT_THROW(static_cast<void>(parser.Parse("x", "<a>", position = 3)), rtl::EAssertionFailed);
    EXPECT_TRUE(parser.Parse("((x1))", "<A>", position = 1));
    EXPECT_EQ(position, 7);
  }
  TTracer unknownTerminal({"<a>-<*none>"});
  int64_t position = 1;
  EXPECT_THROW(static_cast<void>(unknownTerminal.Parse("x", "<a>", position)), rtl::EAssertionFailed);
}

// A list takes as many nested calls as it has elements.
TEST(LL1ParserTest, ListsMayBeLongForAClientThatSeesEverything) {
  TTracer parser({"<a>-<b>,<a>|<b>", "<b>-<*digits>"});
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "17,";
  int64_t position = 1;
  EXPECT_TRUE(parser.Parse(text + "17", "<a>", position));
  EXPECT_EQ(parser.Matched.size(), 40002U);
}

// Without the memo the work for some of these grows exponentially, or with the square of the length.
TEST(LL1ParserTest, NoTextDrivesTheMachineToExcess) {
  const std::tuple<TStrings, const char*, const char*, const char*, bool> rows[] = {
      {{"<a>-<b><a>y|<c><a>z|w", "<b>-x", "<c>-x"}, "x", "", "", false},  // failures doubled at each level
      {{"<a>-<b><a>y|<c><a>z|w", "<b>-x", "<c>-x"}, "x", "w", "", false},
      {{"<a>-<d>|<c>", "<d>-<b>y", "<c>-<b>z", "<b>-(<a>|w"}, "(", "w", "z", true},  // successes doubled
      {{"<a>-<b>,<a>|<b>", "<b>-<*digits>"}, "17,", "17", "", true},                 // a long list
      {{"<a>-(<a>)|<a1>", "<a1>-x|(<a>"}, "(", "", "", false},                       // deep without a hook
  };
  // An excess shows in the short texts. The long ones would take for ever then.
  for (const int levels : {20, 2000, 100000}) {
    for (const auto& [rules, part, middle, end, expected] : rows) {
      std::string text;
      for (int i = 0; i < levels; ++i) text += part;
      text += middle;
      for (int i = 0; i <= levels; ++i) text += end;
      TTracer parser(rules);
      parser.DeclareOwnHooks();
      parser.SetRereadAllowance(100);
      int64_t position = 1;
      EXPECT_EQ(parser.Parse(text, "<a>", position), expected) << rules.front();
      ASSERT_LE(parser.Work(), 10 * static_cast<int64_t>(text.size()) + 200) << rules.front() << levels;
    }
  }
}

}  // namespace
}  // namespace mig
