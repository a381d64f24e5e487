#include "host/ProjectText.h"

#include <array>
#include <utility>

#include "host/HostError.h"
#include "rtl/Streams.h"
#include "rtl/SysUtils.h"
#include "win/CodePage.h"

namespace host {

TProjectText ReadProjectText(std::string_view fileName) {
  if (rtl::DirectoryExists(fileName))
    throw EHostError(At(fileName, 0, "this is a folder, not a project file."));
  std::string bytes = rtl::TFileStream(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone).ReadToEnd();

  const std::array<std::pair<std::string_view, const qrl::TEncoding*>, 2> marks = {{
      {"\xFF\xFE", &qrl::TEncoding::Unicode()},
      {"\xEF\xBB\xBF", &qrl::TEncoding::UTF8()},
  }};
  for (const auto& [mark, encoding] : marks) {
    if (bytes.starts_with(mark)) return {encoding->GetString(bytes.substr(mark.size())), encoding};
  }
  return {std::move(bytes), &qrl::TEncoding::Default()};
}

std::string ToUtf8(std::string_view piece, const qrl::TEncoding& encoding) {
  return encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(piece) : std::string(piece);
}

std::string ToXmlText(TProjectText file) {
  if (*file.Encoding == qrl::TEncoding::Default() && !win::IsValidUtf8(file.Text)) {
    return win::SourceToUtf8(file.Text);
  }
  return std::move(file.Text);
}

}  // namespace host
