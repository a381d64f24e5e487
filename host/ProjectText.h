// The text of a project file, whatever its encoding.
#pragma once

#include <string>
#include <string_view>

#include "MigWizard/passes/TextFile.h"

namespace host {

// Reads the file at the full Windows path `fileName`. Raises EHostError for a folder, for half a character of
// UTF-16 and for UTF-16 with the high byte first, rtl::EFOpenError where the file cannot be opened.
mig::TTextFile ReadProjectText(std::string_view fileName);

// The same for XML, as UTF-8; UTF-16 may have either byte first. Without a mark XML is UTF-8; older writers
// left the code page in.
std::string ReadProjectXml(std::string_view fileName);

// A piece of working text as UTF-8.
std::string ToUtf8(std::string_view piece, const qrl::TEncoding& encoding);

}  // namespace host
