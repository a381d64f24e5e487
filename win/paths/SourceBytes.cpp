#include "win/paths/SourceBytes.h"

#include <cstdint>
#include <mutex>
#include <unordered_map>

#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"

namespace win {
namespace {

constexpr std::string_view kReplacementText = "\xEF\xBF\xBD";

// The characters of a code page that are not ASCII, as UTF-8, and their bytes.
using TBytesOfCharacter = std::unordered_map<std::string, std::string>;

TBytesOfCharacter ListCharacters() {
  TBytesOfCharacter list;
  const auto add = [&list](const std::string& bytes) {
    std::string character = SourceToUtf8(bytes);
    if (character != kReplacementText) list.emplace(std::move(character), bytes);
  };
  for (int first = 0x80; first < 0x100; ++first) {
    const auto lead = static_cast<uint8_t>(first);
    if (!IsDBCSLeadByte(lead)) {
      add({static_cast<char>(lead)});
      continue;
    }
    for (int second = 0x40; second < 0xFF; ++second) {
      const auto trail = static_cast<uint8_t>(second);
      if (IsDBCSTrailByte(trail)) add({static_cast<char>(lead), static_cast<char>(trail)});
    }
  }
  return list;
}

// Returns the table of the current code page. Builds it on the first call and after each change of the code
// page.
const TBytesOfCharacter& Characters() {
  static std::mutex mutex;
  static std::unordered_map<uint32_t, TBytesOfCharacter> lists;
  const std::lock_guard lock(mutex);
  const auto [place, isNew] = lists.try_emplace(GetACP());
  if (isNew) place->second = ListCharacters();
  return place->second;
}

}  // namespace

std::optional<std::string> Utf8ToSource(std::string_view utf8) {
  if (!IsValidUtf8(utf8)) return std::nullopt;
  if (GetACP() == kUtf8CodePage) return std::string(utf8);
  std::string bytes;
  while (!utf8.empty()) {
    size_t length = 1;
    while (length < utf8.size() && (static_cast<uint8_t>(utf8[length]) & 0xC0) == 0x80) ++length;
    if (length == 1) {
      bytes += utf8[0];
    } else {
      const auto place = Characters().find(std::string(utf8.substr(0, length)));
      if (place == Characters().end()) return std::nullopt;
      bytes += place->second;
    }
    utf8.remove_prefix(length);
  }
  return bytes;
}

}  // namespace win
