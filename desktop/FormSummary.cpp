#include "desktop/FormSummary.h"

#include <algorithm>
#include <array>
#include <optional>

#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/TextFile.h"
#include "rtl/objects/ObjectValues.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/CodePage.h"

namespace desktop {

namespace {

constexpr size_t kFirstBytes = 1024;
constexpr std::string_view kSignature = "TPF0";
constexpr std::string_view kBlanks = " \t\r\n";

std::string ToUtf8(std::string_view text, const qrl::TEncoding& encoding) {
  return encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(text) : std::string(text);
}

// Removes a string with a one-byte length prefix from the beginning of `data`. Returns nullopt if it is cut
// off.
std::optional<std::string_view> TakeShortString(std::string_view& data) {
  if (data.empty()) return std::nullopt;
  const size_t length = static_cast<uint8_t>(data.front());
  if (data.size() <= length) return std::nullopt;
  const std::string_view text = data.substr(1, length);
  data.remove_prefix(1 + length);
  return text;
}

std::string BinarySummary(std::string_view file) {
  mig::TRCData rcData;
  std::string_view data = mig::ReadFormHeader(file, rcData);
  if (!data.starts_with(kSignature)) return {};
  data.remove_prefix(kSignature.size());
  // An inherited or inline form has a prefix of one byte; the outermost object has no position.
  if (!data.empty() && (static_cast<uint8_t>(data.front()) & rtl::kPrefixMark) == rtl::kPrefixMark)
    data.remove_prefix(1);
  const std::optional<std::string_view> className = TakeShortString(data);
  const std::optional<std::string_view> name = className ? TakeShortString(data) : std::nullopt;
  if (!name) return {};
  return ToUtf8(std::string(*name).append(": ").append(*className), qrl::TEncoding::Default());
}

// The text begins with `object MainForm: TMainForm`, or with `inherited` or `inline`.
std::string TextSummary(std::string_view text) {
  constexpr std::array<std::string_view, 3> kKinds = {"object", "inherited", "inline"};
  const size_t start = std::min(text.find_first_not_of(kBlanks), text.size());
  text.remove_prefix(start);
  const size_t kindEnd = std::min(text.find_first_of(kBlanks), text.size());
  const bool isForm = std::any_of(kKinds.begin(), kKinds.end(), [&](std::string_view kind) {
    return rtl::SameText(kind, text.substr(0, kindEnd));
  });
  const size_t end = text.find_first_of("\r\n");
  if (!isForm || end == std::string_view::npos) return {};
  return std::string(rtl::Trim(text.substr(kindEnd, end - kindEnd)));
}

}  // namespace

std::string FormSummaryOf(std::string bytes) {
  if (mig::IsBinaryForm(bytes)) return BinarySummary(bytes);
  const mig::TTextFile file = mig::DecodeTextFile(std::move(bytes));
  return ToUtf8(TextSummary(file.Text), *file.Encoding);
}

std::string FormSummary(std::string_view fileName) {
  try {
    rtl::TFileStream file(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone);
    std::string bytes(kFirstBytes, '\0');
    bytes.resize(file.Read(bytes.data(), bytes.size()));
    return FormSummaryOf(std::move(bytes));
  } catch (const rtl::Exception&) {
    return {};  // the editor gives the reason when the file is opened
  }
}

}  // namespace desktop
