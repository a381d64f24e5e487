#include "rtl/objects/FloatText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <tuple>
#include <utility>

#include "rtl/objects/BigInteger.h"

namespace rtl {

namespace {

// 0.DIGITS * 10^Point, without leading zeros. Zero has no digits.
struct TDecimal {
  std::string Digits;
  int64_t Point = 0;
};

struct TEncoding {
  int ExponentBits;
  int FractionBits;  // the bits of the mantissa that are stored: all in the extended format
};

TEncoding EncodingOf(const TFloatFormat& format) {
  if (format.Precision == kSingleFormat.Precision) return {8, 23};
  if (format.Precision == kDoubleFormat.Precision) return {11, 52};
  return {15, 64};
}

// Rounds (high + next / 2^32 + rest) * 2^exponent to the nearest number of `format`, halves to even. `rest`
// is below 2^-32, and `sticky` says whether it is not 0. The highest bit of `high` is set. Returns false if
// the result is too large for the format.
bool Round(uint64_t high, uint32_t next, bool sticky, int exponent, const TFloatFormat& format,
           TFloat& value) {
  const int drop = std::max(64 - format.Precision, format.MinExponent - exponent);
  uint64_t mantissa = 0;
  bool half = false;
  if (drop == 0) {
    mantissa = high;
    half = next >> 31;
    sticky = sticky || (next << 1) != 0;
  } else if (drop <= 64) {
    mantissa = drop == 64 ? 0 : high >> drop;
    half = (high >> (drop - 1)) & 1;
    sticky = sticky || next != 0 || (high & ((uint64_t{1} << (drop - 1)) - 1)) != 0;
  }
  value.Mantissa = mantissa;
  value.Exponent = drop > 64 ? format.MinExponent : exponent + drop;
  if (half && (sticky || (mantissa & 1))) {
    const uint64_t limit = format.Precision == 64 ? 0 : uint64_t{1} << format.Precision;
    if (++value.Mantissa == limit) {
      value.Mantissa = uint64_t{1} << (format.Precision - 1);
      ++value.Exponent;
    }
  }
  return value.Exponent <= format.MaxExponent;
}

// Rounds a number that is normalised for another format.
bool RoundTo(const TFloat& from, const TFloatFormat& format, TFloat& value) {
  value.Negative = from.Negative;
  if (from.Mantissa == 0) {
    value.Mantissa = 0;
    value.Exponent = format.MinExponent;
    return true;
  }
  const int shift = std::countl_zero(from.Mantissa);
  return Round(from.Mantissa << shift, 0, false, from.Exponent - shift, format, value);
}

bool FromDecimal(const TDecimal& decimal, const TFloatFormat& format, TFloat& value) {
  value.Mantissa = 0;
  value.Exponent = format.MinExponent;
  if (decimal.Digits.empty() || decimal.Point < -5000) return true;
  if (decimal.Point > 5000) return false;
  TBigInteger dividend;
  for (size_t at = 0; at < decimal.Digits.size(); at += 9) {
    uint32_t group = 0;
    uint32_t scale = 1;
    for (char digit : std::string_view(decimal.Digits).substr(at, 9)) {
      group = group * 10 + static_cast<uint32_t>(digit - '0');
      scale *= 10;
    }
    dividend.MultiplyAdd(scale, group);
  }
  TBigInteger divisor(1);
  // 10^exponent is 5^exponent * 2^exponent.
  const int exponent = static_cast<int>(decimal.Point) - static_cast<int>(decimal.Digits.size());
  (exponent >= 0 ? dividend : divisor).MultiplyPowerOfFive(static_cast<size_t>(std::abs(exponent)));
  // With operands of equal length the quotient is between 1/2 and 2, and the scale is a power of two.
  const int shift = static_cast<int>(dividend.BitLength()) - static_cast<int>(divisor.BitLength());
  const int scale = shift + exponent;
  (shift >= 0 ? divisor : dividend).ShiftLeft(static_cast<size_t>(std::abs(shift)));
  const size_t align = divisor.BitsToAlign();
  dividend.ShiftLeft(align);
  divisor.ShiftLeft(align);
  if (dividend.Compare(divisor) >= 0) {  // at least 1: 1.xxx
    std::ignore = dividend.DivideBy(divisor);
    std::array<uint32_t, 3> words{};
    for (uint32_t& word : words) {
      dividend.ShiftLeft(32);
      word = dividend.DivideBy(divisor);
    }
    const uint64_t high = (uint64_t{1} << 63) | (uint64_t{words[0]} << 31) | (words[1] >> 1);
    const uint32_t next = (words[1] << 31) | (words[2] >> 1);
    return Round(high, next, (words[2] & 1) != 0 || !dividend.IsZero(), scale - 63, format, value);
  }
  std::array<uint32_t, 3> words{};
  for (uint32_t& word : words) {
    dividend.ShiftLeft(32);
    word = dividend.DivideBy(divisor);
  }
  const uint64_t high = (uint64_t{words[0]} << 32) | words[1];
  return Round(high, words[2], !dividend.IsZero(), scale - 64, format, value);
}

// Generates the exact decimal digits of a number above zero, first to last, and tracks the distance to the
// neighbouring numbers, which decides how many digits are enough. This is the algorithm Dragon4: Guy L.
// Steele and Jon L. White, "How to Print Floating-Point Numbers Accurately", PLDI 1990.
class TDigits {
 public:
  TDigits(const TFloat& value, const TFloatFormat& format);
  // Generates the next `count` digits, 1 to 9.
  void Take(size_t count);
  // Returns the number rounded to the digits taken, halves to even. Sets `readsBack` to whether reading that
  // text gives the number again.
  TDecimal Rounded(bool& readsBack) const;

