// The text of a project file, whatever its encoding.
#pragma once

#include <string>
#include <string_view>

#include "MigWizard/TextFile.h"

namespace host {

// Reads the file at the full Windows path `fileName`. Raises EHostError for a folder, rtl::EFOpenError where
// the file cannot be opened, rtl::EConvertError for half a character of UTF-16.
mig::TTextFile ReadProjectText(std::string_view fileName);

// A piece of working text as UTF-8.
std::string ToUtf8(std::string_view piece, const qrl::TEncoding& encoding);

// The whole text of an XML file as UTF-8. Without a mark XML is UTF-8; older writers left the code page in.
std::string ToXmlText(mig::TTextFile file);

}  // namespace host
