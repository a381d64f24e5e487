// Where a converter puts its bytes, piece by piece: a string, or a stream in large writes.
//
// A sink collects in a buffer of its own that stays in the processor's cache; what it stands for sees only
// whole buffers. Small things are composed in place:
//
//   char* end = sink.Room();          // at least TByteSink::kRoom bytes
//   *end++ = 'x';
//   sink.Take(end);
//
// Nothing has arrived for certain before Flush. A sink that is destroyed without it drops what it still
// holds, which is what a conversion that failed wants.
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

  // Where the next bytes go: room for kRoom of them, until the next call of any operation.
  char* Room() {
    if (static_cast<size_t>(FBuffer + kSize - FNext) < kRoom) Flush();
    return FNext;
  }
  // Takes what was written from Room up to `end`.
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
  // Hands over what is held. Raises what the target raises.
  void Flush();

 protected:
  TByteSink() : FNext(FBuffer) {}
  virtual void Drain(std::string_view bytes) = 0;

 private:
  static constexpr size_t kSize = 32 * 1024;
  void AppendLarge(std::string_view bytes);

  char* FNext;
  char FBuffer[kSize];
};

// Appends to `target`, which must live as long.
class TStringSink : public TByteSink {
 public:
  explicit TStringSink(std::string& target) : FTarget(target) {}

 protected:
  void Drain(std::string_view bytes) override { FTarget.append(bytes); }

 private:
  std::string& FTarget;
};

// Writes to `target` at its position; `target` must live as long.
class TStreamSink : public TByteSink {
 public:
  explicit TStreamSink(TStream& target) : FTarget(target) {}

 protected:
  void Drain(std::string_view bytes) override { FTarget.Write(bytes); }

 private:
  TStream& FTarget;
};

}  // namespace rtl
