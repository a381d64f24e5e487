// Reads the binary form of an object stream piece by piece: numbers, strings, names. Every length is checked
// against the bytes that are left before anything is read or allocated. The argument `what` names the piece
// in error messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "rtl/objects/FormPath.h"
#include "rtl/objects/ObjectValues.h"

namespace rtl {

// The names that are valid in a given context.
enum class TNameRule {
  Plain,     // a name, or several with dots between them
  Optional,  // the same, or an empty one
  Element,   // of a set: a name or an integer
};

class TFormBinaryScanner {
 public:
  // `data` and `path` must outlive the scanner. `firstOffset` is the offset of the data in its file, for
  // messages.
  TFormBinaryScanner(std::string_view data, size_t firstOffset, const TFormPath& path)
      : FBegin(data.data()),
        FNext(data.data()),
        FEnd(data.data() + data.size()),
        FFirstOffset(firstOffset),
        FPath(path) {}

  // Raises EFilerError "Form data at offset N: REASON (object PATH, property PATH)." for the current
  // position, or for another place of the data.
  [[noreturn]] void Fail(std::string_view reason) const { FailAt(FNext, reason); }
  [[noreturn]] void FailAt(const char* at, std::string_view reason) const;

  // Skips the signature of an object stream. Returns false if it does not come next.
  [[nodiscard]] bool AcceptSignature();

  const char* Position() const { return FNext; }
  // Returns the number of bytes before the current position.
  size_t Offset() const { return static_cast<size_t>(FNext - FBegin); }

  // The operations below return what comes next and, except for Peek, move past it. They raise EFilerError if
  // the data ends before.
  std::string_view Take(uint64_t count, std::string_view what) {
    if (count > Left()) FailShort(count, what);
    return {std::exchange(FNext, FNext + count), static_cast<size_t>(count)};
  }
  template <typename T>
  T Number(std::string_view what) {
    T number;
    std::memcpy(&number, Take(sizeof(T), what).data(), sizeof(T));
    return number;
  }
  uint8_t Peek(std::string_view what) const {
    if (FNext == FEnd) FailEnd(what);
    return static_cast<uint8_t>(*FNext);
  }
  // Skips the 0 byte that ends a list. Returns false if it does not come next.
  [[nodiscard]] bool EndOfList(std::string_view what) {
    if (Peek(what) != 0) return false;
    ++FNext;
    return true;
  }
  // A string with a one-byte length prefix.
  std::string_view ShortText(std::string_view what) {
    const uint8_t length = Number<uint8_t>(what);
    return Take(length, what);
  }
  // A string with a four-byte length prefix that counts units of `unitSize` bytes.
  std::string_view LongText(size_t unitSize, std::string_view what);
  // A short text that must be a name.
  std::string_view Name(TNameRule rule, std::string_view what);
  // The data of an integer whose kind, vaInt8 to vaInt64, was already read.
  TStoredInteger Integer(uint8_t kind, std::string_view what);
  // An integer value of up to 32 bits, with its kind.
  TStoredInteger SmallInteger(std::string_view what);

 private:
  size_t Left() const { return static_cast<size_t>(FEnd - FNext); }
  [[noreturn]] void FailShort(uint64_t count, std::string_view what) const;
  [[noreturn]] void FailEnd(std::string_view what) const;

  const char* const FBegin;
  const char* FNext;
  const char* const FEnd;
  const size_t FFirstOffset;
  const TFormPath& FPath;
};

}  // namespace rtl
