#include "rtl/objects/FloatBits.h"

#include <charconv>
#include <cstring>

#include "rtl/objects/FloatText.h"

namespace rtl {

namespace {

// Above every exponent of a number that any format holds.
constexpr unsigned kFirstExponent = 100'000;

struct TFloatKind {
  TValueType Kind;
  const TFloatFormat& Format;
};
constexpr TFloatKind kFloatKinds[] = {{vaExtended, kExtendedFormat},
                                      {vaSingle, kSingleFormat},
                                      {vaDate, kDoubleFormat},
                                      {vaDouble, kDoubleFormat}};

// Takes the digits at the front of `text` and the character `end` after them; at the end of the text, '\0'.
template <typename TNumber>
bool TakeDigits(std::string_view& text, char end, TNumber& number) {
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<size_t>(stop - text.data()));
  if (end == '\0') return text.empty();
  if (!text.starts_with(end)) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

std::string FormatFloatBits(TValueType kind, std::string_view bytes) {
  uint64_t low = 0;
  uint16_t high = 0;
  std::memcpy(&low, bytes.data(), bytes.size() < 8 ? bytes.size() : 8);
  if (bytes.size() > 8) std::memcpy(&high, bytes.data() + 8, sizeof high);
  return std::to_string(low) + "." + std::to_string(high) + "E" + std::to_string(kFirstExponent + kind);
}

bool ParseFloatBits(std::string_view text, TValueType& kind, std::string& bytes) {
  uint64_t low = 0;
  uint16_t high = 0;
  unsigned exponent = 0;
  if (!TakeDigits(text, '.', low) || !TakeDigits(text, 'E', high) || !TakeDigits(text, '\0', exponent))
    return false;
  for (const TFloatKind& row : kFloatKinds) {
    if (exponent != kFirstExponent + row.Kind) continue;
    char data[10] = {};
    std::memcpy(data, &low, sizeof low);
    std::memcpy(data + 8, &high, sizeof high);
    const size_t size = static_cast<size_t>(row.Format.Size());
    for (size_t at = size; at < sizeof data; ++at)
      if (data[at] != 0) return false;
    TFloat value;
    if (DecodeFloat(data, row.Format, value)) return false;
    kind = row.Kind;
    bytes.assign(data, size);
    return true;
  }
  return false;
}

}  // namespace rtl
