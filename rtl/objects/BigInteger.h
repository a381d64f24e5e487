// Whole numbers of any size, as far as exact conversion between binary and decimal needs them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace rtl {

// Never negative.
class TBigInteger {
 public:
  explicit TBigInteger(uint64_t value = 0);

  bool IsZero() const { return FWords.empty(); }
  // Bits up to and with the highest that is set; 0 for zero.
  size_t BitLength() const;
  void Add(const TBigInteger& other);
  void MultiplyAdd(uint32_t factor, uint32_t addend);
  void MultiplyPowerOfFive(size_t exponent);
  void ShiftLeft(size_t bits);
  // Negative, 0 or positive.
  int Compare(const TBigInteger& other) const;

  // Divides by `divisor` and keeps the remainder; the quotient is the result. The quotient must be below
  // 2^32, and the highest word of `divisor` must have its highest bit set.
  uint32_t DivideBy(const TBigInteger& divisor);
  // By how many bits a divisor, and its dividend, must be shifted left for that.
  size_t BitsToAlign() const { return (32 - BitLength() % 32) % 32; }

 private:
  void Trim();
  std::vector<uint32_t> FWords;  // lowest first, the highest not 0
};

}  // namespace rtl
