#include "MigWizard/passes/ComponentNames.h"

#include "win/paths/CodePage.h"
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
  // Malformed UTF-8 would swallow what follows it. A lone surrogate survives, in its three-byte form.
  const qrl::TEncoding& utf16 = qrl::TEncoding::Unicode();
  std::string text(name);
  if (utf16.GetString(utf16.GetBytes(name)) != text) return std::nullopt;
  return text;
}

}  // namespace mig
