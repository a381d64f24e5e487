#include "cli/Console.h"

#include <cstdlib>
#include <new>
#include <string>

#include "cli/CommandLine.h"
#include "cli/Progress.h"
#include "cli/StandardStreams.h"
#include "win/Diagnostics.h"

namespace cli {

EOutput::EOutput(int error)
    : EWriteError("Cannot write to standard output: " + StreamError(error) + "."),
      FIsBrokenPipe(cli::IsBrokenPipe(error)) {}

void WriteOutput(std::string_view bytes) {
  ClearProgress();
  if (const int error = WriteStream(TStream::Output, bytes); error != 0) throw EOutput(error);
}

void PrintLine(std::string_view text) {
  WriteOutput(win::PrintableName(text) + "\n");
}

int PrintOutcome(bool succeeded, std::string_view good, std::string_view bad, bool isQuiet) {
  ClearProgress();
  try {
    if (!succeeded) PrintLine(bad);
    if (succeeded && !isQuiet) PrintLine(good);
    return succeeded ? kExitOk : kExitPart;
  } catch (const EOutput& error) {
    Complain(error.what());
    Note(succeeded ? good : bad);
    return kExitException;
  }
}

void Note(std::string_view text) {
  ClearProgress();
  try {
    (void)WriteStream(TStream::Error, win::PrintableName(text) + "\n");
  } catch (const std::bad_alloc&) {
    ComplainOutOfMemory({});
  }
}

void Complain(std::string_view text) {
  try {
    Note(std::string("kvamigrate: ").append(text));
  } catch (const std::bad_alloc&) {
    ComplainOutOfMemory({});
  }
}

void ComplainOutOfMemory(std::string_view fileName) noexcept {
  (void)WriteStream(TStream::Error, "kvamigrate: ");
  try {
    if (!fileName.empty()) (void)WriteStream(TStream::Error, win::PrintableName(fileName) + ": ");
  } catch (const std::bad_alloc&) {  // print the message without the name
  }
  (void)WriteStream(TStream::Error, "There is not enough memory.\n");
}

bool HasControlSequences() {
  const char* const noColor = std::getenv("NO_COLOR");
  return IsTerminal(TStream::Error) && !(noColor && *noColor);
}

}  // namespace cli
