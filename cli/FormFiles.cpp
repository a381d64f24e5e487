#include "cli/FormFiles.h"

#include <cstdint>
#include <utility>

#include "MigWizard/run/FileUtils.h"
#include "cli/Console.h"
#include "cli/PrivateFolder.h"
#include "cli/TypedPath.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace cli {

std::string ReadFormFile(const std::string& path, const std::string& name) {
  try {
    return rtl::TFileStream(path, rtl::fmOpenRead | rtl::fmShareDenyNone).ReadToEnd();
  } catch (const rtl::EStreamError& error) {
    std::string message = error.what();
    if (const size_t at = message.find(path); at != std::string::npos) message.replace(at, path.size(), name);
    throw rtl::EStreamError(message);
  }
}

TConvertedForm ConvertForm(std::string bytes, TFormKind wanted, const std::string& name) {
  try {
    TConvertedForm form = ConvertFormBytes(std::move(bytes), wanted);
    if (form.Dropped > 0)
      Complain(rtl::Format("%s: %d bytes after the form are not part of it.",
                           {name, static_cast<int64_t>(form.Dropped)}));
    return form;
  } catch (const rtl::Exception& error) {
    throw rtl::Exception(name + ": " + error.what());
  }
}

void WriteFormFile(const std::string& output, std::string_view bytes, const std::string& input) {
  const std::string path = WindowsPath(output);
  const TPrivateFolder folder;
  const std::string temp = mig::JoinPath(folder.Path(), "form");
  rtl::TFileStream(temp, rtl::fmCreate).Write(bytes);
  if (!input.empty()) (void)win::FileSystem().CopyPermissions(WindowsPath(input), temp);
  if (!win::CopyFileA(temp, path, false))
    throw rtl::EWriteError("Cannot write \"" + output + "\". " + win::SysErrorMessage(win::GetLastError()));
  if (!win::FileSystem().FlushWritten())
    throw rtl::EWriteError("\"" + output + "\" may not be on the disk. " +
                           win::SysErrorMessage(win::GetLastError()));
}

}  // namespace cli
