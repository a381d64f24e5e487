// The grammar engine: its rule language and compilation, and both ways of running against the plain engine.
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "MigWizard/engine/LL1Memo.h"
#include "MigWizard/engine/LL1Parser.h"
#include "tests/ErrorOf.h"
#include "tests/PlainEngine.h"

namespace mig {
namespace {

using TStrings = std::vector<std::string>;

std::string Join(const TStrings& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(text.empty() ? "" : " ~ ").append(line).append(".");
  return text;
}

TEST(LL1GrammarTest, RuleStringsAreSplitIntoAlternatives) {
  // The alternatives of the first rule, a full stop behind each; "!" for a rule that is refused.
  const std::pair<TStrings, const char*> rows[] = {
      {{"<a>-x"}, "x."},
      {{"<A>-Foo|bAR"}, "foo. ~ bar."},
      {{"<a>-x", "<A>-y"}, "x. ~ y."},
      {{"<a>-"}, ""},
      {{"<a>"}, "!"},
      {{"<a"}, "!"},
      {{"a>"}, ""},
      {{"<a>-x\\"}, "!"},
      {{"<a>-x|y\\"}, "!x."},
      {{"<a>-x|"}, "x. ~ ."},
      {{"<a>-|x"}, ". ~ x."},
      {{"<a>-x||y"}, "x. ~ . ~ y."},
      {{"<a>- x |"}, " x . ~ ."},
      {{"<a>-x\\|\\\\\\60y\\062"}, "x|\\<y>."},
      {{"<a>-\\65\\321b"}, "AAb."},
      {{"<a>>x"}, "x."},
  };
  for (const auto& [rules, expected] : rows) {
    TLL1Grammar grammar;
    std::string outcome;
    try {
      for (const std::string& rule : rules) grammar.AddRule(rule);
    } catch (const EGrammarError& error) {
      EXPECT_STREQ(error.what(), "Cannot add rule. Invalid rule format.");
      outcome = "!";
    }
    for (const auto& rule : grammar.Rules()) outcome += Join(rule.Alternatives);
    EXPECT_EQ(outcome, expected) << rules.front();
  }
  TLL1Grammar grammar;
  grammar.AddRule("");
  grammar.AddRule("<");
  EXPECT_TRUE(grammar.Rules().empty());
  grammar.Prepare();
  EXPECT_THROW(grammar.AddRule("<a>-x"), rtl::EAssertionFailed);
}

TEST(LL1GrammarTest, RulesWithAnEmptyAlternativeAreInlined) {
  const std::tuple<TStrings, const char*, const char*> rows[] = {
      {{"<s>-a|", "<t>-x<s>y<s>"}, "<t>", "xya. ~ xy. ~ xaya. ~ xay."},
      {{"<l>-<n>|<n>,<l>|", "<m>-(<l>)", "<n>-x"}, "<m>", "(<n>,<l>). ~ (<n>). ~ ()."},
      {{"<l>-<n>|<n>,<l>|", "<m>-(<l>)", "<n>-x"}, "<l>", "<n>,<n>,<l>. ~ <n>,<n>. ~ <n>,. ~ <n>."},
      {{"<a>-<b>", "<b>-x|"}, "<a>", "x. ~ ."},  // gained too late to be inlined
      {{"<a>-<b>|<*digit>|<*char>x|y<|\\62e|\\62."}, "<a>", "y<. ~ >e. ~ >.. ~ <*digit>. ~ <*char>x. ~ <b>."},
  };
  for (const auto& [rules, name, expected] : rows) {
    TLL1Grammar grammar;
    for (const std::string& rule : rules) grammar.AddRule(rule);
    grammar.Prepare();
    EXPECT_EQ(Join(grammar.Rules()[static_cast<size_t>(grammar.Find(name))].Alternatives), expected)
        << rules.front();
  }
}

struct TVisit {
  std::string Name;
  size_t Start, End;
  bool operator==(const TVisit&) const = default;
};

using TRefusal = std::function<bool(const TVisit&)>;

std::ostream& operator<<(std::ostream& out, const TVisit& visit) {
  return out << visit.Name << " " << visit.Start << ".." << visit.End;
}

// A client that keeps the nonterminals that are part of the match, as form parsers keep their properties, and
// notes every entry.
class TTracer : public TLL1Parser {
 public:
  // Run to the letter.
  explicit TTracer(const TStrings& rules) : TLL1Parser(ParseStateClass<TTraceState>()) {
    for (const std::string& rule : rules) AddRule(rule);
  }
  // Run by the machine.
  TTracer(const TStrings& rules, const TStrings& hooks) : TTracer(rules) {
    DeclareHooks({});
    for (const std::string& hook : hooks) DeclareHooks({hook});
  }
  using TLL1Parser::DeclareWords;
  using TLL1Parser::SetRereadAllowance;

