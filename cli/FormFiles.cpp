#include "cli/FormFiles.h"

#include <cstdint>
#include <utility>

#include "MigWizard/run/FileUtils.h"
#include "cli/Console.h"
#include "cli/PrivateFolder.h"
#include "cli/TypedPath.h"
#include "rtl/text/Files.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace cli {
namespace {

std::string LastReason() {
  return win::SysErrorMessage(win::GetLastError());
}

}  // namespace

std::string ReadFormFile(const std::string& path, const std::string& name) {
  try {
    return rtl::ReadFile(path);
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

void WriteTempForm(const std::string& temp, std::string_view bytes, const std::string& like) {
  if (!like.empty() && !(win::CopyToOwnFile(like, temp) && win::FileSystem().CopyPermissions(like, temp))) {
    throw rtl::EFCreateError("Cannot make a temporary copy of \"" + like + "\". " + LastReason());
  }
  rtl::TFileStream(temp, rtl::fmCreate).Write(bytes);
}

bool PutForm(const std::string& temp, const std::string& target) {
  const uint32_t attributes = win::FileSystem().GetFileAttributesA(target);
  if (attributes != win::INVALID_FILE_ATTRIBUTES && (attributes & win::FILE_ATTRIBUTE_READONLY)) {
    win::SetLastError(win::ERROR_ACCESS_DENIED);
    return false;
  }
  // The copy alone leaves a file that only its owner can read where something of the access rights cannot be
  // copied.
  return win::CopyToOwnFile(temp, target) && win::FileSystem().CopyPermissions(temp, target);
}

void WriteFormFile(const std::string& output, std::string_view bytes, const std::string& input) {
  const std::string path = WindowsPath(output);
  const TPrivateFolder folder;
  const std::string temp = mig::JoinPath(folder.Path(), "form");
  std::string like = input.empty() ? path : WindowsPath(input);
  if (!rtl::FileExists(like)) like.clear();
  WriteTempForm(temp, bytes, like);
  if (!PutForm(temp, path)) throw rtl::EWriteError("Cannot write \"" + output + "\". " + LastReason());
  if (!win::FileSystem().FlushWritten())
    throw rtl::EWriteError("\"" + output + "\" may not be on the disk. " + LastReason());
}

}  // namespace cli
