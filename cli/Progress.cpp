#include "cli/Progress.h"

#include <chrono>
#include <string>
#include <utility>

#include "cli/Console.h"
#include "cli/StandardStreams.h"
#include "win/Diagnostics.h"
#include "win/paths/Drives.h"

namespace cli {
namespace {

constexpr std::chrono::milliseconds kInterval{50};

std::string Shown;  // the line on the terminal, or empty

// Returns the end of a UTF-8 text: at most `count` bytes that start at a character boundary.
std::string_view Tail(std::string_view text, size_t count) {
  if (text.size() <= count) return text;
  text.remove_prefix(text.size() - count);
  while (!text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0) == 0x80) text.remove_prefix(1);
  return text;
}

}  // namespace

void ShowProgress(int done, int known, std::string_view fileName) {
  static const bool canShow = HasControlSequences();
  static std::chrono::steady_clock::time_point lastShown;
  if (!canShow) return;
  const auto now = std::chrono::steady_clock::now();
  if (!Shown.empty() && now - lastShown < kInterval) return;
  std::string line = "[" + std::to_string(done) + "/" + std::to_string(known) + "] ";
  const size_t width = TerminalWidth(TStream::Error);
  if (width > line.size() + 1)
    line.append(Tail(win::PrintableName(win::ToHostName(fileName)), width - line.size() - 1));
  if (line == Shown) return;
  (void)WriteStream(TStream::Error, "\r" + line + "\x1b[K");
  Shown = std::move(line);
  lastShown = now;
}

void ClearProgress() {
  if (Shown.empty()) return;
  (void)WriteStream(TStream::Error, "\r\x1b[K");
  Shown.clear();
}

}  // namespace cli
