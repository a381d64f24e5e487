// A parser for grammars that are given at run time: ordered choice with full backtracking over the characters
// of a text. The rule language is that of MigWizard/engine/LL1Grammar.h. A subclass adds the actions:
//
//   class TNumberList : public TLL1Parser {
//    public:
//     TNumberList() : TLL1Parser(ParseStateClass<TState>()) {
//       AddRule("<list>-<number>,<list>|<number>");
//       AddRule("<number>-<*digits>");
//       DeclareHooks({"<number>"});
//     }
//     std::vector<std::string> Numbers;
//
//    protected:
//     struct TState : TParseState {
//       using TParseState::TParseState;
//       void Assign(const TParseState& source) override {
//         TParseState::Assign(source);
//         Count = static_cast<const TState&>(source).Count;
//         auto& numbers = static_cast<TNumberList&>(Owner()).Numbers;
//         if (numbers.size() > Count) numbers.resize(Count);  // undone with its alternative
//       }
//       size_t Count = 0;
//     };
//
//     void BeforeParse() override {
//       Numbers.clear();
//       static_cast<TState&>(State()).Count = 0;
//     }
//     bool ParseNonterminal(std::string_view name) override {
//       const auto start = static_cast<size_t>(State().Pos) - 1;
//       if (!TLL1Parser::ParseNonterminal(name)) return false;
//       if (name != "<number>") return true;
//       Numbers.emplace_back(Text().substr(start, static_cast<size_t>(State().Pos) - 1 - start));
//       ++static_cast<TState&>(State()).Count;
//       return true;
//     }
//   };
//
//   TNumberList list;
//   int64_t position = 1;
//   const bool matches = list.Parse("17,4;", "<list>", position);  // Numbers is {"17", "4"}, position is 5
//
// The first alternative that matches wins. A nonterminal that has matched is never entered again for a later
// alternative: when what follows it fails, the state is restored and the next alternative of the enclosing
// rule is tried. Literals ignore the case of the text, terminals see it.
//
// Without DeclareHooks every nonterminal of every alternative that is tried goes through ParseNonterminal,
// and every terminal through ParseTerminal. A client that declares the nonterminals that it hooks is called
// for these alone, and less often, because nothing is read again where that can be avoided. The match and the
// state are the same, provided that a hook depends on nothing but the text and the state.
//
// A parser serves one parse at a time. std::bad_alloc passes through every operation, and the parser can be
// used again after it.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "MigWizard/engine/LL1Grammar.h"
#include "MigWizard/engine/LL1State.h"

namespace mig {

// More hooks are open, one inside the other, than there is room for. The message names the rule that was
// being parsed, and the line.
class ENestingTooDeep : public rtl::Exception {
  using rtl::Exception::Exception;
};

struct TLL1Hooks;

class TLL1Parser {
 public:
  // Makes the live state, with this parser as its owner.
  explicit TLL1Parser(TParseStateClass stateClass);
  virtual ~TLL1Parser();
  TLL1Parser(const TLL1Parser&) = delete;
  TLL1Parser& operator=(const TLL1Parser&) = delete;

  // Adds a rule string; see TLL1Grammar::AddRule. Raises EAssertionFailed after the first Parse.
  void AddRule(std::string_view rule);

  // Parses `text` from `position` with the nonterminal `startSymbol`. `position` is counted from 1, and may
  // be one past the last character. Returns True on a match; `position` is then that of the first character
  // after it, which need not be the end of the text. Otherwise returns False and leaves `position` unchanged.
  // `text` is not copied, so it must not change before the next Parse or as long as results that view it are
  // in use.
  //
  // Raises EGrammarError when a nonterminal without a rule is reached, ENestingTooDeep, and rtl::Exception
  // for a text of more than 2^31 - 2 bytes. After an exception `position` is unchanged, AfterParse has not
  // run, the state stays where it was, and the parser can be used again.
  [[nodiscard]] bool Parse(std::string_view text, std::string_view startSymbol, int64_t& position);

  // Returns how much the last Parse did: rules tried, plus bytes read by runs of characters. For one grammar
  // the time of a parse is in proportion to it, apart from that of hooks. Returns 0 before the first Parse.
  int64_t Work() const;

  // Compiled by the first Parse.
  const TLL1Grammar& Grammar() const { return FGrammar; }

 protected:
  // Gives the characters of the terminal `name` (with brackets and star), and whether it matches one of them
  // or the longest run of at least one. The end of the text is no character. An override answers for its own
  // names and passes on the others; for an unknown name this raises EAssertionFailed. With declared hooks it
  // is called once for each name, at the first Parse.
  virtual void GetTerminalSet(std::string_view name, TCharSet& chars, bool& single);
  // Parses the nonterminal `name` from the live state's position. Returns True with the position after the
  // match, or False with the state as on entry. An override does its entry work, calls this, and does its
  // exit work.
  virtual bool ParseNonterminal(std::string_view name);
  // The same for the terminal `name`. Not called if hooks are declared.
  virtual bool ParseTerminal(std::string_view name);
  // Called when the text and the start position are set, before the first match.
  virtual void BeforeParse() {}
  // Called with the outcome, which it may change.
  virtual void AfterParse(bool& success) { static_cast<void>(success); }
  // Returns the subject of the parse, as the beginning of a message.
  virtual std::string DescribeSubject() const { return "Text"; }

  // Adds to the nonterminals that go through ParseNonterminal, with their brackets and in lower case. From
  // the first call on no others do, apart from the start symbol. Raises EAssertionFailed after the first
  // Parse.
  void DeclareHooks(std::initializer_list<std::string_view> names);
  // Promises that a declared hook matches only where its rule matches. It is then called only where its rule
  // can begin. Raises EAssertionFailed after the first Parse.
  void RestrictHooksToRules();
  // Declares literals to be words; see TLL1Grammar::AddWord. Raises EAssertionFailed after the first Parse.
  void DeclareWords(std::initializer_list<std::string_view> literals);
  // Sets how much work a parse may waste before its results are remembered (65,536 initially; see Work).
  // The outcome does not depend on it. Has no effect unless hooks are declared.
  void SetRereadAllowance(int64_t work) { FRereadAllowance = work; }

  // Sets how many calls of the inherited ParseNonterminal may be open, one inside the other (a million
  // initially, which take about half a gigabyte). Deep nesting continues on further stacks
  // (MigWizard/engine/CallStack.h), so a hook may run on another thread than Parse.
  void SetMostNestedCalls(int count) { FMostNestedCalls = count; }

  // The live state: one object for the parser's whole life.
  TParseState& State() const { return *FState; }
  // The text of the last Parse.
  std::string_view Text() const { return FText; }

 private:
  class TEngine;
  class TParseGuard;

  void Prepare();
  int FindRule(std::string_view name) const;
  bool RunOnNewStack(int32_t rule);
  [[noreturn]] void RaiseTooDeep(int32_t position) const;

  TParseStateClass FStateClass;
  TLL1Grammar FGrammar;
  std::unique_ptr<TLL1Hooks> FHooks;
  int64_t FRereadAllowance = int64_t{1} << 16;
  std::string_view FText;
  bool FIsParsing = false;
  int FNestedCalls = 0;
  int FMostNestedCalls = 1000000;
  int32_t FCalledRule = -1;  // the rule of the hook that was called last
  std::unique_ptr<TParseState> FState;
  TStateStack FCopies;
  std::unique_ptr<TEngine> FEngine;  // made by the first Parse
};

}  // namespace mig
