// Output of the program: results on standard output, everything else on standard error.
//
// All text for people passes through this unit, which keeps control characters from the terminal: in names
// of files, in project files and in undo files they are printed as "\xNN".
#pragma once

#include <string_view>

#include "rtl/text/Exceptions.h"

namespace cli {

// Standard output cannot be written.
class EOutput : public rtl::EWriteError {
 public:
  explicit EOutput(int error);
  // Returns whether the reader of a pipe has closed it.
  bool IsBrokenPipe() const { return FIsBrokenPipe; }

 private:
  bool FIsBrokenPipe;
};

// Writes bytes to standard output exactly as they are. Raises EOutput.
void WriteOutput(std::string_view bytes);
// Writes a line for people to standard output. Raises EOutput.
void PrintLine(std::string_view text);
// Writes help and other texts of the program itself to standard output. Raises EOutput.
inline void PrintText(std::string_view text) {
  WriteOutput(text);
}

// Prints the outcome of a run and returns the exit status. A success is not printed if `isQuiet`. If
// standard output cannot be written, prints the outcome on standard error and returns kExitException.
int PrintOutcome(bool succeeded, std::string_view good, std::string_view bad, bool isQuiet);

// Write a line for people to standard error; Complain writes the program's name before it. A failure is
// ignored, because there is no other way to report it.
void Note(std::string_view text);
void Complain(std::string_view text);
// Reports that memory ran out while `fileName`, which may be empty, was processed. Allocates no memory that
// it can do without.
void ComplainOutOfMemory(std::string_view fileName) noexcept;

// Returns whether control sequences may be written to standard error: it is a terminal that supports them,
// and the user has not disabled them (TERM=dumb, NO_COLOR).
bool HasControlSequences();

}  // namespace cli
