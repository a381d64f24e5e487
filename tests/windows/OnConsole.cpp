// Runs a program with the console as its standard streams, for tests: onconsole PROGRAM [ARGUMENT]... Returns its exit
// status. The system gives these streams to a program whose starter has others only where it starts the console.
#include <string>
#include <windows.h>

namespace {

HANDLE OpenConsole(const wchar_t* name) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                     OPEN_EXISTING, 0, nullptr);
}

// Returns the command line after this program's own name.
std::wstring CommandLine() {
  const wchar_t* line = GetCommandLineW();
  const wchar_t end = *line == L'"' ? L'"' : L' ';
  for (++line; *line && *line != end; ++line) {
  }
  while (*line == L'"' || *line == L' ') ++line;
  return line;
}

}  // namespace

int main() {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = OpenConsole(L"CONIN$");
  start.hStdOutput = OpenConsole(L"CONOUT$");
  start.hStdError = start.hStdOutput;
  SetConsoleCtrlHandler(nullptr, FALSE);
  PROCESS_INFORMATION process{};
  std::wstring line = CommandLine();
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
    return -1;
  SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE);  // Ctrl-C is for the program
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  return static_cast<int>(status);
}
