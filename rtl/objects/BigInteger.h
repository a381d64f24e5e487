// Non-negative integers of any size, with the operations that exact conversion between binary and decimal
// floating-point numbers needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace rtl {

class TBigInteger {
 public:
  explicit TBigInteger(uint64_t value = 0);

  bool IsZero() const { return FWords.empty(); }
  // Returns the number of bits up to and including the highest set bit; 0 for zero.
  size_t BitLength() const;
  void Add(const TBigInteger& other);
  void MultiplyAdd(uint32_t factor, uint32_t addend);
  void MultiplyPowerOfFive(size_t exponent);
  void ShiftLeft(size_t bits);
  // Returns a negative number, 0 or a positive number.
  int Compare(const TBigInteger& other) const;

  // Divides by `divisor`, keeps the remainder and returns the quotient. The quotient must be below 2^32, and
  // the highest bit of the highest word of `divisor` must be set.
  uint32_t DivideBy(const TBigInteger& divisor);
  // Returns by how many bits a divisor, and its dividend, must be shifted left to meet that condition.
  size_t BitsToAlign() const { return (32 - BitLength() % 32) % 32; }

 private:
  void Trim();
  std::vector<uint32_t> FWords;  // lowest first; the highest is not 0
};

}  // namespace rtl
