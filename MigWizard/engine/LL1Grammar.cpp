#include "MigWizard/engine/LL1Grammar.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr const char* kBadRule = "Cannot add rule. Invalid rule format.";

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Returns the character of an escape. `position` is after the backslash, and moves to the end of the escape.
char ReadEscape(std::string_view rule, size_t& position) {
  if (position == rule.size()) throw EGrammarError(kBadRule);
  if (!IsDigit(rule[position])) return rule[position++];
  unsigned code = 0;
  while (position < rule.size() && IsDigit(rule[position]))
    code = (code * 10 + static_cast<unsigned>(rule[position++] - '0')) & 0xFF;
  return static_cast<char>(code);
}

// Splits `text` at every occurrence of `name`, ignoring case.
std::vector<std::string_view> SplitAtName(std::string_view text, std::string_view name) {
  std::vector<std::string_view> pieces;
  size_t start = 0;
  for (size_t i = 0; i + name.size() <= text.size();) {
    if (rtl::SameText(text.substr(i, name.size()), name)) {
      pieces.push_back(text.substr(start, i - start));
      start = i += name.size();
    } else {
      ++i;
    }
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

// Replaces each occurrence of the name of `inlined` in `rule` by each alternative of `inlined`; the choices
// of the leftmost occurrence vary slowest. Replacements are not searched again, so a rule that names itself
// is unfolded once and the expansion ends.
void InlineRule(TLL1Rule& rule, const TLL1Rule& inlined) {
  std::vector<std::string> result;
  std::unordered_set<std::string> seen;
  const size_t choiceCount = inlined.Alternatives.size();
  for (const std::string& alternative : rule.Alternatives) {
    const std::vector<std::string_view> pieces = SplitAtName(alternative, inlined.Name);
    std::vector<size_t> choices(pieces.size() - 1, 0);  // one for each occurrence
    for (bool more = true; more;) {
      std::string expanded(pieces[0]);
      for (size_t i = 0; i < choices.size(); ++i)
        expanded.append(inlined.Alternatives[choices[i]]).append(pieces[i + 1]);
      if (seen.insert(rtl::LowerCase(expanded)).second) result.push_back(std::move(expanded));

      size_t i = choices.size();
      while (i > 0 && ++choices[i - 1] == choiceCount) choices[--i] = 0;
      more = i > 0;
    }
  }
  rule.Alternatives = std::move(result);
}

}  // namespace

void RaiseUnknownNonterminal(std::string_view name) {
  throw EGrammarError("Unknown nonterminal: " + std::string(name));
}

const TCharSet& WordCharacters() {
  static const TCharSet set = [] {
    TCharSet chars;
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_"))
      chars.set(static_cast<unsigned char>(c));
    return chars;
  }();
  return set;
}

// Returns the kind of the reference at `position`, counted from 0. For a reference, `name` is its text with
// the brackets, a view into `alternative`, and `position` moves past it; otherwise both stay.
TLL1Grammar::TSymbolKind TLL1Grammar::ScanSymbol(std::string_view alternative, size_t& position,
                                                 std::string_view& name) {
  if (position + 1 >= alternative.size() || alternative[position] != '<') return TSymbolKind::None;
  const size_t next = alternative.find_first_of("<>", position + 1);
  if (next == std::string_view::npos || next == position + 1 || alternative[next] == '<')
    return TSymbolKind::None;
  name = alternative.substr(position, next + 1 - position);
  position = next + 1;
  return name[1] == '*' ? TSymbolKind::Terminal : TSymbolKind::Nonterminal;
}

// Returns 0 for an alternative that is empty or begins with a literal, 1 for one that begins with a terminal,
// and 2 for one that begins with a nonterminal.
int TLL1Grammar::AlternativeClass(std::string_view alternative) {
  size_t position = 0;
  std::string_view name;
  switch (ScanSymbol(alternative, position, name)) {
    case TSymbolKind::None:
      return 0;
    case TSymbolKind::Terminal:
      return 1;
    case TSymbolKind::Nonterminal:
      return 2;
  }
  return 0;
}

// Whether `left` is tried before `right`. Texts are in descending order, so each comes before its prefixes.
bool TLL1Grammar::TriedBefore(const std::string& left, const std::string& right) {
  const int leftClass = AlternativeClass(left);
  const int rightClass = AlternativeClass(right);
  return leftClass != rightClass ? leftClass < rightClass : rtl::CompareText(left, right) > 0;
}

int TLL1Grammar::Find(std::string_view name) const {
  const auto place = std::lower_bound(
      FRules.begin(), FRules.end(), name,
      [](const TLL1Rule& rule, std::string_view key) { return rtl::CompareText(rule.Name, key) < 0; });
  if (place == FRules.end() || !rtl::SameText(place->Name, name)) return -1;
  return static_cast<int>(place - FRules.begin());
}

void TLL1Grammar::AddRule(std::string_view rule) {
  rtl::Assert(!FPrepared, "TLL1Grammar.AddRule: the grammar is compiled");
  if (rule.size() < 2) return;
  const std::string text = rtl::LowerCase(rule);
  const size_t nameEnd = text.find('>', 1);
  if (nameEnd == std::string::npos || (nameEnd + 1 == text.size() && nameEnd >= 2))
    throw EGrammarError(kBadRule);

  const std::string name = text.substr(0, nameEnd + 1);
  if (Find(name) < 0) {
    const auto place = std::find_if(FRules.begin(), FRules.end(), [&](const TLL1Rule& other) {
      return rtl::CompareText(other.Name, name) > 0;
    });
    FRules.insert(place, TLL1Rule{name, {}, {}});
  }
  std::vector<std::string>& alternatives = FRules[static_cast<size_t>(Find(name))].Alternatives;

  size_t position = nameEnd + 2;  // after the character that is skipped
  if (position >= text.size()) return;
  std::string alternative;
  while (position < text.size()) {
    const char c = text[position++];
    if (c == '|') {
      alternatives.push_back(std::exchange(alternative, {}));
    } else {
      alternative += c == '\\' ? ReadEscape(text, position) : c;
    }
  }
  alternatives.push_back(std::move(alternative));
}

void TLL1Grammar::AddWord(std::string_view literal) {
  rtl::Assert(!FPrepared, "TLL1Grammar.AddWord: the grammar is compiled");
  FWords.emplace_back(literal);
}

void TLL1Grammar::Prepare() {
  if (FPrepared) return;
  std::vector<TLL1Rule> rules = FRules;
  RemoveEmptyAlternatives(rules);
  SortAlternatives(rules);
  for (TLL1Rule& rule : rules)
    for (const std::string& alternative : rule.Alternatives) rule.Steps.push_back(StepsOf(alternative));
  FRules = std::move(rules);
  FPrepared = true;
}

// Visits the rules once, in the order of their names. A rule that gains an empty alternative from a rule that
// sorts after it keeps that alternative.
void TLL1Grammar::RemoveEmptyAlternatives(std::vector<TLL1Rule>& rules) {
  for (TLL1Rule& rule : rules) {
    const auto isEmpty = [](const std::string& alternative) { return alternative.empty(); };
    if (std::none_of(rule.Alternatives.begin(), rule.Alternatives.end(), isEmpty)) continue;
    const TLL1Rule inlined = rule;
    for (TLL1Rule& other : rules)
      if (&other != &rule) InlineRule(other, inlined);
    InlineRule(rule, inlined);
    rule.Alternatives.erase(std::find_if(rule.Alternatives.begin(), rule.Alternatives.end(), isEmpty));
  }
}

void TLL1Grammar::SortAlternatives(std::vector<TLL1Rule>& rules) {
  for (TLL1Rule& rule : rules)
    std::stable_sort(rule.Alternatives.begin(), rule.Alternatives.end(), TriedBefore);
}

std::vector<TLL1Step> TLL1Grammar::StepsOf(std::string_view alternative) const {
  std::vector<TLL1Step> steps;
  std::string literal;
  const auto endLiteral = [&] {
    if (literal.empty()) return;
    const bool isWord = std::find(FWords.begin(), FWords.end(), literal) != FWords.end();
    steps.push_back({TLL1StepKind::Literal, std::exchange(literal, {})});
    if (isWord) steps.push_back({TLL1StepKind::WordEnd, {}});
  };
  for (size_t position = 0; position < alternative.size();) {
    std::string_view name;
    const TSymbolKind kind = ScanSymbol(alternative, position, name);
    if (kind == TSymbolKind::None) {
      literal += alternative[position++];
      continue;
    }
    endLiteral();
    const bool isTerminal = kind == TSymbolKind::Terminal;
    steps.push_back({isTerminal ? TLL1StepKind::Terminal : TLL1StepKind::Nonterminal, std::string(name)});
  }
  endLiteral();
  return steps;
}

}  // namespace mig
