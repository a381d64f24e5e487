// Records a run while it is going on: the bytes of each file before it, its log, its warnings.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "desktop/ReviewSet.h"

namespace desktop {

class TRunRecord {
 public:
  bool IsEmpty() const { return FNames.empty() && FWarnings.empty(); }
  // Call this when the run reaches a file and before it changes it. Only the first call for a file has an
  // effect.
  void Note(std::string_view fileName);
  void NoteLog(std::string_view logFileName) { FLogFileName = logFileName; }
  void NoteWarning(std::string_view message) { FWarnings.append(message).append("\n"); }

  // Reads the files again and returns those whose bytes differ now, in the order of the run. The record
  // forgets its files. May be called on any thread.
  std::vector<TReviewSet::TVersions> TakeChanges();
  std::string Log() const;  // reads the log: UTF-8; empty if none was written
  const std::string& Warnings() const { return FWarnings; }

 private:
  std::vector<std::string> FNames;
  std::unordered_map<std::string, std::string> FBefore;  // by upper-cased name
  std::string FLogFileName;
  std::string FWarnings;
};

}  // namespace desktop
