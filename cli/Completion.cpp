#include "cli/Completion.h"

#include "cli/Options.h"

namespace cli {
namespace {

// Returns the words of a choice with `separator` between them.
std::string Joined(std::string_view choices, std::string_view separator) {
  std::string words;
  for (const std::string_view word : ChoicesOf(choices))
    words.append(words.empty() ? "" : separator).append(word);
  return words;
}

// Calls `action` for each command that is not hidden.
template <typename TAction>
void ForEachCommand(TAction action) {
  for (const TCommandRow& command : Commands())
    if (!command.IsHidden) action(command);
}

std::string FirstWords(std::string_view separator) {
  std::string words;
  std::string last;
  ForEachCommand([&](const TCommandRow& command) {
    const std::string first(command.Name.substr(0, command.Name.find(' ')));
    if (first == last) return;
    words.append(words.empty() ? "" : separator).append(first);
    last = first;
  });
  return words;
}

std::string SecondWords(std::string_view first, std::string_view separator) {
  std::string words;
  ForEachCommand([&](const TCommandRow& command) {
    const size_t blank = command.Name.find(' ');
    if (blank == std::string_view::npos || command.Name.substr(0, blank) != first) return;
    words.append(words.empty() ? "" : separator).append(command.Name.substr(blank + 1));
  });
  return words;
}

// --- bash ---

std::string BashValues(TValueKind kind, std::string_view valueName) {
  switch (kind) {
    case TValueKind::Choice:
      return "COMPREPLY=($(compgen -W '" + Joined(valueName, " ") + "' -- \"$word\"))";
    case TValueKind::Folder:
      return "_kvamigrate_files -d";
    case TValueKind::File:
      return "_kvamigrate_files -f";
    default:
      return "COMPREPLY=()";
  }
}

std::string BashOptionValues(const TOption& option) {
  if (option.Parts.empty()) return BashValues(option.Kind, option.ValueName);
  return "COMPREPLY=($(compgen -P \"${word%\"${word##*,}\"}\" -W '" + Joined(option.Parts, " ") +
         "' -- \"${word##*,}\"))";
}

std::string BashNames(const TOption& option, std::string_view separator) {
  std::string names(option.Name);
  if (option.Short) names.append(separator).append("-").append(1, option.Short);
  return names;
}

std::string BashCommand(const TCommandRow& command) {
  std::string text = "    '" + std::string(command.Name) + "')\n      case \"$previous\" in\n";
  std::string names = std::string(HelpOption().Name);
  for (const TOption& option : command.Options) {
    names.append(" ").append(BashNames(option, " "));
    if (option.Kind == TValueKind::None) continue;
    text.append("        ").append(BashNames(option, "|")).append(") ");
    text.append(BashOptionValues(option)).append("; return ;;\n");
  }
  text.append("      esac\n      if [[ $word == -* ]]; then\n        COMPREPLY=($(compgen -W '")
      .append(names);
  text.append("' -- \"$word\"))\n      else\n        ");
  const std::string arguments = command.Command == TCommand::Help
                                    ? "COMPREPLY=($(compgen -W '" + FirstWords(" ") + "' -- \"$word\"))"
                                    : BashValues(command.Argument.Kind, command.Argument.Name);
  return text.append(arguments).append("\n      fi ;;\n");
}

std::string BashScript() {
  std::string text = R"(# Completion of kvamigrate for bash.
_kvamigrate_files() {
  compopt -o filenames
  mapfile -t COMPREPLY < <(compgen "$1" -- "$word")
}
_kvamigrate() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]}
  if [[ $word == = ]]; then  # bash splits --option=value into three words
    word=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD-2]}
  fi
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    COMPREPLY=($(compgen -W ')" +
                     FirstWords(" ") + R"( --help --version' -- "$word"))
    return
  fi
  if [[ $command == form ]]; then
    if ((COMP_CWORD == 2)); then
      COMPREPLY=($(compgen -W ')" +
                     SecondWords("form", " ") + R"(' -- "$word"))
      return
    fi
    command="form ${COMP_WORDS[2]}"
  fi
  case "$command" in
)";
  ForEachCommand([&](const TCommandRow& command) { text.append(BashCommand(command)); });
  return text.append("  esac\n}\ncomplete -F _kvamigrate kvamigrate\n");
}

// --- zsh ---

// Returns `text` in quotes, in the notation of _arguments.
std::string ZshText(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '[' || c == ']' || c == ':') result += '\\';
    if (c == '\'') {
      result += "'\\''";
    } else {
      result += c;
    }
  }
  return result;
}

std::string ZshValue(TValueKind kind, std::string_view valueName) {
  const std::string name = ZshText(valueName);
  switch (kind) {
    case TValueKind::Choice:
      return ":" + name + ":(" + Joined(valueName, " ") + ")";
    case TValueKind::Folder:
      return ":" + name + ":_files -/";
    case TValueKind::File:
      return ":" + name + ":_files";
    case TValueKind::Text:
      return ":" + name + ": ";
    case TValueKind::None:
      return "";
  }
  return "";
}

std::string ZshOptionValue(const TOption& option) {
  if (option.Parts.empty()) return ZshValue(option.Kind, option.ValueName);
  return ":" + ZshText(option.ValueName) + ":_sequence compadd - " + Joined(option.Parts, " ");
}

