// kvamigrate wizard: replaces this process by the desktop program.
#include <filesystem>
#include <unistd.h>

#include "cli/Commands.h"

namespace cli {
namespace {

constexpr char kDesktopProgram[] = "kvawizard";

// Returns the path of the desktop program beside this one, or else its name, to be found in the search
// path.
std::string DesktopProgram() {
  std::error_code error;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto beside = self.parent_path() / kDesktopProgram;
  return !error && std::filesystem::exists(beside, error) ? beside.string() : kDesktopProgram;
}

std::vector<std::string> Arguments(const TCommandLine& line) {
  std::vector<std::string> arguments = {kDesktopProgram, "--wizard", "--codepage",
                                        std::to_string(line.CodePage)};
  for (const auto& [letter, folder] : line.Drives)
    arguments.insert(arguments.end(), {"--drive", std::string(1, letter) + "=" + folder});
  if (!line.Catalogue.empty()) arguments.insert(arguments.end(), {"--catalogue", line.Catalogue});
  if (!line.Arguments.empty()) arguments.insert(arguments.end(), {"--", line.Arguments[0]});
  return arguments;
}

}  // namespace

int RunWizard(const TCommandLine& line) {
  std::vector<std::string> arguments = Arguments(line);
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  execvp(DesktopProgram().c_str(), pointers.data());
  throw rtl::Exception("The wizard's dialog cannot be opened: the program kvawizard is not installed.");
}

}  // namespace cli