  std::vector<TVisit> Matched;
  TStrings Entered;
  TRefusal Refuse;  // of a match that the grammar would take

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
    if (!TLL1Parser::ParseNonterminal(name)) {
      EXPECT_EQ(static_cast<size_t>(State().Pos), start);
      return false;
    }
    const TVisit visit = {std::string(name), start, static_cast<size_t>(State().Pos)};
    if (Refuse && Refuse(visit)) return false;
    Matched.push_back(visit);
    ++static_cast<TTraceState&>(State()).Count;
    return true;
  }
};

class TPlainTracer : public plain::TEngine {
 public:
  std::vector<TVisit> Matched;
  TStrings Entered;
  TRefusal Refuse;

 protected:
  bool ParseNonterminal(const std::string& name) override {
    const size_t start = FPos;
    Entered.push_back(name + std::to_string(start));
    if (!TEngine::ParseNonterminal(name) || Refuse({name, start, FPos})) return false;
    Matched.push_back({name, start, FPos});
    return true;
  }
  std::function<void()> Snapshot() override {
    return [this, count = Matched.size()] { Matched.resize(count); };
  }
};

// Grammars over few letters, so that much matches. None is left recursive: what stands before the first
// character of an alternative refers to later rules only.
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

  static std::string Name(size_t rule) { return std::string("<") + static_cast<char>('a' + rule) + ">"; }

