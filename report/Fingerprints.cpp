#include "report/Fingerprints.h"

#include <cstdint>
#include <cstdio>

#include "MigWizard/passes/FindingRules.h"

namespace report {

std::string TFingerprints::Next(const mig::TFinding& finding) {
  std::string text(mig::RuleOf(finding.Rule).Name);
  for (const std::string* const part :
       {&FPath, &finding.Object, &finding.OldClass, &finding.Subject, &finding.Value})
    text.append("\n").append(*part);
  text.append("\n").append(std::to_string(FCounts[text]++));
  uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : text) hash = (hash ^ static_cast<uint8_t>(c)) * 0x100000001B3U;
  char hex[17];
  std::snprintf(hex, sizeof hex, "%016llx", static_cast<unsigned long long>(hash));
  return hex;
}

}  // namespace report
