#include "cli/InteractiveChoice.h"

#include <algorithm>
#include <cstdio>

#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Interrupt.h"
#include "cli/PatchPrinter.h"
#include "cli/StandardStreams.h"
#include "rtl/text/SysUtils.h"
#include "win/Diagnostics.h"

namespace cli {
namespace {

constexpr char kKeys[] = "[y,n,a,d,q,?]? ";
constexpr char kAnswers[] =
    "y - replace this unit and its forms\n"
    "n - leave them as they are\n"
    "a - replace them, and all that follow\n"
    "d - leave them, and all that follow\n"
    "q - quit asking: the same as d\n"
    "? - show this help\n"
    "Nothing is replaced before the last answer. Ctrl-C stops, and nothing is replaced at all.\n";

// Returns a line of standard input without its end; at the end of the input "q".
std::string ReadLine() {
  std::string text;
  for (;;) {
    char c = '\0';
    const TInput input = ReadInput(c);
    if (input == TInput::Interrupted) PrintLine("");  // ends the line of the question
    StopIfInterrupted("Stopped: no file was replaced.");
    if (input == TInput::End) return text.empty() ? "q" : text;
    if (c == '\n') return text;
    text += c;
  }
}

}  // namespace

TInteractiveChoice::TInteractiveChoice(const TCommandLine& line, mig::TComponentReplacer& replacer,
                                       const std::string& folder)
    : FLine(line), FReplacer(replacer), FFolder(folder) {}

TInteractiveChoice::~TInteractiveChoice() {
  FReplacer.SetSelection(nullptr);
}

bool TInteractiveChoice::Ask() {
  const std::vector<TQuestion> questions = MakeQuestions();
  FSelection.emplace(FPlan);
  FReplacer.SetSelection(&*FSelection);
  bool isAny = false;
  char answer = 0;
  for (size_t i = 0; i < questions.size(); ++i) {
    if (answer != 'a' && answer != 'd') {
      WriteOutput(ShownPatch(questions[i].Patches, FLine.Colour));
      const std::string number = "(" + std::to_string(i + 1) + "/" + std::to_string(questions.size()) + ") ";
      answer = ReadAnswer(number + "Replace " + questions[i].Names + " " + kKeys);
    }
    const bool isAccepted = answer == 'y' || answer == 'a';
    if (!isAccepted) FSelection->LeaveOutGroup(questions[i].Group);
    isAny = isAny || isAccepted;
  }
  return isAny || questions.empty();
}

// Returns one question for each group of the plan with a changed file, in the order of the run.
std::vector<TInteractiveChoice::TQuestion> TInteractiveChoice::MakeQuestions() {
  std::unordered_map<std::string, std::string> patches;  // by the file's name
  const auto onConverted = FReplacer.OnConverted;
  const auto onMissingForm = FReplacer.OnMissingForm;
  const auto onOtherForm = FReplacer.OnOtherForm;
  FReplacer.OnConverted = [&](const std::string& fileName, const mig::TFileConversion& conversion,
                              bool isChanged) {
    if (isChanged) patches[fileName] = MakePatch(fileName, conversion, FFolder, FLine.IgnoreSpace);
  };
  FReplacer.OnMissingForm = nullptr;
  FReplacer.OnOtherForm = nullptr;
  FReplacer.Preview(&FPlan);
  FReplacer.OnConverted = onConverted;
  FReplacer.OnMissingForm = onMissingForm;
  FReplacer.OnOtherForm = onOtherForm;

  std::vector<TQuestion> questions;
  std::unordered_map<size_t, size_t> places;  // in `questions`, by group
  for (const mig::TPlannedFile& file : FPlan.Files()) {
    if (!file.IsChanged) continue;
    const auto [place, isNew] = places.emplace(file.Group, questions.size());
    if (isNew) questions.push_back({file.Group, {}, {}});
    TQuestion& question = questions[place->second];
    question.Names.append(question.Names.empty() ? "" : ", ").append(ShownName(file.FileName, FFolder));
    question.Patches += patches[file.FileName];
  }
  return questions;
}

// Returns one of y, n, a and d.
char TInteractiveChoice::ReadAnswer(const std::string& prompt) const {
  for (;;) {
    WriteOutput(win::PrintableName(prompt));
    std::string answer = rtl::LowerCase(rtl::Trim(ReadLine()));
    if (answer == "q") answer = "d";
    if (answer == "y" || answer == "n" || answer == "a" || answer == "d") return answer[0];
    PrintText(kAnswers);
  }
}

}  // namespace cli
