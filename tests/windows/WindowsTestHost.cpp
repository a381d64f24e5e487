#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/TestHost.h"
#include "win/FileSystem.h"
#include "win/windows/WindowsErrors.h"
#include "win/windows/WindowsText.h"

namespace tests {
namespace {

// Runs a command line. Returns its exit status, or -1 if it could not be started.
int Run(std::wstring line, const std::wstring& folder) {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      folder.empty() ? nullptr : folder.c_str(), &start, &process))
    return -1;
  const win::THandle running(process.hProcess), thread(process.hThread);
  DWORD status = 0;
  WaitForSingleObject(running.Get(), INFINITE);
  return GetExitCodeProcess(running.Get(), &status) ? static_cast<int>(status) : -1;
}

}  // namespace

const char* const kTemporaryVariable = "TMP";

std::optional<std::string> TVariable::Get(const char* name) {
  const char* const value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

void SetVariable(const char* name, const std::optional<std::string>& value) {
  _putenv_s(name, value ? value->c_str() : "");
}

bool MakeLink(const std::string& text, const std::string& path) {
  namespace fs = std::filesystem;
  const fs::path target = fs::path(path).parent_path() / text;
  const std::wstring name = win::ToWideOrReplaced(path);
  const DWORD flags = fs::is_directory(target) ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0;
  return CreateSymbolicLinkW(name.c_str(), win::ToWideOrReplaced(text).c_str(), flags) &&
         GetFileAttributesW(name.c_str()) != win::INVALID_FILE_ATTRIBUTES;
}

bool HasGit() {
  return false;
}

int RunProgram(const std::string& folder, const std::string& temporary, const std::string& arguments) {
  const TVariable variable(kTemporaryVariable, temporary);
  std::string words = arguments;
  std::replace(words.begin(), words.end(), '\'', '"');
  const std::string program =
      std::filesystem::path(KVA_BINARY_DIR "/cli/kvamigrate.exe").make_preferred().string();
  return Run(L"cmd.exe /s /c \"" + win::ToWideOrReplaced(program + " " + words) + L" >out.txt 2>err.txt\"",
             win::ToWideOrReplaced(folder));
}

}  // namespace tests
