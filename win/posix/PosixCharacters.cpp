// Characters by ICU, code pages by the generated tables.
#include <algorithm>
#include <iterator>
#include <unicode/uchar.h>

#include "win/paths/Characters.h"
#include "win/paths/CodePageTables.h"

namespace win {

const TCodePageTable* FindCodePageTable(uint32_t number) {
  const auto* const table = std::find_if(std::begin(kCodePageTables), std::end(kCodePageTables),
                                         [number](const TCodePageTable& t) { return t.Number == number; });
  return table != std::end(kCodePageTables) ? table : nullptr;
}

char32_t UpperCharacter(char32_t character) {
  return static_cast<char32_t>(u_toupper(static_cast<UChar32>(character)));
}

bool IsCharAlphaU(char32_t character) {
  return u_isUAlphabetic(static_cast<UChar32>(character));
}

}  // namespace win
