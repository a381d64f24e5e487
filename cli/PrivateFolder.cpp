#include "cli/PrivateFolder.h"

#include <new>

#include "MigWizard/run/FileUtils.h"
#include "rtl/text/Exceptions.h"
#include "win/FileApi.h"

namespace cli {

TPrivateFolder::TPrivateFolder() : FPath(mig::CreateTempFolder("$DS", 1)) {
  if (FPath.empty())
    throw rtl::EFCreateError("No temporary folder can be made in \"" + win::GetTempPathA() + "\". " +
                             win::SysErrorMessage(win::GetLastError()));
  FLock = win::LockFolder(FPath);
}

TPrivateFolder::~TPrivateFolder() {
  try {
    mig::DeleteFolder(FPath);
  } catch (const std::bad_alloc&) {  // the folder remains; the next run reports it
  }
}

}  // namespace cli
