#include "cli/DesktopProgram.h"

#include "win/windows/WindowsErrors.h"
#include "win/windows/WindowsText.h"

namespace cli {
namespace {

// Appends an argument to a command line, in the quotes from which the program's start-up code takes it.
void AppendArgument(std::wstring& line, const std::wstring& argument) {
  if (!line.empty()) line += L' ';
  line += L'"';
  size_t backslashes = 0;
  for (const wchar_t c : argument) {
    if (c == L'"') line.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    line += c;
  }
  line.append(backslashes, L'\\') += L'"';
}

// Returns the folder of this program, with a separator at its end.
std::wstring OwnFolder() {
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = 0;
  while ((length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()))) == path.size())
    path.resize(path.size() * 2);
  path.resize(length);
  return path.substr(0, path.rfind(L'\\') + 1);
}

}  // namespace

int RunDesktopProgram(const std::string& name, const std::vector<std::string>& arguments) {
  const std::wstring fileName = win::ToWideOrReplaced(name) + L".exe";
  std::wstring program(32768, L'\0');
  for (const std::wstring& folder : {OwnFolder(), std::wstring()}) {
    const DWORD length = SearchPathW(folder.empty() ? nullptr : folder.c_str(), fileName.c_str(), nullptr,
                                     static_cast<DWORD>(program.size()), program.data(), nullptr);
    if (length == 0 || length >= program.size()) continue;
    program.resize(length);
    std::wstring line;
    AppendArgument(line, program);
    for (const std::string& argument : arguments) AppendArgument(line, win::ToWideOrReplaced(argument));
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                        &process))
      return -1;
    const win::THandle running(process.hProcess), thread(process.hThread);
    DWORD status = 0;
    WaitForSingleObject(running.Get(), INFINITE);
    return GetExitCodeProcess(running.Get(), &status) ? static_cast<int>(status) : -1;
  }
  return -1;
}

}  // namespace cli
