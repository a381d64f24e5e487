// Converts UTF-8 back to the source code page (win/paths/CodePage.h).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace win {

// Returns the bytes of a UTF-8 text in the source code page, or nullopt if the code page lacks one of its
// characters or the text is malformed. SourceToUtf8 of the result is `utf8`. Where two byte sequences mean
// one character, the result holds the lower one. May be called by several threads.
[[nodiscard]] std::optional<std::string> Utf8ToSource(std::string_view utf8);

}  // namespace win
