#include "completion/UsesClauses.h"

#include "MigWizard/engine/PasParser.h"

namespace completion {
namespace {

using TTokens = std::vector<TUnitToken>;
constexpr size_t kNone = static_cast<size_t>(-1);

// Returns the index of the first token from `first` to before `end` that is `word`, or kNone.
size_t FindWord(const TTokens& tokens, size_t first, size_t end, std::string_view word) {
  for (size_t i = first; i < end; ++i) {
    if (tokens[i].Is(word)) return i;
  }
  return kNone;
}

// Reads the item that begins at `at` and moves `at` to the comma or semicolon after it. Returns False where
// none can be read.
bool ReadItem(const TTokens& tokens, size_t& at, TUsesItem& item) {
  item.Begin = at < tokens.size() ? tokens[at].Offset : 0;
  bool inName = true;
  for (; at < tokens.size(); ++at) {
    const TUnitToken& token = tokens[at];
    if (token.IsSymbol(',') || token.IsSymbol(';')) return !item.Name.empty();
    if (token.Is("in")) inName = false;
    if (inName) {
      if (token.Code != qrl::kIdentifier && !token.IsSymbol('.')) return false;
      item.Name += token.Lexem;
    }
    item.Conditional = item.Conditional || token.Conditional;
    item.End = token.End();
  }
  return false;
}

std::optional<TUsesClause> ReadClause(const TTokens& tokens, size_t at) {
  TUsesClause clause;
  clause.Keyword = tokens[at].Offset;
  for (++at; at < tokens.size(); ++at) {
    TUsesItem item;
    if (!ReadItem(tokens, at, item)) return std::nullopt;
    const TUnitToken& end = tokens[at];
    const bool isLast = end.IsSymbol(';');
    if (!isLast) {
      item.Comma = end.Offset;
      item.CommaConditional = end.Conditional;
    }
    clause.Items.push_back(std::move(item));
    if (!isLast) continue;
    if (end.Conditional) return std::nullopt;
    clause.Semicolon = end.Offset;
    return clause;
  }
  return std::nullopt;
}

// Reads the section whose tokens go from `first` to before `end`; it begins at offset `begin`.
std::optional<TUsesSection> ReadSection(const TTokens& tokens, size_t begin, size_t first, size_t end) {
  TUsesSection section{begin, std::nullopt};
  const size_t keyword = FindWord(tokens, first, end, "uses");
  if (keyword == kNone) return section;
  if (tokens[keyword].Conditional || FindWord(tokens, keyword + 1, end, "uses") != kNone) return std::nullopt;
  section.Clause = ReadClause(tokens, keyword);
  if (!section.Clause) return std::nullopt;
  return section;
}

// Reads a program or library, from its first token after the heading on; `begin` is where the heading ends.
std::optional<TUsesClauses> ReadProgram(const TTokens& tokens, size_t begin, size_t first) {
  TUsesClauses clauses;
  clauses.Interface = ReadSection(tokens, begin, first, tokens.size());
  if (!clauses.Interface) return std::nullopt;
  return clauses;
}

}  // namespace

std::string_view TUsesItem::BareName() const {
  const std::string_view name = Name;
  const size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? name : name.substr(dot + 1);
}

std::optional<TUsesClauses> FindUsesClauses(const std::vector<TUnitToken>& tokens) {
  if (tokens.empty()) return std::nullopt;
  if (tokens[0].Is("program") || tokens[0].Is("library")) {
    size_t heading = 0;
    while (heading < tokens.size() && !tokens[heading].IsSymbol(';')) ++heading;
    if (heading == tokens.size()) return std::nullopt;
    return ReadProgram(tokens, tokens[heading].End(), heading + 1);
  }
  // A program may lack its heading. It ends with "end." all the same.
  if (tokens[0].Is("uses") && tokens.back().IsSymbol('.')) return ReadProgram(tokens, 0, 0);
  if (!tokens[0].Is("unit")) return std::nullopt;
  const size_t interface = FindWord(tokens, 1, tokens.size(), "interface");
  if (interface == kNone || tokens[interface].Conditional) return std::nullopt;
  const size_t implementation = FindWord(tokens, interface, tokens.size(), "implementation");
  if (implementation == kNone || tokens[implementation].Conditional) return std::nullopt;
  TUsesClauses clauses;
  clauses.Interface = ReadSection(tokens, tokens[interface].End(), interface + 1, implementation);
  clauses.Implementation =
      ReadSection(tokens, tokens[implementation].End(), implementation + 1, tokens.size());
  if (!clauses.Interface || !clauses.Implementation) return std::nullopt;
  return clauses;
}

}  // namespace completion
