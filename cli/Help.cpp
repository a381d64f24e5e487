#include "cli/Help.h"

#include <algorithm>

#include "cli/HelpTexts.h"

namespace cli {
namespace {

constexpr size_t kIndent = 2;
constexpr size_t kWidth = 80;

// Appends a row of two columns: `term`, and `about` broken into lines that start at `column`.
void AppendRow(std::string& text, std::string_view term, std::string about, size_t column) {
  std::string line = std::string(kIndent, ' ').append(term);
  if (line.size() + 2 > column) {
    text.append(line).append("\n");
    line.clear();
  }
  line.resize(column, ' ');
  while (column + about.size() > kWidth) {
    const size_t end = about.rfind(' ', kWidth - column);
    if (end == std::string::npos) break;
    text.append(line).append(about, 0, end).append("\n");
    about.erase(0, end + 1);
    line.assign(column, ' ');
  }
  text.append(line).append(about).append("\n");
}

std::string AboutOption(const TOption& option) {
  std::string about(option.About);
  if (option.IsRepeatable && option.Kind != TValueKind::None) about += " (repeatable)";
  return about;
}

}  // namespace

std::string OptionSynopsis(const TOption& option) {
  std::string text;
  if (option.Short) text.append("-").append(1, option.Short).append(", ");
  text.append(option.Name);
  if (option.Kind != TValueKind::None) text.append(" ").append(option.ValueName);
  return text;
}

std::string GeneralHelp() {
  std::string text = "Usage: kvamigrate COMMAND [OPTIONS]\n\n";
  text.append(kAbout).append("\n\nCommands:\n");
  for (const TCommandRow& command : Commands())
    if (!command.IsHidden) AppendRow(text, command.Name, std::string(command.About), 18);
  text.append("\nOptions:\n");
  AppendRow(text, OptionSynopsis(HelpOption()), "Show the help of the command", 18);
  AppendRow(text, "--version", "Show the version of the program", 18);
  return text.append("\n").append(kGeneralFooter).append("\n");
}

std::string CommandHelp(const TCommandRow& command) {
  constexpr size_t kColumn = 26;
  std::string text = "Usage: kvamigrate ";
  text.append(command.Name).append(command.Usage.empty() ? "" : " ").append(command.Usage);
  text.append("\n\n").append(command.About).append(".\n");
  if (!command.Argument.Name.empty()) {
    text.append("\nArguments:\n");
    AppendRow(text, command.Argument.Name, std::string(command.Argument.About), kColumn);
  }
  text.append("\nOptions:\n");
  for (const TOption& option : command.Options)
    AppendRow(text, OptionSynopsis(option), AboutOption(option), kColumn);
  AppendRow(text, OptionSynopsis(HelpOption()), AboutOption(HelpOption()), kColumn);
  if (!command.Footer.empty()) {
    text.append("\n").append(command.Footer).append(command.DrivesFooter).append("\n");
  }
  return text;
}

std::string VersionText() {
  return "kvamigrate " KVA_VERSION;
}

}  // namespace cli
