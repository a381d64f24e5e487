// What tests do differently on each host; tests/posix and tests/windows have the sources.
#pragma once

#include <optional>
#include <string>

namespace tests {

// Sets an environment variable; removes it if there is no value.
void SetVariable(const char* name, const std::optional<std::string>& value);

// Sets an environment variable for its own lifetime.
class TVariable {
 public:
  TVariable(const char* name, const std::string& value) : FName(name), FPrevious(Get(name)) {
    SetVariable(name, value);
  }
  ~TVariable() { SetVariable(FName, FPrevious); }
  TVariable(const TVariable&) = delete;
  TVariable& operator=(const TVariable&) = delete;

 private:
  static std::optional<std::string> Get(const char* name);

  const char* FName;
  std::optional<std::string> FPrevious;
};

// The variable with the folder for temporary files.
extern const char* const kTemporaryVariable;

// Creates a symbolic link to a file or folder. Returns false if this machine has none.
bool MakeLink(const std::string& text, const std::string& path);

// Returns whether this machine has a shell of POSIX and git, to apply patches.
bool HasGit();

// Runs kvamigrate in `folder`, with its temporary files in `temporary`, standard output in out.txt and
// standard error in err.txt. `arguments` is a piece of a command line for sh: words, some of them in '...',
// and redirections. Returns the exit status.
int RunProgram(const std::string& folder, const std::string& temporary, const std::string& arguments);

}  // namespace tests
