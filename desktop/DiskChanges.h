// Compares the open files of the host with the disk, so that neither the editors nor another program
// overwrite changes without a question.
#pragma once

#include <QFutureWatcher>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/Host.h"
#include "win/FileSystem.h"

namespace desktop {

class TDiskChanges : public QObject {
 public:
  // Answers the host's OnQueryOverwrite by asking the user. Calls Refresh whenever `window` becomes active.
  // Both must outlive the object.
  TDiskChanges(host::THost& host, QWidget& window);
  ~TDiskChanges() override;

  // Reloads unmodified buffers whose files were changed on the disk, as soon as a task has read them. For
  // modified ones asks what to keep, once for each version of the file. Does nothing while a question is
  // open.
  void Refresh();
  // Returns whether neither a task nor a question of Refresh is pending.
  bool IsIdle() const { return !FIsReading && !FIsAsking; }

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  // A loaded file, and the stamp with which it was loaded.
  struct TLoaded {
    std::string FileName;
    std::optional<win::TFileStamp> Stamp;
  };
  // A file that was changed on the disk since: its contents, or why it cannot be read.
  struct TChanged {
    TLoaded Loaded;
    host::TFileBuffer::TContents Contents;
    std::string Failure;
  };
  static std::vector<TChanged> ReadChanged(const std::vector<TLoaded>& files);
  host::TOverwriteAnswer AskToOverwrite(host::TFileBuffer& buffer);
  void Show(std::vector<TChanged> files);
  void ShowFile(TChanged file);

  host::THost& FHost;
  QFutureWatcher<std::vector<TChanged>> FReading;
  bool FIsReading = false;
  bool FIsWanted = false;  // again, after the present task
  std::map<std::string, win::TFileStamp>
      FKept;  // by file name: the version against which the user kept changes
  bool FIsAsking = false;
};

}  // namespace desktop
