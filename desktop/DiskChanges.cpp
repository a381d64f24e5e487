#include "desktop/DiskChanges.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <vector>

#include "desktop/SourceText.h"
#include "diff/GitPatch.h"
#include "rtl/forms/Application.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/Diagnostics.h"
#include "win/FileApi.h"

namespace desktop {

namespace {

constexpr char kCaption[] = "Changed on the Disk";
constexpr char kShowDifference[] = "Show &Difference";

std::string TextOf(const std::string& bytes, const host::TFileBuffer& buffer) {
  return TSourceText(bytes, host::IsFormFile(buffer.FileName()), buffer.CodePage()).Text().toStdString();
}

// Shows what the file on the disk lacks (-) and what the editor lacks (+).
void ShowDifference(host::TFileBuffer& buffer) {
  const std::string& name = buffer.FileName();
  const std::string mine = TextOf(buffer.Bytes(), buffer);
  const std::string disk = TextOf(rtl::ReadFile(name), buffer);
  std::string patch = diff::GitPatch({rtl::ExtractFileName(name), mine, disk, {}, {}});
  patch.erase(0, patch.find("@@"));  // the lines for patch tools
  static_cast<void>(rtl::Application().Ask(
      {.Caption = kCaption,
       .Text = name,
       .Reasons = {"Lines with - are in the editor only, those with + on the disk only."},
       .Details = {patch.empty() ? "There is no difference." : patch},
       .Buttons = {"Close"}}));
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
