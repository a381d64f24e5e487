// What the program says: results on standard output, everything else on standard error.
//
// All texts for people pass through here. Nothing that a terminal would act on gets through: control
// characters in names of files, in project files and in undo files come out as "\xNN".
#pragma once

#include <string_view>

#include "rtl/text/Exceptions.h"

namespace cli {

// Standard output cannot be written.
class EOutput : public rtl::EWriteError {
 public:
  explicit EOutput(int error);
  // True if the reader of a pipe is gone.
  bool IsBrokenPipe() const { return FIsBrokenPipe; }

 private:
  bool FIsBrokenPipe;
};

// To be called first. A standard stream that is closed becomes one on which reading or writing fails, so
// that no file takes its number. A write to a closed pipe, or beyond the limit for the size of a file,
// becomes an error instead of ending the process.
void PrepareConsole();

// Writes bytes to standard output exactly as they are. Raises EOutput.
void WriteOutput(std::string_view bytes);
// Writes a line for people to standard output. Raises EOutput.
void PrintLine(std::string_view text);
// Writes help and other texts of the program's own to standard output. Raises EOutput.
inline void PrintText(std::string_view text) {
  WriteOutput(text);
}

// Prints how a run ended - a success only if it is not `isQuiet` - and returns the exit status. If standard
// output cannot be written, the outcome goes to standard error, and the status is that of an exception.
int PrintOutcome(bool succeeded, std::string_view good, std::string_view bad, bool isQuiet);

// Write a line for people to standard error, Complain with the program's name before it. A failure is
// ignored, because there is nobody left to tell.
void Note(std::string_view text);
void Complain(std::string_view text);
// Says that the memory is exhausted while `fileName`, which may be empty, was dealt with. Takes no memory
// that it cannot do without.
void ComplainOutOfMemory(std::string_view fileName) noexcept;

// Whether control sequences may be written to standard error: it is a terminal that knows them, and the user
// has not asked for none (TERM=dumb, NO_COLOR).
bool HasControlSequences();

}  // namespace cli
