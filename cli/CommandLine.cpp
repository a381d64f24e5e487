#include "cli/CommandLine.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/Help.h"
#include "cli/Nearest.h"
#include "cli/Options.h"
#include "rtl/text/SysUtils.h"

namespace cli {
namespace {

using TWords = std::vector<std::string>;

constexpr std::string_view kVersionOption = "--version";

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

// Raises EUsage for an option where the command is expected.
[[noreturn]] void RefuseOptionBeforeCommand(const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  for (const TCommandRow& command : Commands())
    for (const TOption& option : command.Options)
      if (option.Name == name || (name.size() == 2 && option.Short == name[1]))
        throw EUsage("The option " + name + " goes after the command.");
  throw EUsage("There is no option " + name + DidYouMean(name, {HelpOption().Name, kVersionOption}));
}

// Returns the command that `words` begin with, and removes its name from them; null if they are empty. Raises
// EUsage if there is no such command.
const TCommandRow* TakeCommand(TWords& words) {
  if (words.empty()) return nullptr;
  if (words[0].starts_with('-')) RefuseOptionBeforeCommand(words[0]);
  std::vector<std::string_view> names = {kVersionOption}, secondWords, ofTwoWords;
  for (const TCommandRow& command : Commands()) {
    const std::array<std::string, 2> typed = {words[0], words.size() > 1 ? words[0] + " " + words[1] : ""};
    for (size_t count = 1; count <= typed.size(); ++count) {
      if (command.Name != typed[count - 1]) continue;
      words.erase(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(count));
      return &command;
    }
    if (command.IsHidden) continue;
    const size_t blank = command.Name.find(' ');
    names.push_back(command.Name.substr(0, blank));
    if (blank == std::string_view::npos) continue;
    ofTwoWords.push_back(command.Name);
    if (names.back() == words[0]) secondWords.push_back(command.Name.substr(blank + 1));
  }
  if (secondWords.empty()) {
    for (const std::string_view name : ofTwoWords) {
      if (name.ends_with(" " + words[0]))
        throw EUsage("There is no command " + Quoted(words[0]) + DidYouMean(name, {name}));
    }
    names.insert(names.end(), ofTwoWords.begin(), ofTwoWords.end());
    throw EUsage("There is no command " + Quoted(words[0]) + DidYouMean(words[0], names));
  }
  if (words.size() == 1 || words[1].starts_with('-')) {
    std::string list;
    for (const std::string_view word : secondWords) list.append(list.empty() ? "" : " or ").append(word);
    throw EUsage("The command " + Quoted(words[0]) + " needs a second word: " + list + ".");
  }
  throw EUsage("There is no command " + Quoted(words[0] + " " + words[1]) +
               DidYouMean(words[1], secondWords));
}

// The options and arguments of one command.
class TParser {
 public:
  TParser(const TCommandRow& command, TWords words) : FCommand(command), FWords(std::move(words)) {}

  TCommandLine Parse() {
    FLine.Command = FCommand.Command;
    bool areOptions = true;
    while (FNext < FWords.size()) {
      const std::string word = FWords[FNext++];
      if (areOptions && word == "--") {
        areOptions = false;
      } else if (areOptions && word.size() > 1 && word[0] == '-') {
        ParseOption(word);
      } else {
        FLine.Arguments.push_back(word);
      }
    }
    CheckArguments();
    return std::move(FLine);
  }

 private:
  const TOption* Find(std::string_view name) const {
    for (const TOption& option : FCommand.Options)
      if (option.Name == name || (name.size() == 2 && name[0] == '-' && option.Short == name[1]))
        return &option;
    return nullptr;
  }

  // --name, --name VALUE, --name=VALUE, -n, -n VALUE, -nVALUE
  void ParseOption(const std::string& word) {
    const bool isShort = word[1] != '-';
    const std::string name = isShort ? word.substr(0, 2) : word.substr(0, word.find('='));
    std::optional<std::string> value;
    if (name.size() < word.size()) value = word.substr(name.size() + (isShort ? 0 : 1));
    const TOption* const option = Find(name);
    if (!option) RefuseOption(name);
    if (!option->IsRepeatable && !FGiven.insert(option).second)
      throw EUsage("The option " + name + " is given twice.");
    if (option->Kind == TValueKind::None) {
      if (value)
        throw EUsage("The option " + name + " takes no value" +
                     (isShort ? "; short options are given one by one." : "."));
      option->Store(FLine, {});
      return;
    }
    if (!value && FNext < FWords.size() && !Find(FWords[FNext])) value = FWords[FNext++];
    if (!value)
      throw EUsage("The option " + name + " needs a value: " + std::string(option->ValueName) + ".");
    option->Store(FLine,
                  option->Kind == TValueKind::Choice ? Choice(name, *value, option->ValueName) : *value);
  }

