// Reads the binary form of an object stream piece by piece: numbers, texts, names. Nothing is read, nor space
// for it taken, before it is known to be there. What each piece is called, `what`, goes into the message when
// it is not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "rtl/objects/FormPath.h"

namespace rtl {

// Which names a place of the data takes.
enum class TNameKind {
  Plain,     // a name, or several with dots between them
  Optional,  // or nothing
  Element,   // of a set: a name or a whole number
};

class TFormBinaryScanner {
 public:
  // `data` and `path` must live as long. `firstOffset` is where in its file the data begins.
  TFormBinaryScanner(std::string_view data, size_t firstOffset, const TFormPath& path)
      : FBegin(data.data()),
        FNext(data.data()),
        FEnd(data.data() + data.size()),
        FFirstOffset(firstOffset),
        FPath(path) {}

  // Raises EFilerError "Form data at offset N: REASON (object PATH, property PATH)." for the present
  // position, or for another place of the data.
  [[noreturn]] void Fail(std::string_view reason) const { FailAt(FNext, reason); }
  [[noreturn]] void FailAt(const char* at, std::string_view reason) const;

  // Takes the signature of an object stream, if it is next.
  [[nodiscard]] bool AcceptSignature();

  const char* Position() const { return FNext; }
  // Bytes of the data before the present position.
  size_t Offset() const { return static_cast<size_t>(FNext - FBegin); }

  // Each of these moves behind what it gives, but for Peek.
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
  // Takes the 0 byte that ends a list, if it is next.
  [[nodiscard]] bool EndOfList(std::string_view what) {
    if (Peek(what) != 0) return false;
    ++FNext;
    return true;
  }
  // What a length of one byte stands in front of.
  std::string_view ShortText(std::string_view what) {
    const uint8_t length = Number<uint8_t>(what);
    return Take(length, what);
  }
  // What a length of four bytes, in units of `unitSize` bytes, stands in front of.
  std::string_view LongText(size_t unitSize, std::string_view what);
  // A short text that is a name.
  std::string_view Name(TNameKind kind, std::string_view what);
  // An integer value of up to 32 bits, its kind in front of it.
  int32_t SmallInteger(std::string_view what);

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
