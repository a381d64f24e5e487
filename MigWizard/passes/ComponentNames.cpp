#include "MigWizard/passes/ComponentNames.h"

#include "rtl/text/Unicode.h"
#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"
#include "win/paths/SourceBytes.h"

namespace mig {

std::string NameForRun(std::string_view name, const qrl::TEncoding& encoding) {
  if (!(encoding == qrl::TEncoding::Default())) return std::string(name);
  std::string text = win::SourceToUtf8(name);
  return win::Utf8ToSource(text) == name ? text : std::string(name);
}

std::optional<std::string> NameForForm(std::string_view name, const qrl::TEncoding& encoding) {
  if (encoding == qrl::TEncoding::Default())
    return win::IsValidUtf8(name) ? win::Utf8ToSource(name) : std::optional<std::string>(name);
  // Malformed UTF-8 would swallow the bytes after it. A lone surrogate is kept, in its three-byte form.
  std::u16string units;
  if (rtl::Utf8ToUtf16(name, rtl::TSurrogates::Allow, units) != std::string_view::npos) return std::nullopt;
  return std::string(name);
}

}  // namespace mig
