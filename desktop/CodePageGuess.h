// Guesses the code page of a source from its bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace desktop {

// Returns the code page of win::SupportedCodePages that `bytes` are most likely in, or 0 if they give no
// reason to doubt `assumed`: they have a byte order mark, are ASCII, or no other page is clearly more likely.
uint32_t GuessCodePage(std::string_view bytes, uint32_t assumed);

// Returns "1251 (Cyrillic)".
std::string CodePageName(uint32_t codePage);

}  // namespace desktop
