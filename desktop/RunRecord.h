// Records the changes of a run: the bytes of each file before and after it.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace desktop {

class TRunRecord {
 public:
  struct TChange {
    std::string FileName;  // full Windows path
    std::string Before;    // the file's bytes; empty if it did not exist
    std::string After;
  };

  void Clear();
  bool IsEmpty() const { return FNames.empty() && FWarnings.empty(); }
  // Call this when the run reaches a file and before it changes it. Only the first call for a file has an
  // effect.
  void Note(std::string_view fileName);
  void NoteLog(std::string_view logFileName) { FLogFileName = logFileName; }
  void NoteWarning(std::string_view message) { FWarnings.append(message).append("\n"); }

  // Returns the files whose bytes differ now, in the order of the run.
  std::vector<TChange> Changes() const;
  std::string Log() const;  // UTF-8; empty if no log was written
  const std::string& Warnings() const { return FWarnings; }

 private:
  std::vector<std::string> FNames;
  std::unordered_map<std::string, std::string> FBefore;  // by upper-cased name
  std::string FLogFileName;
  std::string FWarnings;
};

}  // namespace desktop
