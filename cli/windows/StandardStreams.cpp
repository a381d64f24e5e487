#include "cli/StandardStreams.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>

#include "cli/windows/InterruptEvent.h"
#include "win/Errors.h"
#include "win/windows/WindowsErrors.h"
#include "win/windows/WindowsText.h"

namespace cli {
namespace {

constexpr size_t kMostBytes = 8192;  // in one call of the system
constexpr int kBrokenPipe = 109;
constexpr int kNoData = 232;  // the pipe is being closed

HANDLE Handle(TStream stream) {
  return GetStdHandle(stream == TStream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != 0;
}

// The mode of a console before this program changed it, for the program that runs after it.
struct TConsoleMode {
  HANDLE Console = nullptr;
  DWORD Mode = 0;
};
TConsoleMode PreviousModes[2];

void RestoreModes() {
  for (const TConsoleMode& previous : PreviousModes) {
    if (previous.Console) SetConsoleMode(previous.Console, previous.Mode);
  }
}

// Lets a console interpret control sequences, where it can.
void AskForControlSequences(TStream stream) {
  const HANDLE handle = Handle(stream);
  DWORD mode = 0;
  if (!GetConsoleMode(handle, &mode)) return;
  constexpr DWORD kWanted = ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING;
  if ((mode & kWanted) == kWanted || !SetConsoleMode(handle, mode | kWanted)) return;
  PreviousModes[stream == TStream::Output ? 0 : 1] = {handle, mode};
}

// Returns the length of the longest part at the front of `bytes` that one call can take and that does not
// end within a character.
size_t PartLength(std::string_view bytes) {
  if (bytes.size() <= kMostBytes) return bytes.size();
  size_t length = kMostBytes;
  while (length > kMostBytes - 4 && (static_cast<unsigned char>(bytes[length]) & 0xC0) == 0x80) --length;
  return length;
}

int WriteConsoleText(HANDLE console, std::string_view bytes) noexcept {
  wchar_t units[kMostBytes];
  while (!bytes.empty()) {
    const size_t length = PartLength(bytes);
    const int count =
        MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(length), units, kMostBytes);
    for (int start = 0; start < count;) {
      DWORD done = 0;
      if (!WriteConsoleW(console, units + start, static_cast<DWORD>(count - start), &done, nullptr))
        return static_cast<int>(::GetLastError());
      start += static_cast<int>(std::max<DWORD>(done, 1));
    }
    bytes.remove_prefix(length);
  }
  return 0;
}

// Reads a byte of standard input, on a thread of its own: not every console ends the reading at Ctrl-C.
// Returns whether there was one.
DWORD WINAPI ReadByte(void* byte) {
  DWORD count = 0;
  return ReadFile(GetStdHandle(STD_INPUT_HANDLE), byte, 1, &count, nullptr) && count == 1;
}

}  // namespace

std::vector<std::string> ProgramArguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(win::ToUtf8OrReplaced(wide[i]));
  LocalFree(wide);
  return arguments;
}

void PrepareStreams() {
  AskForControlSequences(TStream::Output);
  AskForControlSequences(TStream::Error);
  std::atexit(RestoreModes);
  _setmode(_fileno(stdin), _O_BINARY);
}

int WriteStream(TStream stream, std::string_view bytes) noexcept {
  const HANDLE handle = Handle(stream);
  if (IsConsole(handle)) return WriteConsoleText(handle, bytes);
  while (!bytes.empty()) {
    DWORD done = 0;
    const auto count = static_cast<DWORD>(std::min(bytes.size(), size_t{1} << 30));
    if (!WriteFile(handle, bytes.data(), count, &done, nullptr)) return static_cast<int>(::GetLastError());
    bytes.remove_prefix(done);
  }
  return 0;
}

std::string StreamError(int error) {
  std::string text = win::SysErrorMessage(static_cast<uint32_t>(error));
  if (!text.empty() && text.back() == '.') text.pop_back();
  return text;
}

bool IsBrokenPipe(int error) {
  return error == kBrokenPipe || error == kNoData;
}

bool CanAsk() {
  return IsConsole(GetStdHandle(STD_INPUT_HANDLE)) && IsConsole(Handle(TStream::Output));
}

TInput ReadInput(char& byte) {
  static char read;  // outlives a reading that has not ended when this function returns
  do {
    const win::THandle reading(CreateThread(nullptr, 0, ReadByte, &read, 0, nullptr));
    if (!reading.IsOpen()) return TInput::End;
    const HANDLE waited[] = {InterruptEvent(), reading.Get()};
    if (WaitForMultipleObjects(2, waited, FALSE, INFINITE) == WAIT_OBJECT_0) return TInput::Interrupted;
    DWORD isRead = FALSE;
    GetExitCodeThread(reading.Get(), &isRead);
    if (!isRead)  // a console that does end the reading at Ctrl-C can do so before the handler has run
      return WaitForSingleObject(InterruptEvent(), 200) == WAIT_OBJECT_0 ? TInput::Interrupted : TInput::End;
  } while (read == '\r');
  byte = read;
  return TInput::Byte;
}

bool IsTerminal(TStream stream) {
  DWORD mode = 0;
  return GetConsoleMode(Handle(stream), &mode) && (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

size_t TerminalWidth(TStream stream) {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!GetConsoleScreenBufferInfo(Handle(stream), &info) || info.srWindow.Right <= info.srWindow.Left)
    return 80;
  return static_cast<size_t>(info.srWindow.Right - info.srWindow.Left) + 1;
}

}  // namespace cli
