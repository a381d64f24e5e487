// The lexical scanner for Delphi units and form text: qrl::TParser with the tables of this language.
//
//   TPasParser scanner(text);
//   std::string_view lexem;
//   while (int code = scanner.GetNext(lexem)) ...
//
// Only six words are keywords; everything else that a compiler might call one is an identifier.
#pragma once

#include <string_view>

#include "qrl/Encoding.h"
#include "qrl/HXParser.h"

namespace mig {

// Token codes that callers test, besides those of qrl/HXParser.h. PasParser.cpp has the tables of all codes.
inline constexpr int kSemicolon = 16;
inline constexpr int kEnd = 28;
inline constexpr int kInherited = 29;
inline constexpr int kInline = 30;
inline constexpr int kItem = 31;
inline constexpr int kObject = 32;
inline constexpr int kUses = 33;

class TPasParser : public qrl::TParser {
 public:
  explicit TPasParser(std::string_view text);
  // For the working text of a file of that encoding. Keeps double-byte characters together if the encoding is
  // Default and the source code page is a double-byte one.
  TPasParser(std::string_view text, const qrl::TEncoding& encoding);
};

}  // namespace mig
