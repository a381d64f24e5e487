#include "MigWizard/passes/TextFile.h"

#include <string_view>
#include <utility>

namespace mig {

TTextFile ReadTextFile(rtl::TStream& stream) {
  return DecodeTextFile(stream.ReadToEnd());
}

TTextFile DecodeTextFile(std::string bytes) {
  static constexpr std::string_view kUtf16Mark = "\xFF\xFE";
  static constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  TTextFile file;
  if (bytes.starts_with(kUtf16Mark)) {
    file.Encoding = &qrl::TEncoding::Unicode();
    bytes.erase(0, kUtf16Mark.size());
  } else if (bytes.starts_with(kUtf8Mark)) {
    file.Encoding = &qrl::TEncoding::UTF8();
    bytes.erase(0, kUtf8Mark.size());
  }
  file.Text = file.Encoding->GetString(std::move(bytes));
  return file;
}

}  // namespace mig