std::string ZshOption(const TOption& option) {
  const std::string about = "[" + ZshText(option.About) + "]" + ZshOptionValue(option);
  const std::string star = option.IsRepeatable && option.Kind != TValueKind::None ? "*" : "";
  std::string text = "        '" + star + std::string(option.Name) + about + "' \\\n";
  if (option.Short) text.append("        '-").append(1, option.Short).append(about).append("' \\\n");
  return text;
}

std::string ZshCommand(const TCommandRow& command) {
  std::string text = "    '" + std::string(command.Name) + "')\n      _arguments \\\n";
  for (const TOption& option : command.Options) text.append(ZshOption(option));
  if (command.Command == TCommand::Help) {
    text.append("        ':COMMAND:(").append(FirstWords(" ")).append(")' \\\n");
  } else if (command.Argument.Kind != TValueKind::None) {
    text.append(command.Argument.Most > 1 ? "        '*" : "        '");
    text.append(ZshValue(command.Argument.Kind, command.Argument.Name)).append("' \\\n");
  }
  return text.append("        '--help[").append(HelpOption().About).append("]' ;;\n");
}

std::string ZshScript() {
  std::string text = R"(#compdef kvamigrate
# Completion of kvamigrate for zsh.
_kvamigrate() {
  if ((CURRENT == 2)); then
    compadd -- )" + FirstWords(" ") +
                     R"( --help --version
    return
  fi
  local name=$words[2] used=1
  if [[ $name == form ]]; then
    if ((CURRENT == 3)); then
      compadd -- )" + SecondWords("form", " ") +
                     R"(
      return
    fi
    name="form $words[3]" used=2
  fi
  shift $used words
  ((CURRENT -= used))
  case "$name" in
)";
  ForEachCommand([&](const TCommandRow& command) { text.append(ZshCommand(command)); });
  return text.append(
      "  esac\n}\nif [[ $funcstack[1] == _kvamigrate ]]; then\n  _kvamigrate \"$@\"\nelse\n"
      "  compdef _kvamigrate kvamigrate\nfi\n");
}

// --- fish ---

// Returns `text` in single quotes.
std::string FishText(std::string_view text) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'' || c == '\\') result += '\\';
    result += c;
  }
  return result + "'";
}

std::string FishCondition(const TCommandRow& command) {
  const size_t blank = command.Name.find(' ');
  std::string text = "'__fish_seen_subcommand_from " + std::string(command.Name.substr(0, blank));
  if (blank != std::string_view::npos)
    text.append("; and __fish_seen_subcommand_from ").append(command.Name.substr(blank + 1));
  return text + "'";
}

std::string FishValue(TValueKind kind, std::string_view valueName) {
  switch (kind) {
    case TValueKind::Choice:
      return " -x -a '" + Joined(valueName, " ") + "'";
    case TValueKind::Folder:
      return " -x -a '(__fish_complete_directories)'";
    case TValueKind::File:
      return " -r -F";
    case TValueKind::Text:
      return " -x";
    case TValueKind::None:
      return "";
  }
  return "";
}

std::string FishOptionValue(const TOption& option) {
  if (option.Parts.empty()) return FishValue(option.Kind, option.ValueName);
  return " -x -a '(__fish_append , " + Joined(option.Parts, " ") + ")'";
}

std::string FishCommand(const TCommandRow& command) {
  const std::string start = "complete -c kvamigrate -n " + FishCondition(command);
  std::string text;
  for (const TOption& option : command.Options) {
    text.append(start);
    if (option.Short) text.append(" -s ").append(1, option.Short);
    text.append(" -l ").append(option.Name.substr(2)).append(FishOptionValue(option));
    text.append(" -d ").append(FishText(option.About)).append("\n");
  }
  if (command.Command == TCommand::Help) {
    text.append(start).append(" -a '").append(FirstWords(" ")).append("'\n");
  } else if (command.Argument.Kind == TValueKind::Choice) {
    text.append(start).append(" -a '").append(Joined(command.Argument.Name, " ")).append("'\n");
  } else if (command.Argument.Kind == TValueKind::File) {
    text.append(start).append(" -F\n");
  }
  return text;
}

std::string FishScript() {
  const std::string first = FirstWords(" ");
  const std::string second = SecondWords("form", " ");
  std::string text = "# Completion of kvamigrate for fish.\ncomplete -c kvamigrate -f\n";
  const std::string start = "complete -c kvamigrate -n 'not __fish_seen_subcommand_from " + first + "'";
  text.append(start).append(" -a '").append(first).append("'\n");
  text.append(start).append(" -l version -d 'Show the version of the program'\n");
  text.append("complete -c kvamigrate -l help -d '").append(HelpOption().About).append("'\n");
  text.append(
      "complete -c kvamigrate -n '__fish_seen_subcommand_from form; and not __fish_seen_subcommand_from ");
  text.append(second).append("' -a '").append(second).append("'\n");
  ForEachCommand([&](const TCommandRow& command) { text.append(FishCommand(command)); });
  return text;
}

}  // namespace

std::string CompletionScript(std::string_view shell) {
  if (shell == "bash") return BashScript();
  return shell == "zsh" ? ZshScript() : FishScript();
}

}  // namespace cli
