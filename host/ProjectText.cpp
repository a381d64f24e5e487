#include "host/ProjectText.h"

#include <utility>

#include "host/HostError.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"

namespace host {

namespace {

constexpr std::string_view kBigEndianMark = "\xFE\xFF";

bool IsBigEndian(const mig::TTextFile& file) {
  return *file.Encoding == qrl::TEncoding::Default() && file.Text.starts_with(kBigEndianMark);
}

void TurnBigEndian(mig::TTextFile& file) {
  file.Text.erase(0, kBigEndianMark.size());
  for (size_t i = 0; i + 1 < file.Text.size(); i += 2) std::swap(file.Text[i], file.Text[i + 1]);
  file.Encoding = &qrl::TEncoding::Unicode();
  file.Text = file.Encoding->GetString(std::move(file.Text));
}

mig::TTextFile ReadText(std::string_view fileName, bool turn) {
  if (rtl::DirectoryExists(fileName))
    throw EHostError(At(fileName, 0, "this is a folder, not a project file."));
  rtl::TFileStream stream(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone);
  try {
    mig::TTextFile file = mig::ReadTextFile(stream);
    if (turn && IsBigEndian(file)) TurnBigEndian(file);
    return file;
  } catch (const rtl::EConvertError& error) {
    throw EHostError(At(fileName, 0, error.what()));
  }
}

}  // namespace

mig::TTextFile ReadProjectText(std::string_view fileName) {
  mig::TTextFile file = ReadText(fileName, /*turn=*/false);
  if (IsBigEndian(file)) {
    throw EHostError(
        At(fileName, 0,
           "big-endian UTF-16 is read in XML files only; save it as UTF-8 with a byte order mark."));
  }
  return file;
}

std::string ReadProjectXml(std::string_view fileName) {
  mig::TTextFile file = ReadText(fileName, /*turn=*/true);
  if (*file.Encoding == qrl::TEncoding::Default() && !win::IsValidUtf8(file.Text)) {
    return win::SourceToUtf8(file.Text);
  }
  return std::move(file.Text);
}

std::string ToUtf8(std::string_view piece, const qrl::TEncoding& encoding) {
  return encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(piece) : std::string(piece);
}

}  // namespace host
