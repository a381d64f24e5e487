#include "rtl/objects/ByteSink.h"

#include <utility>

namespace rtl {

void TByteSink::Flush() {
  const char* end = std::exchange(FNext, FBuffer);
  if (end != FBuffer) Drain({FBuffer, static_cast<size_t>(end - FBuffer)});
}

void TByteSink::AppendLarge(std::string_view bytes) {
  Flush();
  if (bytes.size() >= kSize) {
    Drain(bytes);
  } else {
    std::memcpy(FNext, bytes.data(), bytes.size());
    FNext += bytes.size();
  }
}

}  // namespace rtl
