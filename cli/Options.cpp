#include "cli/Options.h"

#include <algorithm>
#include <charconv>

#include "cli/Commands.h"
#include "cli/HelpTexts.h"
#include "cli/Nearest.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace cli {
namespace {

void StoreDrive(TCommandLine& line, const std::string& value) {
  if (value.size() < 3 || value[1] != '=')
    throw EUsage("--drive takes a letter and a folder, as in C=/srv/checkout, and not \"" + value + "\".");
  line.Drives.emplace_back(value[0], value.substr(2));
}

// Accepts 1251, cp1251, windows-1251 and utf-8.
void StoreCodePage(TCommandLine& line, const std::string& value) {
  std::string number = rtl::LowerCase(value);
  for (const std::string_view prefix : {"windows-", "cp"})
    if (number.starts_with(prefix)) number.erase(0, prefix.size());
  if (number == "utf-8" || number == "utf8") number = "65001";
  unsigned codePage = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), codePage);
  const std::vector<uint32_t>& known = win::SupportedCodePages();
  if (error != std::errc() || end != number.data() + number.size() ||
      std::find(known.begin(), known.end(), codePage) == known.end()) {
    std::string list;
    for (const uint32_t page : known) list.append(list.empty() ? "" : ", ").append(std::to_string(page));
    throw EUsage("The code page \"" + value + "\" is not known. Known are " + list + ".");
  }
  line.CodePage = codePage;
}

void StorePattern(std::vector<std::string>& patterns, const std::string& value) {
  if (value.empty()) throw EUsage("An empty pattern matches no file.");
  patterns.push_back(value);
}

struct TStepRow {
  std::string_view Name;
  bool completion::TSteps::*Step;
};

constexpr TStepRow kSteps[] = {
    {"uses", &completion::TSteps::Uses},
    {"inherited", &completion::TSteps::Inherited},
    {"transactions", &completion::TSteps::Transactions},
    {"layout", &completion::TSteps::Layout},
    {"marks", &completion::TSteps::Marks},
};

// Accepts step names separated by commas, in any case; "all" means all steps.
void StoreSteps(TCommandLine& line, const std::string& value) {
  if (!line.Complete) line.Complete.emplace();
  for (size_t start = 0; start <= value.size();) {
    const size_t end = std::min(value.find(',', start), value.size());
    const std::string name = value.substr(start, end - start);
    start = end + 1;
    bool isKnown = false;
    for (const TStepRow& row : kSteps) {
      if (!rtl::SameText(name, row.Name) && !rtl::SameText(name, "all")) continue;
      (*line.Complete).*row.Step = isKnown = true;
    }
    if (isKnown) continue;
    std::string message = "--complete takes ";
    for (const TStepRow& row : kSteps) message.append(row.Name).append(", ");
    std::vector<std::string_view> names = {"all"};
    for (const TStepRow& row : kSteps) names.push_back(row.Name);
    throw EUsage(message.append("or all, with commas between them, and not \"").append(name).append("\"") +
                 DidYouMean(name, names));
  }
}

constexpr bool kRepeatable = true;

const TOption kDrive = {"--drive",  TValueKind::Text,
                        "X=DIR",    "Map drive X: to a folder of this machine; Z: is the root folder",
                        StoreDrive, kRepeatable};
const TOption kCodePage = {"--codepage", TValueKind::Text, "N",
                           "Code page of sources without a byte order mark, as 1251, cp1251 or utf-8 "
                           "(default: 1252)",
                           StoreCodePage};
const TOption kCatalogue = {"--catalogue", TValueKind::File, "FILE",
                            "Read the list of published properties from this file",
                            [](TCommandLine& line, const std::string& value) { line.Catalogue = value; }};
const TOption kQuiet = {"--quiet",
                        TValueKind::None,
                        "",
                        "Show neither progress nor the outcome, only problems",
                        [](TCommandLine& line, const std::string&) { line.Quiet = true; },
                        false,
                        'q'};
const TOption kHelp = {"--help", TValueKind::None, "", "Show this help", nullptr, true, 'h'};

