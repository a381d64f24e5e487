#include "win/Diagnostics.h"

#include <cstdint>
#include <cstdio>
#include <utility>

#include "win/paths/CodePage.h"

namespace win {
namespace {

TDiagnosticsSink& Sink() {
  static TDiagnosticsSink sink;
  return sink;
}

}  // namespace

void Diagnose(std::string_view line) {
  if (Sink()) {
    Sink()(line);
  } else {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
  }
}

TDiagnosticsSink SetDiagnosticsSink(TDiagnosticsSink sink) {
  return std::exchange(Sink(), std::move(sink));
}

std::string PrintableName(std::string_view name) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const bool utf8 = IsValidUtf8(name);
  std::string result;
  for (const char c : name) {
    const auto byte = static_cast<uint8_t>(c);
    if (byte < 32 || byte == 127 || (byte >= 128 && !utf8)) {
      result.append("\\x").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace win
