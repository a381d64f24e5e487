// Asks which units to replace, each with its forms, as `git add -p` asks about the hunks of a file.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "MigWizard/run/Replacer.h"
#include "MigWizard/run/RunSelection.h"
#include "cli/CommandLine.h"

namespace cli {

class TInteractiveChoice {
 public:
  // `folder` is the full Windows path that shown names are relative to. `line` and `replacer` must outlive
  // the object. Standard input and standard output must be terminals.
  TInteractiveChoice(const TCommandLine& line, mig::TComponentReplacer& replacer, const std::string& folder);
  // Ends the limitation of runs.
  ~TInteractiveChoice();
  TInteractiveChoice(const TInteractiveChoice&) = delete;
  TInteractiveChoice& operator=(const TInteractiveChoice&) = delete;

  // Previews the run, shows the changes of each unit and its forms, and asks whether to make them. Limits all
  // following runs to the accepted changes. Returns false if all were declined. Call once. Raises EOutput,
  // rtl::EAbort if a signal was received, and the exceptions of Preview.
  bool Ask();

 private:
  // A unit with its forms, or a file that is alone: those of its files that would change.
  struct TQuestion {
    size_t Group;
    std::string Names, Patches;
  };

  std::vector<TQuestion> MakeQuestions();
  char ReadAnswer(const std::string& prompt) const;

  const TCommandLine& FLine;
  mig::TComponentReplacer& FReplacer;
  const std::string FFolder;
  mig::TRunPlan FPlan;
  std::optional<mig::TRunSelection> FSelection;
};

}  // namespace cli
