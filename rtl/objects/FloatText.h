// Binary floating-point numbers and their decimal text, exact in both directions and the same on every
// machine: whole number arithmetic only, no floating-point type of the compiler, no locale.
//
// Forms hold three formats: single (24 bits of precision), double (53) and extended (64, in 10 bytes).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rtl {

// What a format can hold: Mantissa * 2^Exponent with a mantissa below 2^Precision and the exponent between
// the two.
struct TFloatFormat {
  int Precision;
  int MinExponent;
  int MaxExponent;
};
inline constexpr TFloatFormat kSingleFormat{24, -149, 104};
inline constexpr TFloatFormat kDoubleFormat{53, -1074, 971};
inline constexpr TFloatFormat kExtendedFormat{64, -16445, 16320};

// A finite number, (-1)^Negative * Mantissa * 2^Exponent. Those that the functions below give are normalised
// for their format: the mantissa has all bits of the precision, or the exponent is the format's lowest.
struct TFloat {
  bool Negative = false;
  uint64_t Mantissa = 0;
  int Exponent = 0;
  bool operator==(const TFloat&) const = default;
};

// The number in the little-endian `bytes` of a format (4, 8 or 10 of them). False for infinities, for what is
// no number, and for the 80-bit patterns in which the leading bit of the mantissa contradicts the exponent.
[[nodiscard]] bool DecodeFloat(const char* bytes, const TFloatFormat& format, TFloat& value);
// Writes the bytes of a number that is normalised for `format`, and gives their count.
int EncodeFloat(const TFloat& value, const TFloatFormat& format, char* bytes);

// The number of `format` that is nearest to a decimal text, of two equally near ones the even one. `text` is
// [sign] digits [. digits] [E [sign] digits]; the digits behind the point may be missing. False if it is too
// large for the format; what is too small becomes zero.
[[nodiscard]] bool ParseFloat(std::string_view text, const TFloatFormat& format, TFloat& value);

// How a number without a fraction, or of extreme size, is written.
enum class TFloatStyle {
  Short,     // as the IDE does: 36526, 0.25, 1E20, 1.5E-7
  Fraction,  // the same, but never so that it would read as a whole number: 36526.0, 0.25, 1E20
  Marked,    // never with another exponent than the E0 that it ends in: 36526E0, 0.25E0
};
// Fifteen digits without the zeros behind them, if that text is read as the same number (directly, and by way
// of 80 bits, as the IDE reads); otherwise as many digits as it takes. `value` is normalised for `format`.
std::string FormatFloat(const TFloat& value, const TFloatFormat& format, TFloatStyle style);

}  // namespace rtl
