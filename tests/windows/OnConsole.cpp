// Runs a program with the console as its standard streams, for tests: onconsole EVENT PROGRAM [ARGUMENT]...
// Presses Ctrl-C when the event of that name is set. Returns the program's exit status. The system gives
// these streams to a program whose starter has others only where it starts the console.
#include <string>
#include <windows.h>

namespace {

HANDLE OpenConsole(const wchar_t* name) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                     OPEN_EXISTING, 0, nullptr);
}

// Returns the word at the start of a command line, and removes it.
std::wstring TakeWord(std::wstring& line) {
  const bool isQuoted = line.starts_with(L'"');
  const size_t end = line.find(isQuoted ? L'"' : L' ', 1);
  const std::wstring word = line.substr(isQuoted ? 1 : 0, isQuoted ? end - 1 : end);
  line.erase(0, end);
  line.erase(0, line.find_first_not_of(L"\" "));
  return word;
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
  std::wstring line = GetCommandLineW();
  TakeWord(line);
  const HANDLE press = OpenEventW(SYNCHRONIZE, FALSE, TakeWord(line).c_str());
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
    return -1;
  SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE);  // Ctrl-C is for the program
  const HANDLE waited[] = {process.hProcess, press};
  while (WaitForMultipleObjects(2, waited, FALSE, INFINITE) == WAIT_OBJECT_0 + 1)
    GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  return static_cast<int>(status);
}
