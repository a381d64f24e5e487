// The rule language of the grammar engine, its compilation, and the memo.
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "MigWizard/engine/LL1Grammar.h"
#include "MigWizard/engine/LL1Memo.h"

namespace mig {
namespace {

using TStrings = std::vector<std::string>;

std::string Join(const TStrings& lines) {
  std::string text;
  for (const std::string& line : lines) text.append(text.empty() ? "" : " ~ ").append(line).append(".");
  return text;
}

TEST(LL1GrammarTest, RuleStringsAreSplitIntoAlternatives) {
  // The alternatives of the first rule, each followed by a full stop; "!" for a rule that is refused.
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
      {{"<a>-<b>", "<b>-x|"}, "<a>", "x. ~ ."},  // gains its empty alternative too late to be inlined
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

}  // namespace
}  // namespace mig