const std::vector<TOption> kScopeOptions = {
    {"--mode", TValueKind::Choice, "bde|ibx", "The components to replace",
     [](TCommandLine& line, const std::string& value) { line.Mode = value; }},
    {"--folder", TValueKind::Folder, "DIR", "Convert the units of this folder",
     [](TCommandLine& line, const std::string& value) { line.Folder = value; }},
    {"--subfolders", TValueKind::None, "", "Also convert the units of its subfolders",
     [](TCommandLine& line, const std::string&) { line.SubFolders = true; }},
    {"--project", TValueKind::File, "FILE",
     "Convert the units of this project, of the active project of a group, or of the only project in a "
     "folder",
     [](TCommandLine& line, const std::string& value) { line.Project = value; }},
    {"--active", TValueKind::Text, "NAME",
     "The project of a group to convert, by its name or its path (default: the first)",
     [](TCommandLine& line, const std::string& value) { line.ActiveProject = value; }},
    {"--unit", TValueKind::Text, "NAME", "Convert only this unit of the project",
     [](TCommandLine& line, const std::string& value) { line.Units.push_back(value); }, kRepeatable},
    {"--exclude", TValueKind::Text, "PATTERN",
     "Leave out files whose path below the folder matches, as in 'old/*'",
     [](TCommandLine& line, const std::string& value) { StorePattern(line.Exclude, value); }, kRepeatable},
    {"--complete", TValueKind::Text, "WHAT[,WHAT]",
     "Also do a part of the remaining work: uses (units in uses clauses), inherited (inherited objects), "
     "transactions (one for each connection), layout (of forms), marks (of UTF-8), or all",
     StoreSteps, kRepeatable, 0, "uses|inherited|transactions|layout|marks|all"},
    {"--keep-going", TValueKind::None, "", "Leave out files that cannot be converted, and convert the others",
     [](TCommandLine& line, const std::string&) { line.KeepGoing = true; }},
    {"--report", TValueKind::File, "FILE", "Write a report; the extension decides: .json, .sarif or .html",
     [](TCommandLine& line, const std::string& value) { line.Reports.push_back(value); }, kRepeatable},
};

std::vector<TOption> WithScope(const std::vector<TOption>& more) {
  std::vector<TOption> options = kScopeOptions;
  options.insert(options.end(), more.begin(), more.end());
  return options;
}

const std::vector<TOption> kCheckOptions = WithScope({
    {"--baseline", TValueKind::File, "FILE", "Leave out the findings in this JSON report",
     [](TCommandLine& line, const std::string& value) { line.Baseline = value; }},
    kCodePage,
    kCatalogue,
    kDrive,
    kQuiet,
});

const std::vector<TOption> kReplaceOptions = WithScope({
    {"--dry-run", TValueKind::None, "", "Show the summary of the run, and change no file",
     [](TCommandLine& line, const std::string&) { line.DryRun = true; }},
    {"--diff", TValueKind::None, "", "Print the changes as a patch for git apply, and change no file",
     [](TCommandLine& line, const std::string&) { line.DryRun = line.Diff = true; }},
    {"--interactive", TValueKind::None, "",
     "Show the changes of each unit and its forms, and ask whether to make them",
     [](TCommandLine& line, const std::string&) { line.Interactive = true; }, !kRepeatable, 'i'},
    {"--ignore-space", TValueKind::None, "", "Ignore white space in the diff; git cannot apply such a diff",
     [](TCommandLine& line, const std::string&) { line.IgnoreSpace = true; }},
    {"--color", TValueKind::Choice, "auto|always|never",
     "Show the diff in colours (default: auto, on a terminal)",
     [](TCommandLine& line, const std::string& value) { line.Colour = value; }},
    {"--skip-converted", TValueKind::None, "", "Leave out units that were converted before",
     [](TCommandLine& line, const std::string&) { line.SkipConverted = true; }},
    {"--backup-dir", TValueKind::Folder, "DIR",
     "Folder for the backups and the undo file (default: RBackup below the folder of the run, or "
     "RBackup.2 and so on if that holds an earlier run)",
     [](TCommandLine& line, const std::string& value) { line.BackupDir = value; }},
    {"--overwrite-backups", TValueKind::None, "",
     "Use the folder of --backup-dir even if it holds the backups of an earlier run, which can no longer "
     "be undone",
     [](TCommandLine& line, const std::string&) { line.OverwriteBackups = true; }},
    {"--no-backup", TValueKind::None, "", "Make no backups and no undo file",
     [](TCommandLine& line, const std::string&) { line.NoBackup = true; }},
    {"--no-log", TValueKind::None, "", "Write no log",
     [](TCommandLine& line, const std::string&) { line.NoLog = true; }},
    {"--view-log", TValueKind::None, "", "Open the log in its viewer after the run",
     [](TCommandLine& line, const std::string&) { line.ViewLog = true; }},
    kCodePage,
    kCatalogue,
    kDrive,
    kQuiet,
});

const std::vector<TOption> kRestoreOptions = {
    {"--all", TValueKind::None, "", "Undo all runs of the folder, the last one first",
     [](TCommandLine& line, const std::string&) { line.All = true; }},
    {"--list", TValueKind::None, "", "Show what would be restored, and touch nothing",
     [](TCommandLine& line, const std::string&) { line.List = true; }},
    {"--only", TValueKind::Text, "PATTERN", "Restore only files whose path matches, as in 'old/*'",
     [](TCommandLine& line, const std::string& value) { StorePattern(line.Only, value); }, kRepeatable},
    {"--force", TValueKind::None, "", "Restore even files that were edited after the run",
     [](TCommandLine& line, const std::string&) { line.Force = true; }},
    kDrive,
    kQuiet,
};

