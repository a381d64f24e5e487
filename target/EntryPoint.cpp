// The loadable module's only export. Objects with the lifetime of the module (options, replacers, class maps)
// are created by the first call and destroyed when the module is unloaded, after the host has released the
// expert.

#include "MigWizard/wizard/Wizard.h"
#include "qrl/QrlVcl.h"
#include "rtl/forms/Application.h"
#include "target/Catalogue.h"
#include "target/KVAExpert.h"
#include "toolsapi/HostRuntime.h"
#include "win/Diagnostics.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace {

using toolsapi::IHostRuntime;
using toolsapi::TIntf;

target::TKVAMigration& Migration() {
  static target::TKVAMigration migration(target::TCatalogue::BuiltIn());
  return migration;
}

bool IsRestoring() {
  return mig::WizardForm && mig::WizardForm->GetReplacerIndex() == mig::kRestoreIndex;
}

void Watch(mig::TComponentReplacer& replacer, const TIntf<IHostRuntime>& runtime) {
  replacer.OnProgress = [&replacer, runtime](const mig::TRunProgress& progress) {
    const bool isRestoring = IsRestoring();
    const std::string title = replacer.Options().GetTitle();
    const std::string logFileName = isRestoring ? std::string() : replacer.LogFileName();
    runtime->RunAdvanced(
        {title, progress.FileName, logFileName, progress.Done, progress.Known, !isRestoring});
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
  Watch(Migration().BDE(), runtime);
  Watch(Migration().IBX(), runtime);
}

}  // namespace

extern "C" [[gnu::visibility("default")]] bool INITWIZARD0001(const TIntf<toolsapi::IInterface>& services,
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
