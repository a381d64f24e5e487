// kvamigrate wizard: runs the desktop program.
#include "cli/Commands.h"
#include "cli/DesktopProgram.h"

namespace cli {
namespace {

std::vector<std::string> Arguments(const TCommandLine& line) {
  std::vector<std::string> arguments = {"--wizard", "--codepage", std::to_string(line.CodePage)};
  for (const auto& [letter, folder] : line.Drives)
    arguments.insert(arguments.end(), {"--drive", std::string(1, letter) + "=" + folder});
  if (!line.Catalogue.empty()) arguments.insert(arguments.end(), {"--catalogue", line.Catalogue});
  if (!line.Arguments.empty()) arguments.insert(arguments.end(), {"--", line.Arguments[0]});
  return arguments;
}

}  // namespace

int RunWizard(const TCommandLine& line) {
  const int status = RunDesktopProgram("kvawizard", Arguments(line));
  if (status >= 0) return status;
  throw rtl::Exception("The wizard's dialog cannot be opened: the program kvawizard is not installed.");
}

}  // namespace cli
