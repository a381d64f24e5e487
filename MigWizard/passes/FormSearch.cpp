#include "MigWizard/passes/FormSearch.h"

#include <algorithm>
#include <vector>

#include "rtl/text/SysUtils.h"
#include "rtl/text/Unicode.h"
#include "win/paths/Characters.h"
#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

constexpr size_t kExtensionLength = 4;  // with its dot

// Splits working text into its characters, each a view of one to four bytes.
std::vector<std::string_view> Characters(std::string_view text, bool isUtf8) {
  std::vector<std::string_view> result;
  while (!text.empty()) {
    size_t length = 1;
    if (isUtf8) {
      length = rtl::CharacterLength(text);
    } else if (text.size() > 1 && win::IsDBCSLeadByte(static_cast<uint8_t>(text[0])) &&
               win::IsDBCSTrailByte(static_cast<uint8_t>(text[1]))) {
      length = 2;
    }
    result.push_back(text.substr(0, length));
    text.remove_prefix(length);
  }
  return result;
}

bool IsAlphabetic(std::string_view character, bool isUtf8) {
  if (!isUtf8) return win::IsCharAlphaA(character);
  if (!win::IsValidUtf8(character)) return false;
  if (character.size() == 1) return win::IsCharAlphaU(static_cast<char32_t>(character[0]));
  auto code = static_cast<char32_t>(static_cast<uint8_t>(character[0]) & (0x7FU >> character.size()));
  for (const char byte : character.substr(1)) code = code << 6 | (static_cast<uint8_t>(byte) & 0x3FU);
  return win::IsCharAlphaU(code);
}

}  // namespace

std::string FormFileOfDirective(std::string_view directive, std::string_view sourceFile,
                                const qrl::TEncoding& encoding) {
  const bool isUtf8 = !(encoding == qrl::TEncoding::Default()) || win::GetACP() == win::kUtf8CodePage;

  const size_t dot = directive.rfind('.');
  if (dot == std::string_view::npos || dot + kExtensionLength > directive.size()) return {};
  const std::string_view extension = directive.substr(dot, kExtensionLength);
  if (!rtl::SameText(extension, ".DFM") && !rtl::SameText(extension, ".NFM")) return {};
  const auto behind = Characters(directive.substr(dot + kExtensionLength), isUtf8);
  if (!behind.empty() && IsAlphabetic(behind.front(), isUtf8)) return {};

  const auto before = Characters(directive.substr(0, dot), isUtf8);
  if (before.back() == "*") {
    if (before[before.size() - 2] != " ") return {};
    return rtl::ChangeFileExt(sourceFile, rtl::UpperCase(extension));
  }
  const auto notAlphabetic = [isUtf8](std::string_view character) {
    return !IsAlphabetic(character, isUtf8);
  };
  const auto nameLength = std::find_if(before.rbegin(), before.rend(), notAlphabetic) - before.rbegin();
  if (nameLength == 0) return {};
  const char* const nameStart = before[before.size() - static_cast<size_t>(nameLength)].data();
  const std::string_view name = directive.substr(static_cast<size_t>(nameStart - directive.data()),
                                                 dot - static_cast<size_t>(nameStart - directive.data()));
  return rtl::ExtractFilePath(sourceFile)
      .append(encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(name) : std::string(name))
      .append(extension);
}

}  // namespace mig
