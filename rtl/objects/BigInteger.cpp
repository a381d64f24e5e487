#include "rtl/objects/BigInteger.h"

#include <algorithm>
#include <bit>

namespace rtl {

TBigInteger::TBigInteger(uint64_t value)
    : FWords{static_cast<uint32_t>(value), static_cast<uint32_t>(value >> 32)} {
  Trim();
}

size_t TBigInteger::BitLength() const {
  if (FWords.empty()) return 0;
  return FWords.size() * 32 - static_cast<size_t>(std::countl_zero(FWords.back()));
}

void TBigInteger::Add(const TBigInteger& other) {
  if (FWords.size() < other.FWords.size()) FWords.resize(other.FWords.size());
  uint64_t carry = 0;
  for (size_t i = 0; i < FWords.size(); ++i) {
    carry += static_cast<uint64_t>(FWords[i]) + (i < other.FWords.size() ? other.FWords[i] : 0);
    FWords[i] = static_cast<uint32_t>(carry);
    carry >>= 32;
  }
  if (carry != 0) FWords.push_back(static_cast<uint32_t>(carry));
}

void TBigInteger::MultiplyAdd(uint32_t factor, uint32_t addend) {
  uint64_t carry = addend;
  for (uint32_t& word : FWords) {
    carry += static_cast<uint64_t>(word) * factor;
    word = static_cast<uint32_t>(carry);
    carry >>= 32;
  }
  if (carry != 0) FWords.push_back(static_cast<uint32_t>(carry));
  Trim();
}

void TBigInteger::MultiplyPowerOfFive(size_t exponent) {
  // The largest power of five in a word.
  constexpr uint32_t kFiveTo13 = 1220703125;
  size_t left = exponent;
  for (; left >= 13; left -= 13) MultiplyAdd(kFiveTo13, 0);
  uint32_t rest = 1;
  for (; left > 0; --left) rest *= 5;
  MultiplyAdd(rest, 0);
}

void TBigInteger::ShiftLeft(size_t bits) {
  if (FWords.empty()) return;
  const unsigned within = bits % 32;
  if (within != 0) {
    uint32_t carry = 0;
    for (uint32_t& word : FWords) {
      const uint32_t high = word >> (32 - within);
      word = (word << within) | carry;
      carry = high;
    }
    if (carry != 0) FWords.push_back(carry);
  }
  FWords.insert(FWords.begin(), bits / 32, 0);
}

int TBigInteger::Compare(const TBigInteger& other) const {
  if (FWords.size() != other.FWords.size()) return FWords.size() < other.FWords.size() ? -1 : 1;
  for (size_t i = FWords.size(); i-- > 0;)
    if (FWords[i] != other.FWords[i]) return FWords[i] < other.FWords[i] ? -1 : 1;
  return 0;
}

uint32_t TBigInteger::DivideBy(const TBigInteger& divisor) {
  const size_t length = divisor.FWords.size();
  if (FWords.size() < length) return 0;
  FWords.resize(length + 1);
  const uint64_t high = (static_cast<uint64_t>(FWords[length]) << 32) | FWords[length - 1];
  // At most two too large (Knuth, "The Art of Computer Programming", 4.3.1, theorem B).
  uint64_t quotient = std::min<uint64_t>(high / divisor.FWords.back(), UINT32_MAX);
  uint64_t carry = 0;
  uint64_t borrow = 0;
  for (size_t i = 0; i <= length; ++i) {
    carry += i < length ? quotient * divisor.FWords[i] : 0;
    const uint64_t difference = static_cast<uint64_t>(FWords[i]) - static_cast<uint32_t>(carry) - borrow;
    FWords[i] = static_cast<uint32_t>(difference);
    borrow = difference >> 63;
    carry >>= 32;
  }
  while (borrow != 0) {
    --quotient;
    uint64_t sum = 0;
    for (size_t i = 0; i <= length; ++i) {
      sum += static_cast<uint64_t>(FWords[i]) + (i < length ? divisor.FWords[i] : 0);
      FWords[i] = static_cast<uint32_t>(sum);
      sum >>= 32;
    }
    borrow -= sum;
  }
  Trim();
  return static_cast<uint32_t>(quotient);
}

void TBigInteger::Trim() {
  while (!FWords.empty() && FWords.back() == 0) FWords.pop_back();
}

}  // namespace rtl
