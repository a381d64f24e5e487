#include "win/paths/FileNames.h"

#include <algorithm>
#include <unicode/utf8.h>

#include "win/paths/Characters.h"

namespace win {
namespace {

// Appends the text from the byte `from` on to `result`, in upper case.
void AppendUpper(std::string& result, std::string_view utf8, size_t from) {
  const auto* const bytes = reinterpret_cast<const uint8_t*>(utf8.data());
  const auto length = static_cast<int32_t>(utf8.size());
  for (auto i = static_cast<int32_t>(from); i < length;) {
    const int32_t start = i;
    UChar32 character;
    U8_NEXT(bytes, i, length, character);
    const UChar32 upper =
        character < 0 ? character : static_cast<UChar32>(UpperCharacter(static_cast<char32_t>(character)));
    if (upper == character) {
      result.append(utf8.substr(static_cast<size_t>(start), static_cast<size_t>(i - start)));
    } else {
      uint8_t units[U8_MAX_LENGTH];
      int32_t count = 0;
      U8_APPEND_UNSAFE(units, count, upper);
      result.append(reinterpret_cast<const char*>(units), static_cast<size_t>(count));
    }
  }
}

}  // namespace

std::string UpperFileName(std::string_view utf8) {
  std::string result(utf8);
  bool isAscii = true;
  for (char& c : result) {
    isAscii &= static_cast<uint8_t>(c) < 0x80;
    c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
  }
  if (!isAscii) {
    const auto* const first =
        std::find_if(utf8.begin(), utf8.end(), [](char c) { return static_cast<uint8_t>(c) >= 0x80; });
    const auto position = static_cast<size_t>(first - utf8.begin());
    result.resize(position);
    AppendUpper(result, utf8, position);
  }
  return result;
}

int CompareUtf16Order(std::string_view left, std::string_view right) {
  const size_t common = std::min(left.size(), right.size());
  const auto [l, r] =
      std::mismatch(left.begin(), left.begin() + static_cast<ptrdiff_t>(common), right.begin());
  if (l == left.begin() + static_cast<ptrdiff_t>(common)) {
    return left.size() < right.size() ? -1 : left.size() > right.size() ? 1 : 0;
  }
  // The order of the bytes, but for the characters beyond the first plane: they begin with F0 and above, and
  // their surrogates come before U+E000 (EE) and above.
  const auto a = static_cast<uint8_t>(*l);
  const auto b = static_cast<uint8_t>(*r);
  if (a >= 0xEE && b >= 0xEE && (a >= 0xF0) != (b >= 0xF0)) return a >= 0xF0 ? -1 : 1;
  return a < b ? -1 : 1;
}

bool FileNameLess(std::string_view left, std::string_view right) {
  const int upper = CompareUtf16Order(UpperFileName(left), UpperFileName(right));
  return upper != 0 ? upper < 0 : CompareUtf16Order(left, right) < 0;
}

bool IsValidUtf8(std::string_view text) {
  const auto* const bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto length = static_cast<int32_t>(text.size());
  for (int32_t i = 0; i < length;) {
    UChar32 character;
    U8_NEXT(bytes, i, length, character);
    if (character < 0) return false;
  }
  return true;
}

}  // namespace win
