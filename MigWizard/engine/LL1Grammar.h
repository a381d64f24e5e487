// The tables of a grammar that is given at run time as rule strings, and their one-time compilation.
//
//   TLL1Grammar grammar;
//   grammar.AddRule("<list>-<word>|<word>,<list>");
//   grammar.AddRule("<word>-<*chars_or_digits>");
//   grammar.Prepare();
//
// A rule string is a name in angle brackets, one character that is skipped, and alternatives separated by
// bars. In an alternative, `<name>` refers to a rule, `<*name>` refers to a terminal, and every other
// character is a literal. A backslash makes the next character a literal, or gives a character by its decimal
// code. Blanks are not skipped anywhere.
//
// The compilation inlines rules that have an empty alternative where they are referred to, and sorts the
// alternatives of each rule so that ordered choice tries a longer form before its own prefix.
#pragma once

#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/text/Exceptions.h"

namespace mig {

// A rule string that cannot be read, or a reference to a rule that does not exist.
class EGrammarError : public rtl::Exception {
  using rtl::Exception::Exception;
};

// Raises EGrammarError for a reference to a rule that does not exist.
[[noreturn]] void RaiseUnknownNonterminal(std::string_view name);

using TCharSet = std::bitset<256>;  // indexed by byte value

enum class TLL1StepKind : unsigned char {
  Literal,      // Text: a run of characters, compared with the lower-cased input
  WordEnd,      // matches nothing, and fails before a character of WordCharacters
  Terminal,     // Text: the name with brackets and star
  OptionalRun,  // a terminal that is a run, or nothing; the compilation of the program makes these
  Nonterminal,  // Text: the name with brackets
};

// One step of an alternative.
struct TLL1Step {
  TLL1StepKind Kind;
  std::string Text;
};

struct TLL1Rule {
  std::string Name;                          // with its brackets, in lower case
  std::vector<std::string> Alternatives;     // escapes resolved; in trying order once prepared
  std::vector<std::vector<TLL1Step>> Steps;  // of each alternative; empty until prepared
};

class TLL1Grammar {
 public:
  // Appends the alternatives of a rule string to the rule of that name. Ignores a string of fewer than two
  // characters. Raises EGrammarError for a string that is no rule; the alternatives completed by then stay.
  // Raises EAssertionFailed once the grammar is prepared.
  void AddRule(std::string_view rule);

  // Makes `literal`, in lower case, a word: it does not match before a character of WordCharacters where it
  // fills the space between two references of an alternative, or between a reference and the edge. Raises
  // EAssertionFailed once the grammar is prepared.
  void AddWord(std::string_view literal);

  // Compiles the tables, once; they are final after it. An exception leaves the grammar as it was.
  void Prepare();
  bool Prepared() const { return FPrepared; }

  // The rules, sorted by name.
  const std::vector<TLL1Rule>& Rules() const { return FRules; }
  // Returns the index of the rule of that name, ignoring case, or -1.
  int Find(std::string_view name) const;

 private:
  enum class TSymbolKind { None, Nonterminal, Terminal };

  static TSymbolKind ScanSymbol(std::string_view alternative, size_t& position, std::string_view& name);
  static int AlternativeClass(std::string_view alternative);
  static bool TriedBefore(const std::string& left, const std::string& right);
  static void RemoveEmptyAlternatives(std::vector<TLL1Rule>& rules);
  static void SortAlternatives(std::vector<TLL1Rule>& rules);
  std::vector<TLL1Step> StepsOf(std::string_view alternative) const;

  std::vector<TLL1Rule> FRules;
  std::vector<std::string> FWords;
  bool FPrepared = false;
};

// The characters of words: those of `<*chars_or_digits>`.
const TCharSet& WordCharacters();

}  // namespace mig
