// kvamigrate, the migration wizard on the command line.
#include <exception>
#include <new>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/Completion.h"
#include "cli/Console.h"
#include "cli/Help.h"
#include "cli/Interrupt.h"
#include "cli/ManPage.h"
#include "cli/StandardStreams.h"
#include "win/Diagnostics.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace cli {
namespace {

// Lets the C library keep the memory of one file for the next, up to 64 MB. Otherwise it returns the memory
// to the system, which clears it when it is asked for again.
void KeepFreedMemory() {
#ifdef __GLIBC__
  constexpr int kMegabyte = 1 << 20;
  mallopt(M_MMAP_THRESHOLD, 4 * kMegabyte);
  mallopt(M_TRIM_THRESHOLD, 64 * kMegabyte);
  mallopt(M_TOP_PAD, kMegabyte);
#endif
}

void SetEnvironment(const TCommandLine& line) {
  (void)win::SetACP(line.CodePage);
  for (const auto& [letter, folder] : line.Drives)
    if (!win::MapDrive(letter, folder))
      throw EUsage(std::string("--drive ") + letter + "=" + folder + ": there is no such folder.");
}

int RunCommand(const TCommandLine& line) {
  SetEnvironment(line);
  switch (line.Command) {
    case TCommand::Replace:
      return RunReplace(line);
    case TCommand::Check:
      return RunCheck(line);
    case TCommand::Rules:
      return RunRules();
    case TCommand::Restore:
      return RunRestore(line);
    case TCommand::FormToText:
    case TCommand::FormToBinary:
      return RunForm(line);
    case TCommand::Catalogue:
      return RunCatalogue(line);
    case TCommand::Wizard:
      return RunWizard(line);
    case TCommand::Completion:
      PrintText(CompletionScript(line.Arguments[0]));
      return kExitOk;
    case TCommand::ManPage:
      PrintText(ManPage());
      return kExitOk;
    case TCommand::Help:
      break;  // already printed by the parser
  }
  return kExitOk;
}

int Main(int argc, char** argv) {
  KeepFreedMemory();
  PrepareStreams();
  win::SetDiagnosticsSink(Complain);
  try {
    const auto parsed = ParseCommandLine(ProgramArguments(argc, argv));
    const int* const status = std::get_if<int>(&parsed);
    return status ? *status : RunCommand(std::get<TCommandLine>(parsed));
  } catch (const EUsage& error) {
    Complain(error.what());
    return kExitUsage;
  } catch (const rtl::EAbort& error) {
    Complain(error.what());
    return kExitSignal + PendingInterrupt();
  } catch (const EOutput& error) {
    // Like other programs, end silently if the reader of the pipe has closed it.
    if (error.IsBrokenPipe()) return kExitBrokenPipe;
    Complain(error.what());
    return kExitException;
  } catch (const std::bad_alloc&) {
    ComplainOutOfMemory({});
    return kExitException;
  } catch (const std::exception& error) {
    Complain(error.what());
    return kExitException;
  }
}

}  // namespace
}  // namespace cli

int main(int argc, char** argv) {
  return cli::Main(argc, argv);
}
