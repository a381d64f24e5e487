// The table of the commands of kvamigrate and their options. The parser, the help texts, the completions
// for shells and the manual page are generated from it, so a new option is one row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/CommandLine.h"

namespace cli {

// The kind of value of an option or an argument, for completion.
enum class TValueKind {
  None,    // nothing: a flag
  Text,    // any text
  Choice,  // one of the words of ValueName, in any case: "bde|ibx"
  Folder,
  File,  // a file or a folder
};

struct TOption {
  std::string_view Name;  // "--folder"
  TValueKind Kind;
  std::string_view ValueName;  // "DIR"; empty for a flag
  std::string_view About;      // one sentence without its full stop
  // Stores the value, which is empty for a flag. A choice is passed in lower case. Raises EUsage.
  void (*Store)(TCommandLine& line, const std::string& value);
  bool IsRepeatable = false;
  char Short = 0;  // 'q' for -q
  std::string_view Parts =
      {};  // of a text: the words of which it consists, with commas between: "uses|layout"
};

struct TArgument {
  std::string_view Name;  // "INPUT"; empty if the command takes none
  TValueKind Kind = TValueKind::None;
  std::string_view About;
  int Least = 0;
  int Most = 0;
};

struct TCommandRow {
  TCommand Command;
  std::string_view Name;   // "replace"; with two words: "form to-text"
  std::string_view About;  // one sentence without its full stop
  std::string_view Usage;  // the part after the name
  TArgument Argument;
  std::vector<TOption> Options;
  std::string_view Footer;             // explanations and examples; ends without a line end
  std::string_view DrivesFooter = {};  // follows Footer where drives can be mapped; empty elsewhere
  bool IsHidden = false;               // only used by the build
};

const std::vector<TCommandRow>& Commands();
// Returns the option that every command accepts and that is handled before all others: --help.
const TOption& HelpOption();

// Returns the names of the steps with commas between them, as --complete takes them.
std::string StepNames(const completion::TSteps& steps);

// Returns the words of a choice: "bde", "ibx".
std::vector<std::string_view> ChoicesOf(std::string_view valueName);

}  // namespace cli
