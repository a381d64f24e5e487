// Compares the open files of the host with the disk, so that neither the editors nor another program overwrite
// changes without a question.
#pragma once

#include <QObject>
#include <map>
#include <string>

#include "host/Host.h"
#include "win/FileSystem.h"

namespace desktop {

class TDiskChanges : public QObject {
 public:
  // Answers the host's OnQueryOverwrite by asking the user. Calls Refresh whenever `window` becomes active. Both
  // must outlive the object.
  TDiskChanges(host::THost& host, QWidget& window);
  ~TDiskChanges() override;

  // Reloads unmodified buffers whose files were changed on the disk. For modified ones asks what to keep, once for
  // each version of the file. Does nothing while a question is open.
  void Refresh();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  host::TOverwriteAnswer AskToOverwrite(host::TFileBuffer& buffer);
  void Refresh(host::TFileBuffer& buffer);

  host::THost& FHost;
  std::map<std::string, win::TFileStamp>
      FKept;  // by file name: the version against which the user kept changes
  bool FIsAsking = false;
};

}  // namespace desktop
