// kvawizard: the window of the stand-alone host with the wizard in its menu. With --wizard, shows the
// wizard's dialog alone; the command `wizard` of the command line program starts it in this way.
#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <cstdio>

#include "desktop/FrontEnd.h"
#include "desktop/HostWindow.h"
#include "desktop/ProgressWindow.h"
#include "desktop/QtText.h"
#include "desktop/TickStyle.h"
#include "host/WizardProgram.h"
#include "host/WizardRun.h"
#include "rtl/text/Files.h"
#include "target/Catalogue.h"
#include "win/paths/CodePage.h"
#include "win/paths/Drives.h"

namespace desktop {
namespace {

using host::EUsage;

struct TOptions {
  QString Project;
  QString CodePage;
  QStringList Drives;
  QString Catalogue;
  bool DialogAlone = false;
};

TOptions ParseCommandLine(const QApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Opens Delphi projects in a window with the migration wizard.");
  parser.addHelpOption();
  parser.addPositionalArgument("PROJECT", "The project or project group to open first.", "[PROJECT]");
  parser.addOptions({
      {"codepage", "Code page of sources without a mark (default: 1252).", "N"},
      {"drive", "Map drive X: to a folder of this machine (repeatable; Z: is the root folder).", "X=DIR"},
      {"wizard", "Only show the wizard's dialog."},
      {"catalogue", "With --wizard: what the target classes publish, instead of what is built in.", "FILE"},
  });
  if (!parser.parse(application.arguments())) throw EUsage(FromQt(parser.errorText()));
  if (parser.isSet("help")) parser.showHelp();
  if (parser.isSet("catalogue") && !parser.isSet("wizard"))
    throw EUsage("--catalogue goes with --wizard: the window takes the wizard from its module.");
  if (parser.positionalArguments().size() > 1) throw EUsage("Only one project can be opened.");
  return {parser.positionalArguments().value(0), parser.value("codepage"), parser.values("drive"),
          parser.value("catalogue"), parser.isSet("wizard")};
}

void SetEnvironment(const TOptions& options) {
  if (!options.CodePage.isEmpty() && !win::SetACP(options.CodePage.toUInt())) {
    throw EUsage("Code page " + FromQt(options.CodePage) + " is not known.");
  }
  for (const QString& drive : options.Drives) {
    const bool isMapping = drive.size() > 2 && drive[1] == '=';
    if (!isMapping || !win::MapDrive(static_cast<char>(drive[0].unicode()), FromQt(drive.mid(2)))) {
      throw EUsage("--drive " + FromQt(drive) + ": no such folder.");
    }
  }
}

std::string WindowsPath(const QString& typed) {
  std::string path = win::ToWindowsPath(FromQt(typed));
  if (path.empty())
    throw EUsage("\"" + FromQt(typed) + "\" cannot be written as a Windows path; is its drive mapped?");
  return path;
}

target::TCatalogue LoadCatalogue(const QString& fileName) {
  if (fileName.isEmpty()) return target::TCatalogue::BuiltIn();
  return {rtl::ReadFile(WindowsPath(fileName)), FromQt(fileName)};
}

void RunWizard(const TOptions& options, TFrontEnd& frontEnd) {
  TProgressWindow progress;
  frontEnd.OnModal = [&progress] { progress.Close(); };
  const std::string project = options.Project.isEmpty() ? std::string() : WindowsPath(options.Project);
  try {
    host::RunWizard(project, LoadCatalogue(options.Catalogue), progress);
  } catch (...) {
    frontEnd.OnModal = nullptr;
    std::fputs(progress.Warnings().c_str(), stderr);
    throw;
  }
  frontEnd.OnModal = nullptr;
}

// Returns the module with the wizard: the one named by KVA_EXPERT_MODULE, or the one beside this program,
// or the one in the library folder of an installation.
QString ModuleName() {
  QString name = qEnvironmentVariable("KVA_EXPERT_MODULE");
  if (!name.isEmpty()) return name;
  const QString beside = QApplication::applicationDirPath() + "/kvaexpert.so";
  return QFile::exists(beside)
             ? beside
             : QApplication::applicationDirPath() + "/../lib/kvamigrate/modules/kvaexpert.so";
}

int RunWindow(const TOptions& options, TFrontEnd& frontEnd) {
  THostWindow window(frontEnd);
  window.show();
  window.LoadWizard(WindowsPath(ModuleName()));
  if (!options.Project.isEmpty()) window.OpenProject(WindowsPath(options.Project));
  return QApplication::exec();
}

// Qt ends the process if there is no display. This check allows a message that gives the reason.
bool HasDisplay() {
  const auto isSet = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
  return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

int Main(int argc, char** argv) {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
  if (!HasDisplay()) {
    std::fputs("kvawizard: there is no display to show the wizard on.\n", stderr);
    return host::kExitException;
  }
#endif
  QApplication application(argc, argv);
  QApplication::setStyle(new desktop::TTickStyle);
  TFrontEnd frontEnd(host::kWizardTitle);
  try {
    const TOptions options = ParseCommandLine(application);
    SetEnvironment(options);
    if (!options.DialogAlone) return RunWindow(options, frontEnd);
    RunWizard(options, frontEnd);
    return frontEnd.HasShownError() ? host::kExitFailed : 0;
  } catch (const EUsage& error) {
    std::fprintf(stderr, "kvawizard: %s\n", error.what());
    return host::kExitUsage;
  } catch (const rtl::EAbort&) {  // the user has been told why
    return frontEnd.HasShownError() ? host::kExitException : host::kExitStopped;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "kvawizard: %s\n", error.what());
    rtl::Application().HandleException(error);
    return host::kExitException;
  }
}

}  // namespace
}  // namespace desktop

int main(int argc, char** argv) {
  return desktop::Main(argc, argv);
}
