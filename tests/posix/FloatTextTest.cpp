// Floating-point numbers as text, compared with the C library's conversions, which are exact here.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

#include "rtl/objects/FloatText.h"

namespace {

template <typename TNumber>
constexpr rtl::TFloatFormat kFormat = sizeof(TNumber) == 4   ? rtl::kSingleFormat
                                      : sizeof(TNumber) == 8 ? rtl::kDoubleFormat
                                                             : rtl::kExtendedFormat;

template <typename TNumber>
TNumber FromText(const char* text) {
  if constexpr (sizeof(TNumber) == 4) return std::strtof(text, nullptr);
  if constexpr (sizeof(TNumber) == 8) return std::strtod(text, nullptr);
  return static_cast<TNumber>(std::strtold(text, nullptr));
}

template <typename TNumber>
constexpr size_t kBytes = sizeof(TNumber) > 8 ? 10 : sizeof(TNumber);

// `text` reads as the same bits as with the C library, or is refused if the C library returns infinity.
template <typename TNumber>
void ExpectRead(const std::string& text) {
  const TNumber number = FromText<TNumber>(text.c_str());
  rtl::TFloat value;
  const bool read = rtl::ParseFloat(text, kFormat<TNumber>, value);
  ASSERT_EQ(read, !std::isinf(number)) << text;
  if (!read) return;
  char bytes[sizeof number];
  std::memcpy(bytes, &number, sizeof number);
  char encoded[10];
  rtl::EncodeFloat(value, kFormat<TNumber>, encoded);
  ASSERT_EQ(std::memcmp(encoded, bytes, kBytes<TNumber>), 0) << text;
}

// `number` is written as text that the C library reads as the same bits, in any style, directly and by way
// of 80 bits; with 15 digits if they suffice.
template <typename TNumber>
void ExpectWritten(TNumber number) {
  char bytes[sizeof number];
  std::memcpy(bytes, &number, sizeof number);
  rtl::TFloat value;
  ASSERT_EQ(rtl::DecodeFloat(bytes, kFormat<TNumber>, value), std::isfinite(number));
  if (!std::isfinite(number)) return;
  for (const auto style : {rtl::TFloatStyle::Short, rtl::TFloatStyle::Fraction, rtl::TFloatStyle::Marked}) {
    const std::string text = rtl::FormatFloat(value, kFormat<TNumber>, style);
    const TNumber back = FromText<TNumber>(text.c_str());
    char again[sizeof back];
    std::memcpy(again, &back, sizeof back);
    ASSERT_EQ(std::memcmp(again, bytes, kBytes<TNumber>), 0) << text;
    ASSERT_EQ(static_cast<TNumber>(std::strtold(text.c_str(), nullptr)), number) << text;
    ExpectRead<TNumber>(text);
  }
  const std::string text = rtl::FormatFloat(value, kFormat<TNumber>, rtl::TFloatStyle::Short);
  size_t digits = 0;
  for (const char c : text.substr(0, text.find('E'))) digits += c >= '1' && c <= '9' ? 1U : 0U;
  char fifteen[40];
  std::snprintf(fifteen, sizeof fifteen, "%.14Le", static_cast<long double>(number));
  if (digits > 15) {
    const TNumber byWayOf80Bits = static_cast<TNumber>(std::strtold(fifteen, nullptr));
    ASSERT_TRUE(FromText<TNumber>(fifteen) != number || byWayOf80Bits != number) << text;
  }
}

// Random bits, few bits, subnormals, short decimals and their neighbours.
template <typename TNumber>
void Sweep(int count) {
  std::mt19937_64 random(7);
  for (int i = 0; i < count; ++i) {
    const int exponent = static_cast<int>(random() % (2 * std::numeric_limits<TNumber>::max_exponent + 80)) -
                         std::numeric_limits<TNumber>::max_exponent - 70;
    const uint64_t bits = i % 3 == 0   ? random()
                          : i % 3 == 1 ? random() >> (random() % 64)
                                       : ~uint64_t{0} << (random() % 64);
    const TNumber number = std::ldexp(static_cast<TNumber>(bits), exponent - 63);
    ExpectWritten(i % 2 ? number : -number);
    if (!std::isfinite(number)) continue;
    const TNumber money = static_cast<TNumber>(random() % 100000000) / 100;
    ExpectWritten(money);
    ExpectWritten(std::nextafter(money, TNumber(0)));
    char text[120];
    std::snprintf(text, sizeof text, "%.*Le", static_cast<int>(random() % 50),
                  static_cast<long double>(number));
    ExpectRead<TNumber>(text);
  }
  for (int power = std::numeric_limits<TNumber>::min_exponent10 - 25;
       power <= std::numeric_limits<TNumber>::max_exponent10 + 2; ++power) {
    ExpectRead<TNumber>("1e" + std::to_string(power));
    if (count < 1000 && power % 29 != 0) continue;
    ExpectWritten(FromText<TNumber>(("1e" + std::to_string(power)).c_str()));
  }
}

TEST(FloatTextTest, SingleSweep) {
  Sweep<float>(3000);
}
TEST(FloatTextTest, DoubleSweep) {
  Sweep<double>(2000);
}
TEST(FloatTextTest, ExtendedSweep) {
  if constexpr (std::numeric_limits<long double>::digits == 64) Sweep<long double>(300);
}

// Halfway between two numbers, exactly and except for one digit far to the right; the largest and the
// smallest number of each format.
TEST(FloatTextTest, Edges) {
  std::vector<std::string> texts;
  for (const char* text :
       {"9007199254740993", "9007199254740993.0000000000000000000000000000000000000001", "16777217",
        "16777219", "1.7976931348623158e308", "1.7976931348623159e308", "3.4028235677973366e38",
        "3.4028235677973365e38", "4.9e-324", "2.4703282292062327e-324", "2.4703282292062328e-324",
        "7.006492321624085e-46", "7.006492321624086e-46", "2.2250738585072011e-308", "-0", "0e999999",
        "1e999999", "1e-999999"})
    texts.emplace_back(text);
  const std::string zeros(13'000, '0');
  for (const char* head : {"9007199254740993.", "16777217."}) texts.push_back(head + zeros + "1");
  texts.push_back("0." + zeros + "1e13001");
  texts.push_back("1" + zeros + "e-13000");
  for (const std::string& text : texts) {
    ExpectRead<float>(text);
    ExpectRead<double>(text);
  }
  ExpectWritten(3.246437067485173e6);  // these digits, read by way of 80 bits, are its neighbour
  if constexpr (std::numeric_limits<long double>::digits != 64) return;
  ExpectWritten(73786976294838206504.0L);  // one digit less is halfway to its even neighbour
  for (const char* text :
       {"36893488147419103233", "18446744073709551617", "36893488147419103230.99999999999999999999999999",
        "36893488147419103235", "1.18973149535723176508e4932", "1.18973149535723176509e4932",
        "3.6451995318824746e-4951", "1.8225997659412373012e-4951", "1.8225997659412373013e-4951",
        "3.3621031431120935060e-4932"})
    ExpectRead<long double>(text);
}

}  // namespace
