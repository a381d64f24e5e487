#include "host/ProjectText.h"

#include <utility>

#include "host/HostError.h"
#include "rtl/Streams.h"
#include "rtl/SysUtils.h"
#include "win/CodePage.h"

namespace host {

mig::TTextFile ReadProjectText(std::string_view fileName) {
  if (rtl::DirectoryExists(fileName))
    throw EHostError(At(fileName, 0, "this is a folder, not a project file."));
  rtl::TFileStream file(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone);
  return mig::ReadTextFile(file);
}

std::string ToUtf8(std::string_view piece, const qrl::TEncoding& encoding) {
  return encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(piece) : std::string(piece);
}

std::string ToXmlText(mig::TTextFile file) {
  if (*file.Encoding == qrl::TEncoding::Default() && !win::IsValidUtf8(file.Text)) {
    return win::SourceToUtf8(file.Text);
  }
  return std::move(file.Text);
}

}  // namespace host
