// The loadable module's only export. Objects with the lifetime of the module (options, replacers, class maps)
// are created by the first call and destroyed when the module is unloaded, after the host has released the
// expert.

#include <string>
#include <utility>
#include <vector>

#include "MigWizard/run/FindingsCollector.h"
#include "MigWizard/run/IDEUtils.h"
#include "qrl/QrlVcl.h"
#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"
#include "target/Catalogue.h"
#include "target/KVAExpert.h"
#include "toolsapi/HostRuntime.h"
#include "win/Diagnostics.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace {

using mig::IRunResults;
using toolsapi::IHostRuntime;
using toolsapi::TIntf;

target::TKVAMigration& Migration() {
  static target::TKVAMigration migration(target::TCatalogue::BuiltIn());
  return migration;
}

// Returns the results of a run of the replacer.
mig::TRunResult ResultOf(const mig::TComponentReplacer& replacer, const char* mode,
                         const std::vector<mig::TFileReport>& files) {
  const mig::TReplaceOptions& options = replacer.Options();
  const bool isFolder = options.Dest == mig::sdFolder;
  const std::string folder =
      isFolder ? options.Directory : rtl::ExtractFileDir(mig::TIDEUtils::GetProjectFileName());
  return {mode, isFolder, folder, options.MakeBackup ? options.BackupDir : std::string(), files};
}

void Watch(mig::TComponentReplacer& replacer, const char* mode, const TIntf<IHostRuntime>& runtime) {
  if (auto results = toolsapi::Supports<IRunResults>(runtime)) {
    replacer.OnCollected = [&replacer, mode, results](const std::vector<mig::TFileReport>& files) {
      results->RunConverted(ResultOf(replacer, mode, files));
    };
  }
  replacer.OnProgress = [&replacer, runtime](const mig::TRunProgress& progress) {
    const std::string title = replacer.Options().GetTitle();
    const std::string logFileName = replacer.LogFileName();
    runtime->RunAdvanced({.Title = title,
                          .FileName = progress.FileName,
                          .LogFileName = logFileName,
                          .Phase = progress.Phase,
                          .Done = progress.PhaseDone,
                          .Known = progress.PhaseTotal});
  };
  replacer.OnReplacing = [&replacer, runtime](mig::TRunPhase phase, int done, int total) {
    const std::string title = replacer.Options().GetTitle();
    const std::string logFileName = replacer.LogFileName();
    runtime->RunAdvanced({.Title = title,
                          .FileName = {},
                          .LogFileName = logFileName,
                          .Phase = phase,
                          .Done = done,
                          .Known = total});
  };
  replacer.OnWarning = [runtime](std::string_view message) { runtime->RunWarning(message); };
}

// Uses the host's screen and settings as this module's own, if the host shares them.
void ShareRuntime(const TIntf<IHostRuntime>& runtime) {
  if (!runtime) return;
  rtl::Application().SetFrontEnd(runtime->GetFrontEnd());
  qrl::SetWaitCursor([runtime](bool waiting) {
    // A run begins: the user may have chosen another code page since the module was loaded.
    if (waiting) static_cast<void>(win::SetACP(runtime->GetSourceCodePage()));
    runtime->ShowWaiting(waiting);
  });
  static_cast<void>(win::SetACP(runtime->GetSourceCodePage()));
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const std::string folder = runtime->GetDriveFolder(letter);
    if (!folder.empty()) static_cast<void>(win::MapDrive(letter, folder));
  }
  win::SetDiagnosticsSink([runtime](std::string_view line) { runtime->RunWarning(line); });
  Watch(Migration().BDE(), "bde", runtime);
  Watch(Migration().IBX(), "ibx", runtime);
}

}  // namespace

extern "C" KVA_EXPORTED bool INITWIZARD0001(const TIntf<toolsapi::IInterface>& services,
                                            toolsapi::TWizardRegisterProc registerProc,
                                            toolsapi::TWizardTerminateProc*) {
  try {
    if (!toolsapi::BorlandIDEServices) toolsapi::BorlandIDEServices = services;
    ShareRuntime(toolsapi::Supports<IHostRuntime>(services));
    registerProc(target::MakeExpert(Migration()));
  } catch (const std::exception& exception) {
    rtl::Application().HandleException(exception);
  }
  return true;
}
