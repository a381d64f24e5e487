#include "desktop/DiskChanges.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QtConcurrentRun>
#include <memory>
#include <utility>

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
  connect(&FReading, &QFutureWatcherBase::finished, this, [this] { Show(FReading.result()); });
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

// --- Files that were changed on the disk ---

// Runs on a worker thread.
std::vector<TDiskChanges::TChanged> TDiskChanges::ReadChanged(const std::vector<TLoaded>& files) {
  // The file system of the main thread is not for others.
  const std::unique_ptr<win::TFileSystem> fileSystem = win::AnotherHostFileSystem();
  const win::TFileSystemOverride inForce(*fileSystem);
  std::vector<TChanged> changed;
  for (const TLoaded& file : files) {
    const std::optional<win::TFileStamp> stamp = win::GetFileStamp(file.FileName);
    if (!stamp || stamp == file.Stamp) continue;
    TChanged& one = changed.emplace_back(TChanged{file, {{}, stamp}, {}});
    try {
      one.Contents = host::TFileBuffer::ReadContents(file.FileName);
    } catch (const std::exception& error) {
      one.Failure = error.what();
    }
  }
  return changed;
}

void TDiskChanges::Refresh() {
  if (FIsAsking) return;
  FIsWanted = FIsReading;
  if (FIsReading) return;
  std::vector<TLoaded> loaded;
  for (int i = 0; i < FHost.ModuleCount(); ++i) {
    host::TModule& module = FHost.Module(i);
    for (int j = 0; j < module.EditorCount(); ++j) {
      const host::TFileBuffer& buffer = module.Editor(j).Buffer();
      if (buffer.IsLoaded()) loaded.push_back({buffer.FileName(), buffer.Stamp()});
    }
  }
  if (loaded.empty()) return;
  FIsReading = true;
  FReading.setFuture(QtConcurrent::run(ReadChanged, std::move(loaded)));
}

void TDiskChanges::Show(std::vector<TChanged> files) {
  FIsReading = false;
  if (std::exchange(FIsWanted, false)) return Refresh();
  // During a run, or while another window asks, nothing is changed. Refresh is called again after it.
  if (QApplication::activeModalWidget() != nullptr) return;
  FIsAsking = true;
  for (TChanged& file : files) {
    try {
      ShowFile(std::move(file));
    } catch (const std::exception& error) {
      rtl::Application().HandleException(error);
    }
  }
  FIsAsking = false;
}

void TDiskChanges::ShowFile(TChanged file) {
  const std::string& name = file.Loaded.FileName;
  host::TModule* const found = FHost.FindModule(name);
  if (found == nullptr) return;
  const toolsapi::TIntf<toolsapi::IOTAModule> alive =
      found->Interface();  // the user may close it while asked
  host::TFileBuffer* buffer = nullptr;
  for (int i = 0; i < found->EditorCount(); ++i) {
    if (found->Editor(i).Buffer().FileName() == name) buffer = &found->Editor(i).Buffer();
  }
  // Somebody may have read or written the file meanwhile.
  if (buffer == nullptr || !buffer->IsLoaded() || buffer->Stamp() != file.Loaded.Stamp) return;
  const win::TFileStamp stamp = file.Contents.Stamp.value_or(win::TFileStamp());
  const auto kept = FKept.find(name);
  if (kept != FKept.end() && kept->second == stamp) return;
  const bool isReloaded =
      !buffer->Modified() ||
      AskAbout(*buffer, {.Caption = kCaption,
                         .Text = "\"" + name + "\" was changed on the disk, and in its editor.",
                         .Flags = rtl::MB_ICONWARNING,
                         .Reasons = {"The changes in the editor are not saved."},
                         .Buttons = {"Keep What Is on the &Disk", "Keep the &Editor's", kShowDifference},
                         .Cancel = 1}) == 0;
  FKept.insert_or_assign(name, stamp);  // a file that cannot be read is not tried again, either
  if (!isReloaded) return;
  if (file.Failure.empty()) {
    buffer->Reload(std::move(file.Contents));
  } else {
    win::Diagnose(name + ": was changed on the disk, and cannot be read. " + file.Failure);
  }
}

}  // namespace desktop
