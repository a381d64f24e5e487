// What a run has done to the files: their bytes before it, taken as the run comes to them, and after it.
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
    std::string Before;    // the file's bytes; empty where there was none
    std::string After;
  };

  void Clear();
  bool IsEmpty() const { return FNames.empty() && FWarnings.empty(); }
  // The run comes to this file, which is as it was before. Once a file counts.
  void Note(std::string_view fileName);
  void NoteLog(std::string_view logFileName) { FLogFileName = logFileName; }
  void NoteWarning(std::string_view message) { FWarnings.append(message).append("\n"); }

  // The files whose bytes are other ones now, in the order of the run.
  std::vector<TChange> Changes() const;
  std::string Log() const;  // its text, UTF-8; empty where none was written
  const std::string& Warnings() const { return FWarnings; }

 private:
  std::vector<std::string> FNames;
  std::unordered_map<std::string, std::string> FBefore;  // by upper-cased name
  std::string FLogFileName;
  std::string FWarnings;
};

}  // namespace desktop
