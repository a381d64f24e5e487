#include "completion/DeclaredNames.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "MigWizard/engine/PasParser.h"
#include "rtl/text/SysUtils.h"

namespace completion {
namespace {

using TTokens = std::vector<TUnitToken>;

bool IsOneOf(const TUnitToken& token, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return token.Is(word); });
}

// Tells declarations from statements, token by token.
class TStatements {
 public:
  // Returns True if the token is part of a statement.
  bool Contains(const TUnitToken& token) {
    if (IsOneOf(token, {"begin", "asm", "initialization", "finalization"}) ||
        (FDepth > 0 && IsOneOf(token, {"case", "try"}))) {
      ++FDepth;
    } else if (FDepth > 0 && token.Is("end")) {
      --FDepth;
    }
    return FDepth > 0;
  }

 private:
  size_t FDepth = 0;  // of statements in statements
};

// Returns True if a declaration names the token `i`, which is not part of a statement: "A, B: T", "T = ...".
bool IsDeclared(const TTokens& tokens, size_t i) {
  const TUnitToken& before = tokens[i - 1];
  if (IsOneOf(before, {"procedure", "function", "constructor", "destructor", "property"})) return true;
  if (tokens[i + 1].IsSymbol('='))
    return before.IsSymbol(';') || IsOneOf(before, {"type", "const", "var", "threadvar", "resourcestring"});
  size_t next = i + 1;
  while (next + 2 < tokens.size() && tokens[next].IsSymbol(',') && tokens[next + 1].Code == qrl::kIdentifier)
    next += 2;
  // "Name: (" is a case of a variant record.
  return next + 1 < tokens.size() && tokens[next].IsSymbol(':') && !tokens[next + 1].IsSymbol('(');
}

}  // namespace

std::unordered_set<std::string> FindDeclaredNames(const TTokens& tokens) {
  std::unordered_set<std::string> names;
  TStatements statements;
  for (size_t i = 0; i + 1 < tokens.size(); ++i) {
    const bool isStatement = statements.Contains(tokens[i]);
    if (isStatement || i == 0 || tokens[i].Code != qrl::kIdentifier || tokens[i].Conditional) continue;
    if (IsDeclared(tokens, i)) names.insert(rtl::LowerCase(tokens[i].Lexem));
  }
  return names;
}

bool IsMember(const TTokens& tokens, size_t i) {
  return i > 0 && tokens[i - 1].IsSymbol('.') && !(i > 1 && tokens[i - 2].IsSymbol('.'));
}

}  // namespace completion
