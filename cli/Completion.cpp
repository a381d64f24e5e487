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
  return "_kvamigrate_parts " + Joined(option.Parts, " ");
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
                                    ? "_kvamigrate_command 2"
                                    : BashValues(command.Argument.Kind, command.Argument.Name);
  return text.append(arguments).append("\n      fi ;;\n");
}

std::string BashScript() {
  std::string text = R"(# Completion of kvamigrate for bash.
_kvamigrate_files() {
  compopt -o filenames
  mapfile -t COMPREPLY < <(compgen "$1" -- "$word")
}
_kvamigrate_parts() {  # words with commas between them, each once
  local before=${word%"${word##*,}"} part left=()
  for part; do
    [[ ,$before == *",$part,"* ]] || left+=("$part")
  done
  COMPREPLY=($(compgen -P "$before" -W "${left[*]}" -- "${word##*,}"))
}
_kvamigrate_command() {  # the name of a command that begins at the word $1
  if ((COMP_CWORD == $1)); then
    COMPREPLY=($(compgen -W ')" +
                     FirstWords(" ") + R"(' -- "$word"))
  elif ((COMP_CWORD == $1 + 1)) && [[ ${COMP_WORDS[$1]} == form ]]; then
    COMPREPLY=($(compgen -W ')" +
                     SecondWords("form", " ") + R"(' -- "$word"))
  fi
}
_kvamigrate() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]}
  if [[ $word == = ]]; then  # bash splits --option=value into three words
    word=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD-2]}
  fi
  COMPREPLY=()
  if ((COMP_CWORD == 1)) && [[ $word == -* ]]; then
    COMPREPLY=($(compgen -W '--help --version' -- "$word"))
    return
  fi
  _kvamigrate_command 1
  ((COMP_CWORD > 1)) && [[ ! ${COMPREPLY[*]} ]] || return
  [[ $command != form ]] || command="form ${COMP_WORDS[2]}"
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
  const bool isHelp = command.Command == TCommand::Help;
  std::string text = "    '" + std::string(command.Name) + "')\n";
  if (isHelp)
    text.append("      [[ $words[2] == form ]] && name='")
        .append(SecondWords("form", " "))
        .append("' || name=\n");
  text.append("      _arguments \\\n");
  for (const TOption& option : command.Options) text.append(ZshOption(option));
  if (isHelp) {
    text.append("        '1:COMMAND:(").append(FirstWords(" ")).append(")' \\\n");
    text.append("        \"2:COMMAND:($name)\" \\\n");
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
  return "'__kvamigrate_in " + std::string(command.Name) + "'";
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
  return " -x -a '(__kvamigrate_parts " + Joined(option.Parts, " ") + ")'";
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
  if (command.Argument.Kind == TValueKind::Choice) {
    text.append(start).append(" -a '").append(Joined(command.Argument.Name, " ")).append("'\n");
  } else if (command.Argument.Kind == TValueKind::File) {
    text.append(start).append(" -F\n");
  }
  return text;
}

std::string FishScript() {
  const std::string first = FirstWords(" ");
  const std::string second = SecondWords("form", " ");
  std::string text = R"(# Completion of kvamigrate for fish.
function __kvamigrate_at  # whether exactly these words are before the one to complete
    set -l words (commandline -opc)
    set -e words[1]
    test "$words" = "$argv"
end
function __kvamigrate_in  # whether the words begin with these
    set -l words (commandline -opc)
    set -e words[1]
    string match -q -- "$argv *" "$words "
end
function __kvamigrate_parts  # words with commas between them, each once
    set -l before (commandline -ct | string replace -r '^--[^=]*=' '' | string match -r '.*,')
    for part in $argv
        contains -- $part (string split , -- $before); or echo "$before$part"
    end
end
complete -c kvamigrate -f
)";
  const auto add = [&text](std::string_view words, std::string_view what) {
    text.append("complete -c kvamigrate -n '__kvamigrate_at")
        .append(words)
        .append("' ")
        .append(what)
        .append("\n");
  };
  add("", "-l version -d 'Show the version of the program'");
  text.append("complete -c kvamigrate -l help -d '").append(HelpOption().About).append("'\n");
  for (const std::string before : {"", " help"}) {
    add(before, "-a '" + first + "'");
    add(before + " form", "-a '" + second + "'");
  }
  ForEachCommand([&](const TCommandRow& command) { text.append(FishCommand(command)); });
  return text;
}

}  // namespace

std::string CompletionScript(std::string_view shell) {
  if (shell == "bash") return BashScript();
  return shell == "zsh" ? ZshScript() : FishScript();
}

}  // namespace cli