 private:
  std::string Alternative(size_t rule, size_t count) {
    const char* const terminals[] = {"<*digit>", "<*char>", "<*digits>", "<*chars_or_digits>"};
    std::string text;
    bool reads = false;
    for (size_t i = 1 + Below(3); i > 0; --i) {
      const size_t kind = Below(8);
      if (kind >= 4 && (reads || rule + 1 < count)) {
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

TEST(LL1ParserTest, BothWaysOfRunningAgreeWithThePlainEngine) {
  int compared = 0, matches = 0;
  for (unsigned seed = 0; seed < 3000; ++seed) {
    TRandomGrammar random(seed);
    const TStrings rules = random.Rules();
    TStrings hooks;
    for (size_t i = 0; i < rules.size(); ++i)
      if (random.Below(3) == 0) hooks.push_back(TRandomGrammar::Name(i));
    const std::string word = seed % 2 == 0 ? "x" : "xy";
    TPlainTracer reference;
    TTracer letter(rules), machine(rules, hooks);
    for (const std::string& rule : rules) reference.AddRule(rule);
    reference.Words = {word};
    const auto isHook = [&](const TVisit& visit) {
      return std::find(hooks.begin(), hooks.end(), visit.Name) != hooks.end();
    };
    reference.Refuse = letter.Refuse =
        machine.Refuse = [&](const TVisit& visit) { return visit.End % 5 == seed % 7 && isHook(visit); };
    letter.DeclareWords({word});
    machine.DeclareWords({word});
    if (seed % 3 != 0) machine.SetRereadAllowance(0);

    for (int i = 0; i < 12; ++i) {
      const std::string text = random.Text();
      size_t position = 1 + random.Below(text.size() + 1);
      int64_t letterPosition = static_cast<int64_t>(position), machinePosition = letterPosition;
      reference.Matched.clear();
      reference.Entered.clear();
      reference.Steps = 20000;
      bool expected = false;
      try {
        expected = reference.Parse(text, "<a>", position);
      } catch (const plain::EOutOfSteps&) {
        continue;
      }
      std::string description = text + " with";
      for (const std::string& rule : rules) description += " " + rule;
      SCOPED_TRACE(description);
      ASSERT_EQ(letter.Parse(text, "<a>", letterPosition), expected);
      ASSERT_EQ(machine.Parse(text, "<a>", machinePosition), expected);
      ASSERT_EQ(letterPosition, static_cast<int64_t>(position));
      ASSERT_EQ(machinePosition, static_cast<int64_t>(position));
      ASSERT_EQ(letter.Entered, reference.Entered);
      ASSERT_EQ(letter.Matched, reference.Matched);
      ++compared;
      if (!expected) continue;
      ++matches;
      // Of the others the machine calls the start symbol alone.
      const TVisit start = reference.Matched.back();
      std::erase_if(reference.Matched, [&](const TVisit& visit) { return !isHook(visit); });
      if (reference.Matched.empty() || !(reference.Matched.back() == start))
        reference.Matched.push_back(start);
      ASSERT_EQ(machine.Matched, reference.Matched);
    }
    for (size_t i = 0; compared > 0 && i < rules.size(); ++i)
      ASSERT_EQ(machine.Grammar().Rules()[i].Alternatives, reference.Rules[i].second) << seed;
  }
  EXPECT_GT(compared, 30000);
  EXPECT_GT(matches, 10000);
}

// The outcome is "+" or "-", and the position behind the match.
TEST(LL1ParserTest, EdgesOfMatching) {
  const std::tuple<TStrings, std::string_view, int64_t, const char*> rows[] = {
      {{"<a>-ab|a"}, "ac", 1, "+2"},
      {{"<a>-end"}, "xEnDx", 2, "+5"},
      {{"<a>-end"}, "EN", 1, "-1"},
      {{"<a>-\\69nd"}, "END", 1, "-1"},  // a literal in upper case equals nothing
      {{"<a>-<*char>"}, "", 1, "-1"},
      {{"<a>-<*digits>"}, "12", 3, "-3"},
      {{"<a>-<*digits>2"}, "12", 1, "-1"},
      {{"<a>-<*digit>2"}, "12", 1, "+3"},
      {{"<a>-<*symbols>'"}, "a\xE4\n<'", 1, "+6"},
      {{"<a>-<*symbols>"}, std::string_view("\0a", 2), 1, "-1"},
      {{"<a>-<b>", "<b>-x|"}, "y", 1, "+1"},
      {{"<a>-"}, "x", 1, "-1"},
      {{"<a>-<b"}, "<B", 1, "+3"},  // angle brackets that are none of a symbol
      {{"<a>-x<"}, "x<", 1, "+3"},
      {{"<a>-<>b>"}, "<>b>", 1, "+5"},
      {{"<a>-<b<z>", "<z>-z"}, "<bz", 1, "+4"},
      {{"<a>-x<*hexs>y<<z>>", "<z>-z"}, "XaF09Y<z>", 1, "+10"},
  };
  for (const auto& [rules, text, position, expected] : rows) {
    for (const bool byMachine : {false, true}) {
      TTracer letter(rules), machine(rules, {});
      int64_t end = position;
      const char* outcome = (byMachine ? machine : letter).Parse(text, "<a>", end) ? "+" : "-";
      EXPECT_EQ(outcome + std::to_string(end), expected) << rules.front() << " " << byMachine;
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
      {"\n" + std::string(100000, '('), "<a>", 2, "Text: the nesting at line 2 is too deep."},
  };
  for (const bool byMachine : {false, true}) {
    TTracer letter(rules), machine(rules, {"<a>"});
    TTracer& parser = byMachine ? machine : letter;
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

TEST(LL1MemoTest, RecallsWhatWasStoredOrNothing) {
  const auto result = [](int rule, int position) {
    return position % 7 == 0 ? TLL1Memo::kFailed : position + rule;
  };
  TLL1Memo memo;
  for (int epoch = 0; epoch < 2; ++epoch) {
    int recalled = 0;
    EXPECT_EQ(memo.Find(0, 1), TLL1Memo::kUnknown);
    for (int i = 0; i < 1000000; ++i) memo.Store(i % 9, i / 9, result(i % 9, i / 9));
    for (int i = 0; i < 1000000; ++i) {
      ASSERT_EQ(memo.Find(9 + i % 9, i / 9), TLL1Memo::kUnknown);
      const int found = memo.Find(i % 9, i / 9);
      recalled += found == TLL1Memo::kUnknown ? 0 : 1;
      if (found != TLL1Memo::kUnknown) {
        ASSERT_EQ(found, result(i % 9, i / 9));
      }
    }
    EXPECT_GT(recalled, 700000);
    memo.Clear();
  }
}

// The plain engine would try each of these for ages.
TEST(LL1ParserTest, TheMachineIsNotDrivenToExcessByTheText) {
  const std::tuple<TStrings, std::string, std::string, bool> rows[] = {
      {{"<a>-<b><a>y|<c><a>z|w", "<b>-x", "<c>-x"}, "x", "", false},  // doubles with each level
      {{"<a>-<b><a>y|<c><a>z|w", "<b>-x", "<c>-x"}, "x", "w", false},
      {{"<a>-<b>,<a>|<b>", "<b>-<*digits>"}, "17,", "17", true},  // a long list
      {{"<a>-(<a>)|<a1>", "<a1>-x|(<a>"}, "(", "", false},        // deep without a hook
  };
  for (const auto& [rules, part, last, expected] : rows) {
    std::string text;
    for (int i = 0; i < 100000; ++i) text += part;
    TTracer machine(rules, {});
    int64_t position = 1;
    EXPECT_EQ(machine.Parse(text + last, "<a>", position), expected) << rules.front();
  }
}

}  // namespace
}  // namespace mig
