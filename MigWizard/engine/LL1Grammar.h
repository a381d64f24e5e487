// The tables of a grammar that is given at run time as rule strings, and their one-time compilation.
//
//   TLL1Grammar grammar;
//   grammar.AddRule("<list>-<word>|<word>,<list>");
//   grammar.Prepare();
//
// A rule string is a name in angle brackets, one character that is skipped, and alternatives divided by bars.
// In an alternative `<name>` refers to a rule, `<*name>` to a terminal, and every other character stands for
// itself; a backslash takes the meaning from the next character, or gives a character by its decimal code.
// Blanks count.
//
// The compilation inlines rules that have an empty alternative where they are referred to, and sorts each
// rule's alternatives so that ordered choice meets the longer form before its own beginning. There are no
// look-ahead tables here: those that speed up the matching are made from the compiled alternatives
// (MigWizard/LL1Program.h).
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

using TCharSet = std::bitset<256>;  // by byte value

enum class TSymbolKind { None, Nonterminal, Terminal };

// One step of an alternative.
struct TLL1Item {
  enum class TKind : unsigned char {
    Literal,      // Text: a run of characters, compared with the lower-cased input
    WordEnd,      // matches nothing, and fails where a word would go on
    Terminal,     // Text: the name with brackets and star
    Nonterminal,  // Text: the name with brackets
  };
  TKind Kind;
  std::string Text;
};

class TLL1Grammar {
 public:
  struct TRule {
    std::string Name;                       // with its brackets
    std::vector<std::string> Alternatives;  // texts with the escapes resolved; once prepared, in trying order
    std::vector<std::vector<TLL1Item>> Items;  // the same alternatives as steps; empty until prepared
  };

  // Adds the alternatives of a rule string behind those that the rule of that name has. A string of fewer
  // than two characters is ignored. Raises EGrammarError for one that is no rule; the alternatives that were
  // complete by then stay. Not to be called once the grammar is prepared: EAssertionFailed.
  void AddRule(std::string_view rule);

  // Makes `literal` a word: where it stands between two references of an alternative, or at its edge, it does
  // not match in front of a character of WordCharacters. In lower case. Not to be called once the grammar is
  // prepared.
  void AddWord(std::string_view literal);

  // Compiles the tables. They are final from here on.
  void Prepare();
  bool Prepared() const { return FPrepared; }

  // In the order of the names.
  const std::vector<TRule>& Rules() const { return FRules; }
  // The index of the rule of that name, ignoring case, or -1.
  int Find(std::string_view name) const;

  // Whether a reference begins at `position` (counted from 0). If so `name` is its text with the brackets, a
  // view into `alternative`, and `position` moves behind it; otherwise both stay.
  static TSymbolKind ScanSymbol(std::string_view alternative, size_t& position, std::string_view& name);

 private:
  void RemoveEmptyAlternatives();
  void RewriteAlternatives(TRule& rule, const TRule& inlined);
  void SortAlternatives();
  std::vector<TLL1Item> ItemsOf(std::string_view alternative) const;

  std::vector<TRule> FRules;
  std::vector<std::string> FWords;
  bool FPrepared = false;
};

// The characters that go on with a word: those of `<*chars_or_digits>`.
const TCharSet& WordCharacters();

}  // namespace mig
