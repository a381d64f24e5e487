// Buffered output for the converters: to a string, or to a stream in large writes.
//
// A sink collects bytes in a buffer that stays in the processor's cache and hands over whole buffers. Small
// pieces can be composed in place:
//
//   char* end = sink.Room();          // at least TByteSink::kRoom bytes
//   *end++ = 'x';
//   sink.Take(end);
//
// Call Flush at the end. Destroying a sink without Flush discards the bytes that are still in the buffer,
// as intended after a failed conversion.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "rtl/text/Streams.h"

namespace rtl {

class TByteSink {
 public:
  static constexpr size_t kRoom = 1024;

  virtual ~TByteSink() = default;
  TByteSink(const TByteSink&) = delete;
  TByteSink& operator=(const TByteSink&) = delete;

  // Returns where to write the next bytes: room for kRoom of them, valid until the next call of any
  // operation.
  char* Room() {
    if (static_cast<size_t>(FBuffer + kSize - FNext) < kRoom) Flush();
    return FNext;
  }
  // Adds the bytes that were written from Room up to `end`.
  void Take(char* end) { FNext = end; }

  void Append(std::string_view bytes) {
    if (bytes.size() <= static_cast<size_t>(FBuffer + kSize - FNext)) {
      if (!bytes.empty()) std::memcpy(FNext, bytes.data(), bytes.size());
      FNext += bytes.size();
    } else {
      AppendLarge(bytes);
    }
  }
  void Append(char byte) {
    if (FNext == FBuffer + kSize) Flush();
    *FNext++ = byte;
  }
  // Writes the buffered bytes to the target. Raises whatever the target raises; the buffer is empty then,
  // too.
  void Flush();

 protected:
  TByteSink() : FNext(FBuffer) {}
  virtual void Drain(std::string_view bytes) = 0;

 private:
  static constexpr size_t kSize = size_t{32} * 1024;
  void AppendLarge(std::string_view bytes);

  char* FNext;
  char FBuffer[kSize];
};

// Appends to `target`, which must outlive the sink.
class TStringSink : public TByteSink {
 public:
  explicit TStringSink(std::string& target) : FTarget(target) {}

 protected:
  void Drain(std::string_view bytes) override { FTarget.append(bytes); }

 private:
  std::string& FTarget;
};

// Writes at the position of `target`, which must outlive the sink.
class TStreamSink : public TByteSink {
 public:
  explicit TStreamSink(TStream& target) : FTarget(target) {}

 protected:
  void Drain(std::string_view bytes) override { FTarget.Write(bytes); }

 private:
  TStream& FTarget;
};

}  // namespace rtl
