// The explanations and examples at the end of each help text. Lines are at most 80 columns wide.
#pragma once

namespace cli {

inline constexpr char kAbout[] =
    "Migrates Delphi applications from the BDE and IBX database components to the\n"
    "KORVA data-access components.";

inline constexpr char kGeneralFooter[] = R"(Examples:
  kvamigrate replace --mode bde --folder orders --subfolders
      convert every unit below the folder, and the forms that the units name
  kvamigrate replace --mode ibx Orders.dproj
      convert the units of a project and their forms
  kvamigrate restore orders
      undo the last run
  kvamigrate help replace
      all options of a command

Exit status:
  0    everything requested was done
  1    only a part was done; each file that was left out is named
  2    the command line is wrong; nothing was touched
  3    an error stopped the command, or its output could not be written; the
       originals are untouched unless a message says otherwise
  4    a check found something to convert, an error or a warning
  130  Ctrl-C stopped the command (128 and the number of the signal))";

inline constexpr char kReplaceFooter[] = R"(What a run does:
  Each file that changes is first copied to the backup folder, with a "~" in its
  extension (Unit1.~pas). After all files are converted, the changed versions
  replace the originals, each in one step. "kvamigrate restore" needs the undo
  file RExpert.reu in the backup folder. Wiz_Log.txt, in the folder of the run,
  lists every file with the number of its changes. With --interactive, nothing
  is replaced before the last answer.

Examples:
  kvamigrate replace --mode bde src --subfolders --exclude "old/*"
  kvamigrate replace --mode bde Orders.dpr --unit Main.pas --unit Data.pas
  kvamigrate replace --mode ibx All.groupproj --active Server)";

// Follows the text above where drives can be mapped.
inline constexpr char kReplaceDrives[] = R"(
  kvamigrate replace --mode bde "C:\Src" --drive C=/srv/checkout --codepage 1251)";

inline constexpr char kCheckFooter[] =
    R"(Every finding is a line on standard output, in the format of compilers:
  Main.dfm(120,5): warning dropped-property: ...

Before a migration, the findings show how much work it will be; after it, how
much is left. Use check in a build to keep the old components out: the exit
status is 0 if there is nothing to convert and no finding is an error or a
warning; otherwise 4.

Examples:
  kvamigrate check --mode bde src --subfolders --report check.html
  kvamigrate check --mode bde Orders.dproj --report before.json
  kvamigrate check --mode bde Orders.dproj --baseline before.json)";

inline constexpr char kRestoreFooter[] =
    R"(Nothing is touched unless every backup exists, no file was edited after the run,
and every line of the undo file can come from a run. --force also restores
edited files.

If PATH is a folder, the undo file is searched for in it and in its RBackup,
RBackup.2 and so on: the last run is undone, or with --all every run, the last
one first.

Examples:
  kvamigrate restore --list src
  kvamigrate restore src/RBackup/RExpert.reu --only "Main.*")";

inline constexpr char kRestoreDrives[] = R"(
  kvamigrate restore "C:\Src\RBackup\RExpert.reu" --drive C=/srv/checkout
      with the same --drive options as in the run)";

inline constexpr char kToTextFooter[] =
    R"(The texts of several forms are written one after the other. A form that is
already text is copied. Binary input may be a form file with its resource
header, or object data without one.

Examples:
  kvamigrate form to-text Main.dfm
  kvamigrate form to-text Main.dfm -o Main.txt
  kvamigrate form to-text --in-place src    every form below a folder)";

inline constexpr char kToBinaryFooter[] =
    R"(The text of a form contains neither its resource name nor the way in which empty
strings are stored. The resource is named after the class of the form.

Examples:
  kvamigrate form to-binary Main.txt -o Main.dfm
  kvamigrate form to-binary - -o Main.dfm < Main.txt)";

inline constexpr char kCatalogueFooter[] = R"(The output has the format that --catalogue reads.

Example:
  kvamigrate catalogue > mine.txt)";

inline constexpr char kWizardFooter[] = R"(Example:
  kvamigrate wizard Orders.dproj)";

inline constexpr char kCompletionFooter[] = R"(Examples:
  source <(kvamigrate completion bash)       in ~/.bashrc
  source <(kvamigrate completion zsh)        in ~/.zshrc, after compinit
  kvamigrate completion fish | source        in ~/.config/fish/config.fish)";

}  // namespace cli
