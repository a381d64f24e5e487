// The tokens of a unit that the compiler would see, with the conditional directives around them.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "qrl/Encoding.h"

namespace completion {

struct TUnitToken {
  int Code = 0;              // as TPasParser gives it: an identifier, a keyword, a symbol ...
  std::string_view Lexem;    // a view into the text
  size_t Offset = 0;         // in bytes, 0-based
  bool Conditional = false;  // between a {$IF...} and its {$ENDIF} or {$IFEND}

  size_t End() const { return Offset + Lexem.size(); }
  // Whether the token is this word, ignoring case. `word` is an identifier or a keyword of the scanner.
  bool Is(std::string_view word) const;
  bool IsSymbol(char symbol) const { return Lexem.size() == 1 && Lexem[0] == symbol; }
};

// Returns the tokens of `text`, working text in `encoding`, without white space and comments. The text must
// outlive the tokens.
std::vector<TUnitToken> ReadUnitTokens(std::string_view text, const qrl::TEncoding& encoding);

// Returns the first line end of `text`: CR LF, LF, CR CR LF, or CR if it has no LF at all. CR LF if it has
// none.
std::string_view LineEndOf(std::string_view text);

}  // namespace completion
