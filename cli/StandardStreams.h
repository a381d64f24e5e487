// The arguments, the standard streams and the terminal of the process, as the host has them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

enum class TStream { Output, Error };

// Returns the arguments of the process in UTF-8, without the program's name. `argc` and `argv` are those of
// main().
std::vector<std::string> ProgramArguments(int argc, char** argv);

// Prepares the streams; call it first. A closed standard stream is replaced by one on which reading or
// writing fails, so that no file takes its number. Writing to a closed pipe, or beyond the limit for the size
// of a file, becomes an error instead of ending the process.
void PrepareStreams();

// Writes bytes to the stream exactly as they are; to a console, as UTF-8 text. Returns 0, or the host's
// number of the error. Allocates no memory.
int WriteStream(TStream stream, std::string_view bytes) noexcept;
// Returns the text of such a number, without a full stop: "No space left on device".
std::string StreamError(int error);
// Returns whether such a number says that the reader of a pipe has closed it.
bool IsBrokenPipe(int error);

// Returns whether standard input and standard output are terminals, so that the user can be asked.
bool CanAsk();
enum class TInput {
  Byte,
  End,         // of the input, or it cannot be read
  Interrupted  // by the user: see cli/Interrupt.h
};
// Waits for a byte of standard input and reads it. On Windows carriage returns are left out.
TInput ReadInput(char& byte);

// Returns whether the stream is a terminal that supports control sequences.
bool IsTerminal(TStream stream);
// Returns the number of columns of the terminal, or 80 if it is unknown.
size_t TerminalWidth(TStream stream);

}  // namespace cli
