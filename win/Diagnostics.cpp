#include "win/Diagnostics.h"

#include <cstdint>
#include <cstdio>
#include <utility>

#include "win/paths/FileNames.h"

namespace win {
namespace {

TDiagnosticsSink& Sink() {
  static TDiagnosticsSink sink;
  return sink;
}

// Returns whether a terminal would interpret the character: control characters, characters that change the
// direction of writing, and separators of lines and paragraphs.
bool IsControl(char32_t character) {
  return character < 32 || (character >= 0x7F && character <= 0x9F) ||
         (character >= 0x2028 && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

// Returns the length in bytes of the character at the front of `text`, or 0 if it is malformed or a control
// character.
size_t LengthOfPrintable(std::string_view text) {
  const auto first = static_cast<uint8_t>(text.front());
  const size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  const std::string_view bytes = text.substr(0, length);
  if (bytes.size() < length || !IsValidUtf8(bytes)) return 0;
  char32_t character = length == 1 ? first : first & (0x7Fu >> length);
  for (const char c : bytes.substr(1)) character = character << 6 | (static_cast<uint8_t>(c) & 0x3Fu);
  return IsControl(character) ? 0 : length;
}

}  // namespace

void Diagnose(std::string_view line) {
  if (Sink()) {
    Sink()(line);
  } else {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
  }
}

TDiagnosticsSink SetDiagnosticsSink(TDiagnosticsSink sink) {
  return std::exchange(Sink(), std::move(sink));
}

std::string PrintableName(std::string_view name) {
  std::string result;
  while (!name.empty()) {
    const size_t length = LengthOfPrintable(name);
    if (length > 0) {
      result.append(name.substr(0, length));
      name.remove_prefix(length);
    } else {
      constexpr char kDigits[] = "0123456789ABCDEF";
      const auto byte = static_cast<uint8_t>(name.front());
      result.append("\\x").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
      name.remove_prefix(1);
    }
  }
  return result;
}

}  // namespace win
