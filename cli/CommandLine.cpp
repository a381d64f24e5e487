#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>

#include "win/paths/CodePage.h"

namespace cli {
namespace {

constexpr char kAbout[] =
    "Migrates Delphi applications from the BDE and IBX database components to the KORVA data-access "
    "components.";

constexpr char kExamples[] = R"(Examples:
  kvamigrate replace --mode bde --folder ~/src/orders --subfolders
      convert every unit below the folder, and the forms that they name
  kvamigrate replace --mode ibx --project Orders.dproj
      convert the units of a project and their forms
  kvamigrate restore ~/src/orders/RBackup/RExpert.reu
      put every file back as it was before
  kvamigrate replace --help
      all options of a command

Exit status: 0 done; 1 some file could not be put in place; 2 wrong command line; 3 stopped by an error, with
the originals untouched unless the message says otherwise; 130 stopped by Ctrl-C, with the originals untouched.)";

constexpr char kReplaceExamples[] = R"(What it does:
  Each file that changes is copied to the backup folder first, under an extension with "~" (Unit1.~pas), and the
  changed versions take the originals' place in one step at the very end. The undo file RExpert.reu in the backup
  folder is what "kvamigrate restore" needs; Wiz_Log.txt, in the project's or the scanned folder, tells what
  happened to each file.

Examples:
  kvamigrate replace --mode bde --folder ~/src/orders --subfolders
  kvamigrate replace --mode bde --folder src --subfolders --exclude 'old/*' --exclude '*.broken.dfm'
  kvamigrate replace --mode bde --project Orders.dpr --unit Main.pas --unit Data.pas
  kvamigrate replace --mode ibx --project All.groupproj --active Server
  kvamigrate replace --mode bde --folder 'C:\Src' --drive C=/srv/checkout --codepage 1251)";

constexpr char kRestoreExamples[] =
    R"(Nothing is touched unless every backup is there. Run it with the same --drive options as the run that it undoes.

Examples:
  kvamigrate restore src/RBackup/RExpert.reu
  kvamigrate restore 'C:\Src\RBackup\RExpert.reu' --drive C=/srv/checkout)";

constexpr char kFormExamples[] =
    R"(INPUT and OUTPUT are files, or - for standard input and output; without OUTPUT the result goes to standard output.
Both kinds of binary input are taken: whole form files with their resource header, and bare streams.
A text cannot hold a resource name, nor how empty strings are stored: a binary form made of it is named after its class.

Examples:
  kvamigrate form to-text Main.dfm Main.txt
  kvamigrate form to-text --in-place src          every form below a folder, for version control
  kvamigrate form to-binary - Main.dfm < Main.txt)";

