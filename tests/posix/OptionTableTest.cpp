// The completions and the manual page compared with the options that the program accepts.
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "cli/Completion.h"
#include "cli/Help.h"
#include "cli/ManPage.h"
#include "cli/Options.h"
#include "tests/TempTree.h"

namespace cli {
namespace {

using TNames = std::set<std::string>;

TNames OptionsOf(const TCommandRow& command) {
  TNames names = {"--help"};
  for (const TOption& option : command.Options) names.insert(std::string(option.Name));
  return names;
}

// Returns the words of a text that begin with "--".
TNames LongOptions(const std::string& text) {
  TNames names;
  std::istringstream words(text);
  for (std::string word; words >> word;)
    if (word.starts_with("--") && word.size() > 2) names.insert(word);
  return names;
}

class OptionTableTest : public testing::Test {
 protected:
  // Returns the output of a script in that shell.
  std::string Shell(const std::string& shell, const std::string& script) {
    FTree.Write("script", script);
    const std::string command =
        "cd " + FTree.HostPath() + " && HOME=. XDG_CONFIG_HOME=. " + shell + " script >out.txt 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command << FTree.Read("out.txt");
    return FTree.Read("out.txt");
  }

  tests::TTempTree FTree;
};

TEST_F(OptionTableTest, BashCompletesEveryOption) {
  FTree.MakeFolder("old forms");
  const std::string start = CompletionScript("bash") +
                            "compopt() { :; }; t() { COMP_WORDS=(kvamigrate \"$@\"); COMP_CWORD=$#; "
                            "_kvamigrate; echo ${COMPREPLY[*]}; }\n";
  for (const TCommandRow& command : Commands()) {
    if (command.IsHidden) continue;
    EXPECT_EQ(LongOptions(Shell("bash", start + "t " + std::string(command.Name) + " --")),
              OptionsOf(command))
        << command.Name;
  }
  EXPECT_EQ(
      Shell("bash", start + "t replace --mode ''; t replace --mode =; t replace --mode = i; t form ''\n"
                            "t replace --complete ''; t replace --complete uses,la\n"
                            "t replace --complete layout,uses,; t help form ''; t help re; t help re x\n"
                            "t completion b; t re; t replace --folder o; echo ${#COMPREPLY[*]}"),
      "bde ibx\nbde ibx\nibx\nto-text to-binary\nuses inherited transactions layout marks "
      "all\nuses,layout\nlayout,uses,inherited layout,uses,transactions layout,uses,marks layout,uses,all\n"
      "to-text to-binary\nreplace restore\n\nbash\nreplace restore\nold forms\n1\n");
}

TEST_F(OptionTableTest, FishCompletesEveryOption) {
  const std::string start = CompletionScript("fish");
  for (const TCommandRow& command : Commands()) {
    if (command.IsHidden) continue;
    EXPECT_EQ(
        LongOptions(Shell("fish", start + "complete -C 'kvamigrate " + std::string(command.Name) + " --'")),
        OptionsOf(command))
        << command.Name;
  }
  EXPECT_EQ(
      Shell("fish",
            start + "complete -C 'kvamigrate replace --mode '; complete -C 'kvamigrate form to'\n"
                    "complete -C 'kvamigrate help form '; complete -C 'kvamigrate help replace '\n"
                    "complete -C 'kvamigrate help re'; complete -C 'kvamigrate replace --complete=uses,us'\n"
                    "complete -C 'kvamigrate replace --complete uses,la'"),
      "bde\tThe components to replace\nibx\tThe components to "
      "replace\nto-binary\nto-text\nto-binary\nto-text\n"
      "replace\nrestore\n"
      "uses,layout\tAlso do a part of the remaining work: uses (units in uses clauses), inherited (inherited "
      "objects), transactions (one for each connection), layout (of forms), marks (of UTF-8), or all\n");
}

// _arguments is replaced by a function that prints its arguments.
TEST_F(OptionTableTest, ZshCompletesEveryOption) {
  const std::string start =
      "compdef() { : }\n_arguments() { print -rl -- \"$@\" }\n" + CompletionScript("zsh");
  for (const TCommandRow& command : Commands()) {
    if (command.IsHidden) continue;
    const std::string words = "kvamigrate " + std::string(command.Name) + " --";
    std::string output = Shell("zsh", start + "words=(" + words + "); CURRENT=$#words; _kvamigrate");
    std::replace(output.begin(), output.end(), '[', ' ');
    std::replace(output.begin(), output.end(), '*', ' ');
    EXPECT_EQ(LongOptions(output), OptionsOf(command)) << command.Name;
  }
}

TEST_F(OptionTableTest, TheManualPageShowsEveryOption) {
  FTree.Write("kvamigrate.1", ManPage());
  const std::string page = Shell("bash",
                                 "LC_ALL=C.UTF-8 groff -man -Tutf8 -ww -P-c -P-b -P-u -rLL=200n kvamigrate.1 "
                                 "| sed 's/\xE2\x80\x90/-/g'");
  EXPECT_EQ(page.find(": warning:"), std::string::npos) << page;
  TNames expected = {"--version"};
  for (const TCommandRow& command : Commands()) {
    if (command.IsHidden) continue;
    expected.merge(OptionsOf(command));
  }
  // Entries are indented, and their first word is the option.
  TNames found;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    const size_t at = line.find("--");
    if (at == std::string::npos || line.find_first_not_of(' ') + 4 < at) continue;
    found.insert(line.substr(at, line.find(' ', at) - at));
  }
  EXPECT_EQ(found, expected) << page;
}

}  // namespace
}  // namespace cli
