#include "desktop/DiskChanges.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <vector>

#include "desktop/DifferenceWindow.h"
#include "desktop/QtText.h"
#include "desktop/SourceText.h"
#include "rtl/forms/Application.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/Diagnostics.h"
#include "win/FileApi.h"

namespace desktop {

namespace {

constexpr char kCaption[] = "Changed on the Disk";
constexpr char kShowDifference[] = "Show &Difference";

// Returns the text as a file of its own.
std::string AsUtf8(const std::string& bytes, bool isForm, uint32_t codePage) {
  return "\xEF\xBB\xBF" + FromQt(TSourceText(bytes, isForm, codePage).Text());
}

void ShowDifference(host::TFileBuffer& buffer) {
  const auto compare = [name = buffer.FileName(), mine = buffer.Bytes(), codePage = buffer.CodePage()] {
    const std::unique_ptr<win::TFileSystem> files =
        win::AnotherHostFileSystem();  // this runs on another thread
    const win::TFileSystemOverride inForce(*files);
    const bool isForm = host::IsFormFile(name);
    return std::make_shared<const TFileDiff>(AsUtf8(mine, isForm, codePage),
                                             AsUtf8(rtl::ReadFile(name), isForm, codePage),
                                             /*ignoreSpace=*/false);
  };
  TDifferenceWindow(ToQt(buffer.FileName()), "In the editor:", "On the disk:", compare,
                    QApplication::activeWindow())
      .exec();
}

// Asks until the user has chosen a button other than that for the difference.
int AskAbout(host::TFileBuffer& buffer, const rtl::TQuestion& question) {
  for (;;) {
    const int answer = rtl::Application().Ask(question).value_or(question.Cancel);
    if (question.Buttons.at(static_cast<size_t>(answer)) != kShowDifference) return answer;
    ShowDifference(buffer);
  }
}

}  // namespace

TDiskChanges::TDiskChanges(host::THost& host, QWidget& window) : FHost(host) {
  FHost.OnQueryOverwrite = [this](host::TFileBuffer& buffer) { return AskToOverwrite(buffer); };
  window.installEventFilter(this);
}

TDiskChanges::~TDiskChanges() {
  FHost.OnQueryOverwrite = nullptr;
}

bool TDiskChanges::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::WindowActivate) {
    QTimer::singleShot(0, this, [this] {
      if (QApplication::activeModalWidget() == nullptr) Refresh();
    });
  }
  return QObject::eventFilter(object, event);
}

host::TOverwriteAnswer TDiskChanges::AskToOverwrite(host::TFileBuffer& buffer) {
  const int answer =
      AskAbout(buffer, {.Caption = kCaption,
                        .Text = "\"" + buffer.FileName() + "\" was changed on the disk.",
                        .Flags = rtl::MB_ICONWARNING,
                        .Reasons = {"Another program has written it since it was loaded. Saving "
                                    "overwrites what it has written."},
                        .Buttons = {"&Overwrite", "&Reload", kShowDifference, "Cancel"},
                        .Default = 3,
                        .Cancel = 3});
  if (answer == 0) return host::TOverwriteAnswer::Overwrite;
  return answer == 1 ? host::TOverwriteAnswer::Reload : host::TOverwriteAnswer::Cancel;
}

void TDiskChanges::Refresh() {
  if (FIsAsking) return;
  FIsAsking = true;
  // Reloading a buffer may change the list of modules, so the buffers are collected first.
  std::vector<toolsapi::TIntf<toolsapi::IOTAModule>> alive;
  std::vector<host::TFileBuffer*> buffers;
  for (int i = 0; i < FHost.ModuleCount(); ++i) {
    host::TModule& module = FHost.Module(i);
    alive.push_back(module.Interface());
    for (int j = 0; j < module.EditorCount(); ++j) buffers.push_back(&module.Editor(j).Buffer());
  }
  try {
    for (host::TFileBuffer* const buffer : buffers) Refresh(*buffer);
  } catch (const std::exception& error) {
    rtl::Application().HandleException(error);
  }
  FIsAsking = false;
}

void TDiskChanges::Refresh(host::TFileBuffer& buffer) {
  if (!buffer.ChangedOnDisk()) return;
  const std::string& name = buffer.FileName();
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(name);
  const auto kept = FKept.find(name);
  if (!stamp || (kept != FKept.end() && kept->second == *stamp)) return;
  const bool isReloaded =
      !buffer.Modified() ||
      AskAbout(buffer, {.Caption = kCaption,
                        .Text = "\"" + name + "\" was changed on the disk, and in its editor.",
                        .Flags = rtl::MB_ICONWARNING,
                        .Reasons = {"The changes in the editor are not saved."},
                        .Buttons = {"Keep What Is on the &Disk", "Keep the &Editor's", kShowDifference},
                        .Cancel = 1}) == 0;
  FKept.insert_or_assign(name, *stamp);  // a file that cannot be read is not tried again, either
  if (isReloaded && !buffer.Reload())
    win::Diagnose(name + ": was changed on the disk, and cannot be read. " +
                  win::SysErrorMessage(win::GetLastError()));
}

}  // namespace desktop