 private:
  TDecimal FDecimal;
  // The number is FDecimal plus FRest / FDivisor units of its last digit.
  TBigInteger FRest;
  TBigInteger FDivisor{1};
  // Half the distance to the next lower number, in the same unit. The distance to the next higher number is
  // the same, or twice as much at a power of two.
  TBigInteger FHalfGap;
  bool FIsWiderAbove = false;
  bool FIsEven = false;
};

TDigits::TDigits(const TFloat& value, const TFloatFormat& format)
    : FIsWiderAbove(value.Mantissa == uint64_t{1} << (format.Precision - 1) &&
                    value.Exponent > format.MinExponent),
      FIsEven(value.Mantissa % 2 == 0) {
  const int bits = 64 - std::countl_zero(value.Mantissa) + value.Exponent;
  int point =
      static_cast<int>((static_cast<int64_t>(bits - 1) * 78913) >> 18) + 1;  // log10(2) in 18 bits: a guess
  // FRest / FDivisor is Mantissa * 2^Exponent / 10^point.
  FHalfGap = TBigInteger(1);
  (point >= 0 ? FDivisor : FHalfGap).MultiplyPowerOfFive(static_cast<size_t>(std::abs(point)));
  const int shift = value.Exponent - point - (FIsWiderAbove ? 2 : 1);
  (shift >= 0 ? FHalfGap : FDivisor).ShiftLeft(static_cast<size_t>(std::abs(shift)));
  FRest = FHalfGap;
  FRest.MultiplyAdd(static_cast<uint32_t>(value.Mantissa >> 32), 0);
  FRest.ShiftLeft(32);
  TBigInteger low = FHalfGap;
  low.MultiplyAdd(static_cast<uint32_t>(value.Mantissa), 0);
  FRest.Add(low);
  FRest.ShiftLeft(FIsWiderAbove ? 2 : 1);
  // Scale to a quotient from 1/10 to below 1.
  for (; FRest.Compare(FDivisor) >= 0; ++point) FDivisor.MultiplyAdd(10, 0);
  for (;; --point) {
    TBigInteger tenfold = FRest;
    tenfold.MultiplyAdd(10, 0);
    if (tenfold.Compare(FDivisor) >= 0) break;
    FRest = std::move(tenfold);
    FHalfGap.MultiplyAdd(10, 0);
  }
  FDecimal.Point = point;
  const size_t align = FDivisor.BitsToAlign();
  for (TBigInteger* number : {&FRest, &FDivisor, &FHalfGap}) number->ShiftLeft(align);
}

void TDigits::Take(size_t count) {
  uint32_t scale = 1;
  for (size_t i = 0; i < count; ++i) scale *= 10;
  FRest.MultiplyAdd(scale, 0);
  FHalfGap.MultiplyAdd(scale, 0);
  const std::string digits = std::to_string(FRest.DivideBy(FDivisor));
  FDecimal.Digits.append(count - digits.size(), '0').append(digits);
}

TDecimal TDigits::Rounded(bool& readsBack) const {
  TDecimal rounded = FDecimal;
  const bool odd = (rounded.Digits.back() - '0') % 2 != 0;
  TBigInteger twice = FRest;
  twice.Add(FRest);
  const int half = twice.Compare(FDivisor);
  if (half > 0 || (half == 0 && odd)) {
    TBigInteger reach =
        FRest;  // whether the number plus half its gap reaches the next unit of the last digit
    reach.Add(FHalfGap);
    if (FIsWiderAbove) reach.Add(FHalfGap);
    const int beyond = reach.Compare(FDivisor);
    readsBack = beyond > 0 || (beyond == 0 && FIsEven);
    size_t place = rounded.Digits.size();
    while (place > 0 && rounded.Digits[place - 1] == '9') rounded.Digits[--place] = '0';
    if (place > 0) {
      ++rounded.Digits[place - 1];
    } else {
      rounded.Digits.insert(rounded.Digits.begin(), '1');
      ++rounded.Point;
    }
  } else {
    const int below = FRest.Compare(FHalfGap);
    readsBack = below < 0 || (below == 0 && FIsEven);
  }
  rounded.Digits.erase(rounded.Digits.find_last_not_of('0') + 1);
  return rounded;
}

bool ReadsBackFromExtended(const TDecimal& decimal, const TFloat& value, const TFloatFormat& format) {
  TFloat extended, back;
  if (!FromDecimal(decimal, kExtendedFormat, extended)) return false;
  extended.Negative = value.Negative;
  return RoundTo(extended, format, back) && back == value;
}

TDecimal ShortestDecimal(const TFloat& value, const TFloatFormat& format) {
  if (value.Mantissa == 0) return {};
  constexpr size_t kUsualDigits = 15;
  constexpr size_t kEnoughDigits = 21;  // for 64 bits
  TDigits digits(value, format);
  digits.Take(9);
  digits.Take(kUsualDigits - 9);
  for (size_t count = kUsualDigits;; ++count) {
    bool readsBack = false;
    TDecimal rounded = digits.Rounded(readsBack);
    if (count == kEnoughDigits) return rounded;
    const bool isExtended = format.Precision == kExtendedFormat.Precision;
    if (readsBack && (isExtended || ReadsBackFromExtended(rounded, value, format))) return rounded;
    digits.Take(1);
  }
}

}  // namespace

bool DecodeFloat(const char* bytes, const TFloatFormat& format, TFloat& value) {
  const TEncoding encoding = EncodingOf(format);
  uint64_t low = 0;
  uint32_t high = 0;
  const bool extended = format.Size() == 10;
  std::memcpy(&low, bytes, format.Size() == 4 ? 4 : 8);
  if (extended) {
    uint16_t signAndExponent = 0;
    std::memcpy(&signAndExponent, bytes + 8, 2);
    high = signAndExponent;
  } else {
    high = static_cast<uint32_t>(low >> encoding.FractionBits);
    low &= (uint64_t{1} << encoding.FractionBits) - 1;
  }
  const uint32_t largest = (1U << encoding.ExponentBits) - 1;
  const uint32_t exponent = high & largest;
  if (exponent == largest) return false;
  value.Negative = (high >> encoding.ExponentBits) != 0;
  value.Exponent = format.MinExponent + static_cast<int>(exponent == 0 ? 0 : exponent - 1);
  if (extended && (low >> 63) != (exponent != 0)) return false;
  value.Mantissa = extended || exponent == 0 ? low : low | (uint64_t{1} << encoding.FractionBits);
  return true;
}

void EncodeFloat(const TFloat& value, const TFloatFormat& format, char* bytes) {
  const TEncoding encoding = EncodingOf(format);
  const bool normal = (value.Mantissa >> (format.Precision - 1)) != 0;
  const uint32_t exponent = normal ? static_cast<uint32_t>(value.Exponent - format.MinExponent + 1) : 0;
  const uint32_t high = (value.Negative ? 1U << encoding.ExponentBits : 0) | exponent;
  if (format.Size() == 10) {
    std::memcpy(bytes, &value.Mantissa, 8);
    const uint16_t signAndExponent = static_cast<uint16_t>(high);
    std::memcpy(bytes + 8, &signAndExponent, 2);
  } else {
    const uint64_t fraction = value.Mantissa & ((uint64_t{1} << encoding.FractionBits) - 1);
    const uint64_t all = (uint64_t{high} << encoding.FractionBits) | fraction;
    std::memcpy(bytes, &all, static_cast<size_t>(format.Size()));
  }
}

bool ParseFloat(std::string_view text, const TFloatFormat& format, TFloat& value) {
  // Of the digits after these it only matters whether one is not 0.
  constexpr size_t kMostDigits = 12'000;
  TDecimal decimal;
  value.Negative = !text.empty() && text[0] == '-';
  size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  bool afterPoint = false;
  bool cutOff = false;
  for (; at < text.size() && (text[at] == '.' || (text[at] >= '0' && text[at] <= '9')); ++at) {
    if (text[at] == '.') {
      afterPoint = true;
      continue;
    }
    if (decimal.Digits.empty() && text[at] == '0') {
      if (afterPoint) --decimal.Point;
      continue;
    }
    if (!afterPoint) ++decimal.Point;
    if (decimal.Digits.size() < kMostDigits) {
      decimal.Digits += text[at];
    } else {
      cutOff = cutOff || text[at] != '0';
    }
  }
  if (cutOff) decimal.Digits += '1';
  if (at < text.size()) {  // E
    ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    int64_t exponent = 0;
    for (; at < text.size(); ++at)
      if (exponent < INT64_MAX / 100) exponent = exponent * 10 + (text[at] - '0');
    decimal.Point += negative ? -exponent : exponent;
  }
  return FromDecimal(decimal, format, value);
}

std::string FormatFloat(const TFloat& value, const TFloatFormat& format, TFloatStyle style) {
  const TDecimal decimal = ShortestDecimal(value, format);
  const int64_t count = static_cast<int64_t>(decimal.Digits.size());
  std::string text = value.Negative ? "-" : "";
  const bool scientific = style != TFloatStyle::Marked && (decimal.Point < -4 || decimal.Point > 15);
  if (count == 0) {
    text += '0';
  } else if (scientific) {
    text += decimal.Digits[0];
    if (count > 1) text.append(".").append(decimal.Digits, 1);
    text += 'E' + std::to_string(decimal.Point - 1);
    return text;
  } else if (decimal.Point <= 0) {
    text.append("0.").append(static_cast<size_t>(-decimal.Point), '0').append(decimal.Digits);
  } else if (decimal.Point < count) {
    text.append(decimal.Digits, 0, static_cast<size_t>(decimal.Point)).append(".");
    text.append(decimal.Digits, static_cast<size_t>(decimal.Point));
  } else {
    text.append(decimal.Digits).append(static_cast<size_t>(decimal.Point - count), '0');
  }
  const bool whole = decimal.Point >= count;
  if (style == TFloatStyle::Fraction && whole) text += ".0";
  if (style == TFloatStyle::Marked) text += "E0";
  return text;
}

}  // namespace rtl
