#include "cli/Progress.h"

#include <cstdio>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace cli {
namespace {

constexpr std::chrono::milliseconds kInterval{50};
constexpr int kDefaultWidth = 80;

size_t TerminalWidth() {
  winsize size{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return static_cast<size_t>(known ? size.ws_col : kDefaultWidth);
}

// The end of a UTF-8 text, of at most `count` bytes, beginning with a whole character.
std::string_view Tail(std::string_view text, size_t count) {
  if (text.size() <= count) return text;
  text.remove_prefix(text.size() - count);
  while (!text.empty() && (static_cast<unsigned char>(text.front()) & 0xC0) == 0x80) text.remove_prefix(1);
  return text;
}

}  // namespace

TProgressLine::TProgressLine() : FIsTerminal(isatty(STDERR_FILENO) == 1) {}

void TProgressLine::Show(int done, int known, std::string_view fileName) {
  if (!FIsTerminal) return;
  const auto now = std::chrono::steady_clock::now();
  if (FShown && now - FLastShown < kInterval) return;
  std::string line = "[" + std::to_string(done) + "/" + std::to_string(known) + "] ";
  const size_t width = TerminalWidth();
  if (width > line.size() + 1) line.append(Tail(fileName, width - line.size() - 1));
  std::fprintf(stderr, "\r%s\x1b[K", line.c_str());
  std::fflush(stderr);
  FShown = true;
  FLastShown = now;
}

void TProgressLine::Clear() {
  if (!FShown) return;
  std::fputs("\r\x1b[K", stderr);
  std::fflush(stderr);
  FShown = false;
}

}  // namespace cli
