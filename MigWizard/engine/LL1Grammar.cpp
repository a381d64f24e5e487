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

// Reads the character that an escape stands for. `position` is behind the backslash, and moves behind the
// escape.
char ReadEscape(std::string_view rule, size_t& position) {
  if (position == rule.size()) throw EGrammarError(kBadRule);
  if (!IsDigit(rule[position])) return rule[position++];
  unsigned code = 0;
  while (position < rule.size() && IsDigit(rule[position]))
    code = (code * 10 + static_cast<unsigned>(rule[position++] - '0')) & 0xFF;
  return static_cast<char>(code);
}

// `text` cut at every occurrence of `name`, ignoring case.
std::vector<std::string_view> CutAtName(std::string_view text, std::string_view name) {
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

// 0 for an alternative that begins with a literal character, or with nothing; 1 with a terminal, 2 a
// nonterminal.
int AlternativeClass(std::string_view alternative) {
  size_t position = 0;
  std::string_view name;
  switch (TLL1Grammar::ScanSymbol(alternative, position, name)) {
    case TSymbolKind::None:
      return 0;
    case TSymbolKind::Terminal:
      return 1;
    case TSymbolKind::Nonterminal:
      return 2;
  }
  return 0;
}

// Whether `left` is to be tried before `right`. Descending, so that a text comes before its own beginnings.
bool TriedBefore(const std::string& left, const std::string& right) {
  const int leftClass = AlternativeClass(left);
  const int rightClass = AlternativeClass(right);
  return leftClass != rightClass ? leftClass < rightClass : rtl::CompareText(left, right) > 0;
}

}  // namespace

const TCharSet& WordCharacters() {
  static const TCharSet set = [] {
    TCharSet chars;
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_"))
      chars.set(static_cast<unsigned char>(c));
    return chars;
  }();
  return set;
}

TSymbolKind TLL1Grammar::ScanSymbol(std::string_view alternative, size_t& position, std::string_view& name) {
  if (position + 1 >= alternative.size() || alternative[position] != '<') return TSymbolKind::None;
  const size_t next = alternative.find_first_of("<>", position + 1);
  if (next == std::string_view::npos || next == position + 1 || alternative[next] == '<')
    return TSymbolKind::None;
  name = alternative.substr(position, next + 1 - position);
  position = next + 1;
  return name[1] == '*' ? TSymbolKind::Terminal : TSymbolKind::Nonterminal;
}

int TLL1Grammar::Find(std::string_view name) const {
  const auto place = std::lower_bound(
      FRules.begin(), FRules.end(), name,
      [](const TRule& rule, std::string_view key) { return rtl::CompareText(rule.Name, key) < 0; });
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
    const auto place = std::find_if(FRules.begin(), FRules.end(), [&](const TRule& other) {
      return rtl::CompareText(other.Name, name) > 0;
    });
    FRules.insert(place, TRule{name, {}, {}});
  }
  std::vector<std::string>& alternatives = FRules[static_cast<size_t>(Find(name))].Alternatives;

  size_t position = nameEnd + 2;  // behind the character that is skipped
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
  RemoveEmptyAlternatives();
  SortAlternatives();
  for (TRule& rule : FRules)
    for (const std::string& alternative : rule.Alternatives) rule.Items.push_back(ItemsOf(alternative));
  FPrepared = true;
}

// One visit in the order of the names. A rule that gains an empty alternative from one that sorts after it
// keeps it.
void TLL1Grammar::RemoveEmptyAlternatives() {
  for (TRule& rule : FRules) {
    const auto isEmpty = [](const std::string& alternative) { return alternative.empty(); };
    if (std::none_of(rule.Alternatives.begin(), rule.Alternatives.end(), isEmpty)) continue;
    const TRule asItIs = rule;
    for (TRule& other : FRules)
      if (&other != &rule) RewriteAlternatives(other, asItIs);
    RewriteAlternatives(rule, asItIs);
    rule.Alternatives.erase(std::find_if(rule.Alternatives.begin(), rule.Alternatives.end(), isEmpty));
  }
}

// Puts each alternative of `inlined` in the place of each occurrence of its name in `rule`. What is put in is
// not looked into again, so a rule that names itself comes out once unfolded, and the expansion ends.
void TLL1Grammar::RewriteAlternatives(TRule& rule, const TRule& inlined) {
  std::vector<std::string> result;
  std::unordered_set<std::string> seen;
  const size_t choiceCount = inlined.Alternatives.size();
  for (const std::string& alternative : rule.Alternatives) {
    const std::vector<std::string_view> pieces = CutAtName(alternative, inlined.Name);
    std::vector<size_t> choices(pieces.size() - 1, 0);  // by occurrence; the leftmost varies slowest
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

void TLL1Grammar::SortAlternatives() {
  for (TRule& rule : FRules)
    std::stable_sort(rule.Alternatives.begin(), rule.Alternatives.end(), TriedBefore);
}

std::vector<TLL1Item> TLL1Grammar::ItemsOf(std::string_view alternative) const {
  std::vector<TLL1Item> items;
  std::string literal;
  const auto endLiteral = [&] {
    if (literal.empty()) return;
    const bool isWord = std::find(FWords.begin(), FWords.end(), literal) != FWords.end();
    items.push_back({TLL1Item::TKind::Literal, std::exchange(literal, {})});
    if (isWord) items.push_back({TLL1Item::TKind::WordEnd, {}});
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
    items.push_back(
        {isTerminal ? TLL1Item::TKind::Terminal : TLL1Item::TKind::Nonterminal, std::string(name)});
  }
  endLiteral();
  return items;
}

}  // namespace mig
