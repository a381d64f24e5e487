// Binary floating-point numbers and their decimal text, exact in both directions and the same on every host.
//
// Forms hold three formats: single (24 bits of precision), double (53 bits) and extended (64 bits in 10
// bytes). The extended format is the reason why the conversions are done here, in integer arithmetic: `long
// double` has 64 bits of precision on x86 only. It is a double with MSVC and on 32-bit ARM, a pair of doubles
// on POWER, and has 113 bits on 64-bit ARM, where rounding to it first and to 64 bits afterwards would round
// twice. So neither std::to_chars and std::from_chars for `long double` nor the C library's conversions give
// the same text and the same bytes on every host. The tests compare the results with theirs where they are
// exact.
//
//   rtl::TFloat value;
//   if (rtl::ParseFloat("0.1", rtl::kDoubleFormat, value))
//     rtl::FormatFloat(value, rtl::kDoubleFormat, rtl::TFloatStyle::Short);  // "0.1"
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rtl {

// The range of a format: Mantissa * 2^Exponent with Mantissa < 2^Precision and
// MinExponent <= Exponent <= MaxExponent.
struct TFloatFormat {
  int Precision;
  int MinExponent;
  int MaxExponent;

  // Returns the number of bytes of a number in this format.
  constexpr int Size() const { return Precision == 24 ? 4 : Precision == 53 ? 8 : 10; }
};
inline constexpr TFloatFormat kSingleFormat{24, -149, 104};
inline constexpr TFloatFormat kDoubleFormat{53, -1074, 971};
inline constexpr TFloatFormat kExtendedFormat{64, -16445, 16320};

// A finite number, (-1)^Negative * Mantissa * 2^Exponent. The functions below return numbers that are
// normalised for their format: the mantissa has all bits of the precision, or the exponent is the format's
// lowest.
struct TFloat {
  bool Negative = false;
  uint64_t Mantissa = 0;
  int Exponent = 0;
  bool operator==(const TFloat&) const = default;
};

// Decodes the format.Size() little-endian bytes at `bytes`. Returns false for infinities, for NaNs, and for
// the 80-bit patterns in which the leading bit of the mantissa contradicts the exponent.
[[nodiscard]] bool DecodeFloat(const char* bytes, const TFloatFormat& format, TFloat& value);
// Writes the format.Size() bytes of a number that is normalised for `format` to `bytes`.
void EncodeFloat(const TFloat& value, const TFloatFormat& format, char* bytes);

// Finds the number of `format` that is nearest to a decimal text; of two equally near ones, the one with the
// even mantissa. `text` is [sign] digits [. digits] [E [sign] digits]; the digits after the point may be
// missing. Returns false if the number is too large for the format. A number that is too small becomes zero.
[[nodiscard]] bool ParseFloat(std::string_view text, const TFloatFormat& format, TFloat& value);

// How a number without a fraction, or one of extreme size, is written.
enum class TFloatStyle {
  Short,     // as the IDE writes it: 36526, 0.25, 1E20, 1.5E-7
  Fraction,  // the same, but never such that it would be read as an integer: 36526.0, 0.25, 1E20
  Marked,    // always ends in the exponent E0 and has no other: 36526E0, 0.25E0
};
// Returns fifteen significant digits without trailing zeros if that text is read as the same number
// (directly, and by way of 80 bits, as the IDE reads); otherwise as many digits as it takes. `value` is
// normalised for `format`.
std::string FormatFloat(const TFloat& value, const TFloatFormat& format, TFloatStyle style);

}  // namespace rtl
