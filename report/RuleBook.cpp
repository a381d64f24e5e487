#include "report/RuleBook.h"

#include <algorithm>

#include "MigWizard/passes/FindingRules.h"

namespace report {

std::string RuleBook() {
  std::string text =
      "# Rules\n\n"
      "What a run reports. This page is made from the table of rules by `kvamigrate rules`.\n\n"
      "An error is something that does not load, compile or work after the run. A warning is something that "
      "may have\n"
      "been lost. A note is for information. `kvamigrate check` fails on errors and warnings.\n";
  for (const mig::TRule& rule : mig::Rules()) {
    std::string message(rule.Message);
    std::replace(message.begin(), message.end(), '{', '<');
    std::replace(message.begin(), message.end(), '}', '>');
    text.append("\n## ").append(rule.Name).append("\n\n");
    text.append("Usually a").append(rule.Level == mig::TLevel::Error ? "n " : " ");
    text.append(mig::LevelName(rule.Level)).append(". ").append(rule.About).append("\n\n");
    text.append("Message: `").append(message).append("`\n\n");
    text.append(rule.Advice).append("\n\n```pascal\n").append(rule.Example).append("\n```\n");
  }
  return text;
}

}  // namespace report
