// Identifies the findings of a file independently of their places, so that they stay the same after lines
// have moved.
//
//   TFingerprints fingerprints(PathOf(report, file));
//   for (const mig::TFinding& finding : file.Findings) Use(fingerprints.Next(finding));
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "MigWizard/passes/Findings.h"

namespace report {

class TFingerprints {
 public:
  // `path` is the file's path relative to the folder of the run, with "/".
  explicit TFingerprints(std::string_view path) : FPath(path) {}

  // Returns the fingerprint of the file's next finding: 16 hexadecimal digits. Call this for all findings in
  // their order, because their number distinguishes otherwise equal ones.
  std::string Next(const mig::TFinding& finding);

 private:
  const std::string FPath;
  std::map<std::string, int> FCounts;
};

}  // namespace report
