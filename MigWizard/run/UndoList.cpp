#include "MigWizard/run/UndoList.h"

namespace mig {

bool TUndoList::Add(const std::string& fileName, const std::string& backupName) {
  const bool isNew = FLines.Values(fileName).empty();
  FLines.SetValue(fileName, backupName);
  return isNew;
}

std::string TUndoList::FirstAmbiguousLine() const {
  for (int i = 0; i < FLines.Count(); ++i) {
    const std::string& line = FLines[i];
    if (line.find('=') != line.rfind('=') || line.find_first_of("\r\n") != std::string::npos) return line;
  }
  return {};
}

}  // namespace mig
