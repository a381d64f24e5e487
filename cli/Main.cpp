// kvamigrate, the migration wizard on the command line.
#include <cstdio>
#include <exception>

#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/Interrupt.h"
#include "win/Diagnostics.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace cli {
namespace {

void SetEnvironment(const TCommandLine& line) {
  if (!win::SetACP(line.CodePage))
    throw EUsage("Code page " + std::to_string(line.CodePage) + " is not known.");
  for (const auto& [letter, folder] : line.Drives)
    if (!win::MapDrive(letter, folder))
      throw EUsage(std::string("--drive ") + letter + "=" + folder + ": no such folder.");
}

int RunCommand(const TCommandLine& line) {
  SetEnvironment(line);
  switch (line.Command) {
    case TCommand::Replace:
      return RunReplace(line);
    case TCommand::Restore:
      return RunRestore(line);
    case TCommand::FormToText:
    case TCommand::FormToBinary:
      return RunForm(line);
    case TCommand::Catalogue:
      return RunCatalogue(line);
    case TCommand::Wizard:
      return RunWizard(line);
  }
  return kExitUsage;
}

void PrintError(std::string_view message) {
  std::fprintf(stderr, "kvamigrate: %.*s\n", static_cast<int>(message.size()), message.data());
}

int Main(int argc, char** argv) {
  win::SetDiagnosticsSink(PrintError);
  const auto parsed = ParseCommandLine(argc, argv);
  if (const int* status = std::get_if<int>(&parsed)) return *status;
  try {
    return RunCommand(std::get<TCommandLine>(parsed));
  } catch (const EUsage& error) {
    PrintError(error.what());
    return kExitUsage;
  } catch (const rtl::EAbort& error) {
    PrintError(error.what());
    return kExitSignal + PendingInterrupt();
  } catch (const std::exception& error) {
    PrintError(error.what());
    return kExitException;
  }
}

}  // namespace
}  // namespace cli

int main(int argc, char** argv) {
  return cli::Main(argc, argv);
}
