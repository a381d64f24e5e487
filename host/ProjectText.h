// The text of a project file, whatever its encoding.
#pragma once

#include <string>
#include <string_view>

#include "qrl/Encoding.h"

namespace host {

struct TProjectText {
  std::string Text;                // working text, without a mark
  const qrl::TEncoding* Encoding;  // what its mark says; Default without one
};

// Reads the file at the full Windows path `fileName`. Raises EHostError for a folder, rtl::EFOpenError where
// the file cannot be opened, rtl::EConvertError for half a character of UTF-16.
TProjectText ReadProjectText(std::string_view fileName);

// A piece of working text as UTF-8.
std::string ToUtf8(std::string_view piece, const qrl::TEncoding& encoding);

// The whole text of an XML file as UTF-8. Without a mark XML is UTF-8; older writers left the code page in.
std::string ToXmlText(TProjectText file);

}  // namespace host
