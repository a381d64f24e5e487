// kvawizard.exe: the wizard's dialog. A double click asks for the project first; the command `wizard` of the
// command line program starts it with --wizard, which does not ask.
#include <optional>
#include <string>
#include <vector>

#include "host/WizardProgram.h"
#include "host/WizardRun.h"
#include "native/FrontEnd.h"
#include "native/ProgressWindow.h"
#include "native/StartForm.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "target/Catalogue.h"
#include "win/Shell.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"
#include "win/windows/WindowsText.h"

namespace native {
namespace {

using host::EUsage;
using host::kWizardTitle;

constexpr char kUsage[] =
    "Usage: kvawizard [--wizard] [--codepage N] [--catalogue FILE] [PROJECT]\n\n"
    "PROJECT\tThe project or project group to migrate.\n"
    "--wizard\tDo not ask for a project.\n"
    "--codepage N\tCode page of sources without a mark (default: 1252).\n"
    "--catalogue FILE\tWhat the target classes publish, instead of what is built in.";

struct TOptions {
  std::string Project;
  std::string CodePage;
  std::string Catalogue;
  bool DialogAlone = false;
  bool ShowHelp = false;
};

std::vector<std::string> Arguments() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(win::ToUtf8OrReplaced(words[i]));
  LocalFree(words);
  return arguments;
}

TOptions ParseCommandLine(const std::vector<std::string>& arguments) {
  TOptions options;
  bool hasEnded = false;  // by "--": the rest is no option
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (hasEnded || !argument.starts_with("--")) {
      if (!options.Project.empty()) throw EUsage("Only one project can be opened.");
      options.Project = argument;
      continue;
    }
    const size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto value = [&] {
      if (equals != std::string::npos) return argument.substr(equals + 1);
      if (++i == arguments.size()) throw EUsage(name + " needs a value.");
      return arguments[i];
    };
    if (name == "--codepage") {
      options.CodePage = value();
    } else if (name == "--catalogue") {
      options.Catalogue = value();
    } else if (argument == "--") {
      hasEnded = true;
    } else if (argument == "--wizard") {
      options.DialogAlone = true;
    } else if (argument == "--help") {
      options.ShowHelp = true;
    } else {
      throw EUsage("Unknown option " + name + ".\n\n" + kUsage);
    }
  }
  return options;
}

void SetCodePage(const std::string& name) {
  if (name.empty()) return;
  const bool isNumber = name.size() <= 5 && name.find_first_not_of("0123456789") == std::string::npos;
  if (!isNumber || !win::SetACP(static_cast<unsigned>(std::stoi(name))))
    throw EUsage("Code page " + name + " is not known.");
}

target::TCatalogue LoadCatalogue(const std::string& fileName) {
  if (fileName.empty()) return target::TCatalogue::BuiltIn();
  return {rtl::ReadFile(win::ToWindowsPath(fileName)), fileName};
}

// Opens the manual, which is in a folder beside the program.
void ShowManual() {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::string manual = rtl::ExtractFilePath(win::ToUtf8OrReplaced(program)) + R"(docs\manual.html)";
  if (win::ShellExecuteA("open", manual)) return;
  rtl::Application().MessageBox("The manual \"" + manual + "\" cannot be opened.", kWizardTitle,
                                rtl::MB_ICONINFORMATION);
}

int Run(const TOptions& options, TFrontEnd& frontEnd) {
  if (options.ShowHelp) {
    rtl::Application().MessageBox(kUsage, kWizardTitle, rtl::MB_ICONINFORMATION);
    return 0;
  }
  SetCodePage(options.CodePage);
  std::string project = options.Project.empty() ? std::string() : win::ToWindowsPath(options.Project);
  if (project.empty() && !options.DialogAlone) {
    const std::optional<std::string> answer = TStartForm().Ask();
    if (!answer) return 0;
    project = *answer;
  }
  TProgressWindow progress([&frontEnd] { return frontEnd.Owner(); });
  frontEnd.OnModal = [&progress] { progress.Close(); };
  try {
    host::RunWizard(project, LoadCatalogue(options.Catalogue), progress);
  } catch (...) {
    progress.Close();
    frontEnd.OnModal = nullptr;
    throw;
  }
  frontEnd.OnModal = nullptr;
  return frontEnd.HasShownError() ? host::kExitFailed : 0;
}

int Main() {
  const INITCOMMONCONTROLSEX controls = {sizeof controls,
                                         ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&controls);
  static_cast<void>(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE));
  TFrontEnd frontEnd(kWizardTitle);
  frontEnd.OnHelp = ShowManual;
  try {
    return Run(ParseCommandLine(Arguments()), frontEnd);
  } catch (const EUsage& error) {
    rtl::Application().HandleException(error);
    return host::kExitUsage;
  } catch (const rtl::EAbort&) {  // the user has been told why
    return frontEnd.HasShownError() ? host::kExitException : host::kExitStopped;
  } catch (const std::exception& error) {
    rtl::Application().HandleException(error);
    return host::kExitException;
  }
}

}  // namespace
}  // namespace native

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  return native::Main();
}
