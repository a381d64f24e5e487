// The commands of kvamigrate with their options, as one table. The parser, the help texts, the completions
// for shells and the manual page are all made from it: a new option is one row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/CommandLine.h"

namespace cli {

// What an option or an argument takes, for completion.
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
  // Stores the value, which is empty for a flag. A choice comes in lower case. Raises EUsage.
  void (*Store)(TCommandLine& line, const std::string& value);
  bool IsRepeatable = false;
  char Short = 0;  // 'q' for -q
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
  std::string_view Name;   // "replace"; of two words: "form to-text"
  std::string_view About;  // one sentence without its full stop
  std::string_view Usage;  // what follows the name
  TArgument Argument;
  std::vector<TOption> Options;
  std::string_view Footer;  // explanations and examples; ends without a line end
  bool IsHidden = false;    // for the build alone
};

const std::vector<TCommandRow>& Commands();
// The options that every command takes, and that are dealt with before anything else: --help.
const TOption& HelpOption();

// Returns the words of a choice: "bde", "ibx".
std::vector<std::string_view> ChoicesOf(std::string_view valueName);

}  // namespace cli
