// A parser for grammars that are given at run time: ordered choice with full backtracking over the characters
// of a text. The rule language is that of MigWizard/LL1Grammar.h. What a parse means is added by a subclass.
//
//   class TListParser : public mig::TLL1Parser {
//    public:
//     TListParser() : TLL1Parser(mig::ParseStateClass<TListState>()) {
//       AddRule("<list>-<word>|<word>,<list>");
//       AddRule("<word>-<*chars_or_digits>");
//       DeclareHooks({"<word>"});
//     }
//
//    protected:
//     bool ParseNonterminal(std::string_view name) override;  // calls the inherited one, and looks at
//     State() then
//   };
//
// The first alternative that matches wins, and a nonterminal that has matched is never entered again for a
// later one: when what is behind it fails, the state is put back and the next alternative of the rule around
// it is tried. Literals are compared without regard to case, terminals see the text in its own case.
//
// A client that declares nothing is run to the letter: each nonterminal of each alternative that is tried
// goes through ParseNonterminal, each terminal through ParseTerminal, and each takes a piece of the call
// stack. A client that declares the nonterminals that it hooks is called for these alone, and is run by a
// machine (MigWizard/LL1Machine.h) that neither reads the text again where it need not nor grows the call
// stack for the rest. It is called less often then, but with the same outcome: the same match and the same
// state.
//
// A parser serves one parse at a time, on one thread.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/engine/LL1Grammar.h"
#include "MigWizard/engine/LL1State.h"

namespace mig {

class TLL1Machine;
class TLL1Program;

// More nonterminals are under way, one inside the other, than the call stack has room for. The message names
// what was being parsed and the line.
class ENestingTooDeep : public rtl::Exception {
  using rtl::Exception::Exception;
};

class TLL1Parser {
 public:
  // How many nonterminals that go through ParseNonterminal may be open, one inside the other.
  static constexpr int kMostNestedCalls = 2000;

  // Makes the live state, with this parser as its owner.
  explicit TLL1Parser(TParseStateClass stateClass);
  virtual ~TLL1Parser();
  TLL1Parser(const TLL1Parser&) = delete;
  TLL1Parser& operator=(const TLL1Parser&) = delete;

  // See TLL1Grammar. Only before the first Parse.
  void AddRule(std::string_view rule);

  // Parses `text` from `position` (counted from 1, up to one behind the last character) with the nonterminal
  // `startSymbol`. True if it matches; `position` is then that of the first character behind the match, which
  // need not be the end of the text. False if not; `position` stays. `text` is not copied: it has to stay as
  // it is until the next Parse, and so has it for what the results view. Raises EGrammarError where a
  // nonterminal without a rule is reached, and ENestingTooDeep. `position` stays then, AfterParse has not
  // run, and the parser can be used again. A text of more than 2^31 - 2 bytes is refused with an exception.
  [[nodiscard]] bool Parse(std::string_view text, std::string_view startSymbol, int64_t& position);

  // Compiled once a Parse has begun.
  const TLL1Grammar& Grammar() const { return FGrammar; }

 protected:
  // The characters of the terminal `name` (with brackets and star), and whether it matches one of them or the
  // longest run of at least one. The end of the text is no character. An override answers for its own names
  // and passes the others on; for an unknown one this raises EAssertionFailed. With declared hooks it is
  // asked once for each name, at the first Parse.
  virtual void GetTerminalSet(std::string_view name, TCharSet& chars, bool& single);
  // Parses the nonterminal `name` from the live state's position. True with the position behind the match;
  // False with the state as on entry. An override does its entry work, calls this, and does its exit work; of
  // a declared hook it may refuse a match of the inherited operation, but not claim one.
  virtual bool ParseNonterminal(std::string_view name);
  // The same for the terminal `name`. Not called if hooks are declared.
  virtual bool ParseTerminal(std::string_view name);
  // The text and the start position are set; nothing has been matched.
  virtual void BeforeParse() {}
  // `success` is the outcome, and may be changed.
  virtual void AfterParse(bool& success) { static_cast<void>(success); }
  // What is being parsed, as the beginning of a message.
  virtual std::string DescribeSubject() const { return "Text"; }

  // Declares nonterminals, with their brackets and in lower case, that go through ParseNonterminal; more with
  // each call, and an empty list for none. Only before the first Parse.
  void DeclareHooks(std::initializer_list<std::string_view> names);
  // Declares literals, in lower case, that do not match where a word goes on behind them. Only before the
  // first Parse.
  void DeclareWords(std::initializer_list<std::string_view> literals);
  // How much reading, in bytes, may be in vain before results are remembered. Only with declared hooks.
  void SetRereadAllowance(int64_t bytes) { FRereadAllowance = bytes; }

  // The same object for the parser's whole life.
  TParseState& State() const { return *FState; }
  // The text of the last Parse.
  std::string_view Text() const { return FText; }

 private:
  friend class TLL1Machine;
  class TParseGuard;

  void Prepare();
  bool CallHook(int32_t rule, std::string_view name);
  int FindRule(std::string_view name) const;
  bool TryAlternatives(const TLL1Grammar::TRule& rule);
  bool MatchItems(const std::vector<TLL1Item>& items);
  bool MatchLiteral(std::string_view literal);
  bool AtWordEnd() const;
  [[noreturn]] static void RaiseUnknownNonterminal(std::string_view name);
  [[noreturn]] void RaiseTooDeep(int32_t position) const;

  TParseStateClass FStateClass;
  TLL1Grammar FGrammar;
  std::optional<std::vector<std::string>> FHooks;  // none: all nonterminals
  int64_t FRereadAllowance = int64_t{1} << 16;
  std::unique_ptr<TLL1Program> FProgram;
  std::string_view FText;
  bool FIsParsing = false;
  int FNestedCalls = 0;
  int32_t FCalledRule = -1;  // the last one that the machine has called by way of ParseNonterminal
  std::unique_ptr<TParseState> FState;
  TStateStack FCopies;
  std::unique_ptr<TLL1Machine> FMachine;
};

}  // namespace mig
