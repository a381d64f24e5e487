#include "cli/FormBytes.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/TextFile.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"
#include "rtl/text/SysUtils.h"

namespace cli {
namespace {

std::string WithHeader(const std::string& data, std::string_view className) {
  if (data.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max()))
    throw rtl::EParserError("A form of more than 2 GB.");
  mig::TRCData rcData;
  rcData.Name = rtl::UpperCase(className);
  rcData.Size = static_cast<int32_t>(data.size());
  return mig::FormHeader(rcData) + data;
}

TConvertedForm FromText(std::string bytes, TFormKind wanted) {
  const mig::TTextFile file = mig::DecodeTextFile(std::move(bytes));
  rtl::TTextBinaryOptions options;
  options.Utf8 = !(*file.Encoding == qrl::TEncoding::Default());
  rtl::TTextInfo info;
  std::string data = rtl::ObjectTextToBinary(file.Text, options, info);
  const std::string_view rest = std::string_view(file.Text).substr(info.Size);
  const bool blank = std::all_of(rest.begin(), rest.end(), [](char c) { return c >= 0 && c <= 32; });
  if (wanted == TFormKind::Binary) data = WithHeader(data, info.ClassName);
  return {true, std::move(data), blank ? 0 : rest.size()};
}

TConvertedForm FromBinary(std::string_view bytes, TFormKind kind, TFormKind wanted) {
  mig::TRCData rcData;
  std::string_view data = kind == TFormKind::Binary ? mig::ReadFormHeader(bytes, rcData) : bytes;
  rtl::TBinaryTextOptions options;
  options.ForPeople = wanted == TFormKind::Text;
  options.FirstOffset = bytes.size() - data.size();
  rtl::TBinaryInfo info;
  std::string text = rtl::ObjectBinaryToText(data, options, info);
  const size_t dropped = data.size() - info.Size;
  if (wanted == TFormKind::Text) return {true, std::move(text), dropped};
  // Only the header changes. The data was read to find its end and its class.
  const std::string object(data.substr(0, info.Size));
  return {true, wanted == TFormKind::Binary ? WithHeader(object, info.ClassName) : object, dropped};
}

}  // namespace

TFormKind KindOfForm(std::string_view bytes) {
  if (mig::IsBinaryForm(bytes)) return TFormKind::Binary;
  return bytes.starts_with(rtl::kObjectSignature) ? TFormKind::BareBinary : TFormKind::Text;
}

TConvertedForm ConvertFormBytes(std::string bytes, TFormKind wanted) {
  const TFormKind kind = KindOfForm(bytes);
  if (kind == wanted) return {false, std::move(bytes), 0};
  return kind == TFormKind::Text ? FromText(std::move(bytes), wanted) : FromBinary(bytes, kind, wanted);
}

}  // namespace cli