const TOption kOutput = {"--output",
                         TValueKind::File,
                         "FILE",
                         "Write the result to this file (default: standard output)",
                         [](TCommandLine& line, const std::string& value) { line.Output = value; },
                         false,
                         'o'};
const TOption kInPlace = {"--in-place", TValueKind::None, "",
                          "Convert the files, and every form below the folders, where they are",
                          [](TCommandLine& line, const std::string&) { line.InPlace = true; }};
const TOption kBare = {"--bare", TValueKind::None, "", "Write the object data without a resource header",
                       [](TCommandLine& line, const std::string&) { line.Bare = true; }};
constexpr int kMany = 1 << 20;
const TArgument kInput = {"INPUT", TValueKind::File,
                          "A form file; - for standard input; with --in-place also a folder", 1, kMany};

const std::vector<TCommandRow> kCommands = {
    {TCommand::Replace,
     "replace",
     "Convert the units of a folder or a project, and their forms",
     "--mode bde|ibx [--folder] DIR|[--project] FILE [OPTIONS]",
     {"PATH", TValueKind::File, "The folder or the project; same as --folder or --project", 0, 1},
     kReplaceOptions,
     kReplaceFooter,
     kReplaceDrives},
    {TCommand::Check,
     "check",
     "Show what a run would convert and what it would leave; change no file",
     "--mode bde|ibx [--folder] DIR|[--project] FILE [OPTIONS]",
     {"PATH", TValueKind::File, "The folder or the project; same as --folder or --project", 0, 1},
     kCheckOptions,
     kCheckFooter},
    {TCommand::Restore,
     "restore",
     "Restore the files that a run changed",
     "UNDOFILE|DIR [OPTIONS]",
     {"PATH", TValueKind::File, "The undo file of the run, RExpert.reu, or the folder that was converted", 1,
      1},
     kRestoreOptions,
     kRestoreFooter,
     kRestoreDrives},
    {TCommand::FormToText,
     "form to-text",
     "Convert binary forms to text, as the IDE writes it",
     "INPUT... [-o FILE | --in-place]",
     kInput,
     {kOutput, kInPlace, kCodePage, kDrive, kQuiet},
     kToTextFooter},
    {TCommand::FormToBinary,
     "form to-binary",
     "Convert text to binary forms",
     "INPUT [-o FILE] | INPUT... --in-place",
     kInput,
     {kOutput, kInPlace, kBare, kCodePage, kDrive, kQuiet},
     kToBinaryFooter},
    {TCommand::Catalogue,
     "catalogue",
     "Print the properties that the target classes publish",
     "[--catalogue FILE]",
     {},
     {kCatalogue, kDrive},
     kCatalogueFooter},
    {TCommand::Wizard,
     "wizard",
     "Open the wizard's dialog, if the desktop part is installed",
     "[PROJECT]",
     {"PROJECT", TValueKind::File, "The project or the group to open first", 0, 1},
     {kCodePage, kCatalogue, kDrive},
     kWizardFooter},
    {TCommand::Completion,
     "completion",
     "Print the completion script for a shell",
     "bash|zsh|fish",
     {"bash|zsh|fish", TValueKind::Choice, "The shell", 1, 1},
     {},
     kCompletionFooter},
    {TCommand::Help,
     "help",
     "Show the help of a command",
     "[COMMAND]",
     {"COMMAND", TValueKind::Text, "The command; without one, the commands are listed", 0, 2},
     {},
     ""},
    {TCommand::Rules, "rules", "Print the rules of findings", "", {}, {}, "", {}, /*IsHidden=*/true},
    {TCommand::ManPage, "manpage", "Print the manual page", "", {}, {}, "", {}, /*IsHidden=*/true},
};

}  // namespace

const std::vector<TCommandRow>& Commands() {
  static const std::vector<TCommandRow> commands = [] {
    std::vector<TCommandRow> rows = kCommands;
    if (win::CanMapDrives()) return rows;
    for (TCommandRow& row : rows) {
      std::erase_if(row.Options, [](const TOption& option) { return option.Name == kDrive.Name; });
      row.DrivesFooter = {};
    }
    return rows;
  }();
  return commands;
}

const TOption& HelpOption() {
  return kHelp;
}

std::string StepNames(const completion::TSteps& steps) {
  std::string names;
  for (const TStepRow& row : kSteps)
    if (steps.*row.Step) names.append(names.empty() ? "" : ",").append(row.Name);
  return names;
}

std::vector<std::string_view> ChoicesOf(std::string_view valueName) {
  std::vector<std::string_view> choices;
  for (size_t start = 0; start <= valueName.size();) {
    const size_t end = std::min(valueName.find('|', start), valueName.size());
    choices.push_back(valueName.substr(start, end - start));
    start = end + 1;
  }
  return choices;
}

}  // namespace cli