  [[noreturn]] void RefuseOption(const std::string& name) const {
    std::vector<std::string_view> names = {HelpOption().Name};
    for (const TOption& option : FCommand.Options) names.push_back(option.Name);
    throw EUsage("The command " + Quoted(FCommand.Name) + " has no option " + name + DidYouMean(name, names));
  }

  static std::string Choice(std::string_view name, const std::string& value, std::string_view valueName) {
    std::string list;
    for (const std::string_view choice : ChoicesOf(valueName)) {
      if (rtl::SameText(choice, value)) return std::string(choice);
      list.append(list.empty() ? "" : " or ").append(choice);
    }
    throw EUsage(std::string(name) + " takes " + list + ", not " + Quoted(value) +
                 DidYouMean(value, ChoicesOf(valueName)));
  }

  void CheckArguments() const {
    const TArgument& argument = FCommand.Argument;
    const int count = static_cast<int>(FLine.Arguments.size());
    if (count < argument.Least) throw EUsage("An argument is missing: " + std::string(argument.Name) + ".");
    if (count > argument.Most)
      throw EUsage("The argument " + Quoted(FLine.Arguments[static_cast<size_t>(argument.Most)]) +
                   " is one too many.");
    if (argument.Kind == TValueKind::Choice)
      (void)Choice("The command " + Quoted(FCommand.Name), FLine.Arguments[0], argument.Name);
  }

  const TCommandRow& FCommand;
  const TWords FWords;
  size_t FNext = 0;
  std::set<const TOption*> FGiven;
  TCommandLine FLine;
};

// Returns whether one of the words is the option. If it is that for the help or the version, mistakes in
// other options are ignored.
bool HasOption(const TWords& words, std::string_view name) {
  const auto end = std::find(words.begin(), words.end(), "--");
  return std::find(words.begin(), end, name) != end;
}

// Prints the help of the command that `words` begin with, of all commands with that first word, or the
// general help. With `isStrict`, more words are refused.
void PrintHelp(TWords words, bool isStrict) {
  std::erase_if(words, [](const std::string& word) { return word.starts_with('-'); });
  std::string help;
  for (const TCommandRow& command : Commands()) {
    if (words.size() != 1 || !command.Name.starts_with(words[0] + " ")) continue;
    help.append(help.empty() ? "" : "\n").append(CommandHelp(command));
  }
  if (!help.empty()) return PrintText(help);
  const TCommandRow* const command = TakeCommand(words);
  if (isStrict && !words.empty()) throw EUsage("The argument " + Quoted(words[0]) + " is one too many.");
  PrintText(command ? CommandHelp(*command) : GeneralHelp());
}

}  // namespace

std::variant<TCommandLine, int> ParseCommandLine(std::vector<std::string> words) {
  const TCommandRow* command = nullptr;
  try {
    if (HasOption(words, kVersionOption)) {
      PrintText(VersionText() + "\n");
      return kExitOk;
    }
    if (HasOption(words, "--help") || HasOption(words, "-h")) {
      PrintHelp(words, /*isStrict=*/false);
      return kExitOk;
    }
    command = TakeCommand(words);
    if (!command) throw EUsage("A command is missing.");
    TCommandLine line = TParser(*command, words).Parse();
    if (line.Command != TCommand::Help) return line;
    PrintHelp(line.Arguments, /*isStrict=*/true);
    return kExitOk;
  } catch (const EUsage& error) {
    Complain(error.what());
    Note("See \"kvamigrate help" +
         (command && command->Command != TCommand::Help ? " " + std::string(command->Name) : "") + "\".");
    return kExitUsage;
  }
}

}  // namespace cli
