#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

#include "tests/TestHost.h"

namespace tests {

const char* const kTemporaryVariable = "TMPDIR";

std::optional<std::string> TVariable::Get(const char* name) {
  const char* const value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

void SetVariable(const char* name, const std::optional<std::string>& value) {
  value ? setenv(name, value->c_str(), 1) : unsetenv(name);
}

bool MakeLink(const std::string& text, const std::string& path) {
  std::filesystem::create_symlink(text, path);
  return true;
}

bool HasGit() {
  return true;
}

int RunProgram(const std::string& folder, const std::string& temporary, const std::string& arguments) {
  const std::string command = "cd " + folder + " && TMPDIR=" + temporary + " " + KVA_BINARY_DIR +
                              "/cli/kvamigrate >out.txt 2>err.txt " + arguments;
  return WEXITSTATUS(std::system(command.c_str()));
}

}  // namespace tests