void AddEnvironment(CLI::App* command, TCommandLine& line) {
  command
      ->add_option_function<std::vector<std::string>>(
          "--drive",
          [&line](const std::vector<std::string>& drives) {
            for (const std::string& drive : drives) {
              if (drive.size() < 3 || drive[1] != '=')
                throw CLI::ValidationError("--drive", "expected X=DIR, as in C=/srv/checkout: " + drive);
              line.Drives.emplace_back(drive[0], drive.substr(2));
            }
          },
          "Let drive X: be a folder of this machine (repeatable; Z: is the root folder)")
      ->type_name("X=DIR")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void AddCodePage(CLI::App* command, TCommandLine& line) {
  command->add_option("--codepage", line.CodePage, "Code page of sources without a mark (default: 1252)")
      ->check(CLI::IsMember(win::SupportedCodePages()))
      ->type_name("N");
}

void AddCatalogueFile(CLI::App* command, TCommandLine& line) {
  command
      ->add_option("--catalogue", line.Catalogue,
                   "What the target classes publish, instead of what is built in")
      ->type_name("FILE");
}

void AddReplace(CLI::App& app, TCommandLine& line) {
  CLI::App* command =
      app.add_subcommand("replace", "Convert the units of a folder or a project, and their forms");
  command->footer(kReplaceExamples);
  command
      ->add_option_function<std::string>(
          "--mode", [&line](const std::string& mode) { line.ModeIBX = mode == "ibx"; },
          "The components to replace: bde or ibx")
      ->required()
      ->check(CLI::IsMember({"bde", "ibx"}))
      ->type_name("");
  CLI::Option* folder =
      command->add_option("--folder", line.Folder, "Convert the units of this folder")->type_name("DIR");
  command->add_flag("--subfolders", line.SubFolders, "... and those of the folders below it")->needs(folder);
  CLI::Option* project = command
                             ->add_option("--project", line.Project,
                                          "Convert the units of this project, or of a group's active one")
                             ->type_name("FILE")
                             ->excludes(folder);
  command
      ->add_option(
          "--active", line.ActiveProject,
          "The project of a group that is the active one, by its name or its path as the group has it "
          "(default: the first)")
      ->type_name("NAME")
      ->needs(project);
  command->add_option("--unit", line.Units, "Convert this unit of the project alone (repeatable)")
      ->type_name("NAME")
      ->needs(project)
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  command->add_option("--backup-dir", line.BackupDir, "Where backups and the undo file go (default: RBackup)")
      ->type_name("DIR");
  command->add_flag("--no-backup", line.NoBackup, "Take no backups and write no undo file");
  command->add_flag("--no-log", line.NoLog, "Write no log");
  command->add_flag("--view-log", line.ViewLog, "Open the log in its viewer afterwards");
  command
      ->add_option("--exclude", line.Exclude,
                   "Leave out files whose path below the folder matches, as in 'old/*' (repeatable)")
      ->type_name("PATTERN")
      ->check([](const std::string& pattern) {
        return pattern.empty() ? std::string("an empty pattern leaves nothing out") : std::string();
      })
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  AddCodePage(command, line);
  AddCatalogueFile(command, line);
  AddEnvironment(command, line);
  command->parse_complete_callback([&line] { line.Command = TCommand::Replace; });
  command->callback([&line] {
    if (line.Folder.empty() && line.Project.empty()) throw CLI::RequiredError("--folder or --project");
  });
}

void AddRestore(CLI::App& app, TCommandLine& line) {
  CLI::App* command = app.add_subcommand("restore", "Put the files back that a run changed");
  command->footer(kRestoreExamples);
  command->add_option("UNDOFILE", line.UndoFile, "The undo file of the run, RExpert.reu")->required();
  AddEnvironment(command, line);
  command->callback([&line] { line.Command = TCommand::Restore; });
}

void AddFormConversion(CLI::App* form, TCommandLine& line, TCommand conversion, const char* name,
                       const char* about) {
  CLI::App* command = form->add_subcommand(name, about);
  command->footer(kFormExamples);
  command->add_option("INPUT", line.Input, "A form file; a folder with --in-place; or -")->required();
  command->add_option("OUTPUT", line.Output, "The file to write; or -");
  command->add_flag("--in-place", line.InPlace,
                    "Convert the file, or every form below the folder, where it is");
  if (conversion == TCommand::FormToBinary)
    command->add_flag("--bare", line.Bare, "Write the object stream alone, without a resource header");
  AddCodePage(command, line);
  AddEnvironment(command, line);
  command->callback([&line, conversion] { line.Command = conversion; });
}

void AddForm(CLI::App& app, TCommandLine& line) {
  CLI::App* form = app.add_subcommand("form", "Convert form files between their text and their binary form");
  form->footer(kFormExamples);
  form->require_subcommand(1);
  AddFormConversion(form, line, TCommand::FormToText, "to-text",
                    "Make text of binary forms, as the IDE writes it");
  AddFormConversion(form, line, TCommand::FormToBinary, "to-binary", "Make binary forms of text");
}

void AddCatalogue(CLI::App& app, TCommandLine& line) {
  CLI::App* command = app.add_subcommand(
      "catalogue", "Print what the target classes publish, in the form that --catalogue reads");
  AddCatalogueFile(command, line);
  AddEnvironment(command, line);
  command->callback([&line] { line.Command = TCommand::Catalogue; });
}

void AddWizard(CLI::App& app, TCommandLine& line) {
  CLI::App* command =
      app.add_subcommand("wizard", "Open the wizard's dialog, where the desktop part was built");
  command->add_option("PROJECT", line.Project, "The project or project group to open first");
  AddCodePage(command, line);
  AddCatalogueFile(command, line);
  AddEnvironment(command, line);
  command->callback([&line] { line.Command = TCommand::Wizard; });
}

}  // namespace

std::variant<TCommandLine, int> ParseCommandLine(int argc, const char* const* argv) {
  TCommandLine line;
  CLI::App app(kAbout, "kvamigrate");
  app.footer(kExamples);
  app.require_subcommand(1);
  AddReplace(app, line);
  AddRestore(app, line);
  AddForm(app, line);
  AddCatalogue(app, line);
  AddWizard(app, line);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& help) {
    app.exit(help);
    return kExitOk;
  } catch (const CLI::ParseError& error) {
    app.exit(error);
    return kExitUsage;
  }
  return line;
}

}  // namespace cli
