#include "cli/ManPage.h"

#include "cli/Help.h"
#include "cli/HelpTexts.h"

namespace cli {
namespace {

// Escapes `text` for roff: backslashes, hyphens, and requests at the beginning of a line.
std::string Roff(std::string_view text) {
  std::string result;
  bool isLineStart = true;
  for (const char c : text) {
    if (isLineStart && (c == '.' || c == '\'')) result += "\\&";
    if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else if (c == '\'') {
      result += "\\(aq";
    } else if (c == '~') {
      result += "\\(ti";
    } else {
      result += c;
    }
    isLineStart = c == '\n';
  }
  return result;
}

// Returns `text` with its line breaks kept.
std::string Verbatim(std::string_view text) {
  return ".nf\n" + Roff(text) + "\n.fi\n";
}

std::string Entry(std::string_view term, std::string_view about) {
  return ".TP\n.B " + Roff(term) + "\n" + Roff(about) + "\n";
}

std::string CommandSection(const TCommandRow& command) {
  std::string text = ".SS \"" + Roff(command.Name) + "\"\n.B kvamigrate " + Roff(command.Name) + "\n";
  text.append(Roff(command.Usage)).append("\n.PP\n").append(Roff(command.About)).append(".\n");
  if (!command.Argument.Name.empty())
    text.append(Entry(command.Argument.Name, std::string(command.Argument.About) + "."));
  for (const TOption& option : command.Options)
    text.append(Entry(OptionSynopsis(option), std::string(option.About) + "."));
  if (!command.Footer.empty()) {
    text.append(".PP\n").append(Verbatim(std::string(command.Footer).append(command.DrivesFooter)));
  }
  return text;
}

}  // namespace

std::string ManPage() {
  std::string text =
      ".TH KVAMIGRATE 1 \"\" \"" + Roff(VersionText()) +
      "\" \"User Commands\"\n"
      ".SH NAME\nkvamigrate \\- migrate Delphi applications to the KORVA data\\-access components\n"
      ".SH SYNOPSIS\n.B kvamigrate\n.I COMMAND\n.RI [ OPTIONS ]\n"
      ".SH DESCRIPTION\n";
  text.append(Roff(kAbout)).append("\n.SH COMMANDS\n");
  for (const TCommandRow& command : Commands())
    if (!command.IsHidden) text.append(CommandSection(command));
  text.append(".SH \"COMMON OPTIONS\"\n");
  text.append(Entry(OptionSynopsis(HelpOption()), std::string(HelpOption().About) + "."));
  text.append(Entry("--version", "Show the version of the program."));
  text.append(".SH \"EXAMPLES AND EXIT STATUS\"\n").append(Verbatim(kGeneralFooter));
  return text;
}

}  // namespace cli
