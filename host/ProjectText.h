// Reads the text of a project file, in any encoding.
#pragma once

#include <string>
#include <string_view>

#include "MigWizard/passes/TextFile.h"

namespace host {

// Reads the file at the full Windows path `fileName`. Raises EHostError for a folder, for UTF-16 with an odd
// number of bytes and for big-endian UTF-16, and rtl::EFOpenError if the file cannot be opened.
mig::TTextFile ReadProjectText(std::string_view fileName);

// Reads an XML file as UTF-8. UTF-16 may be big-endian. A file without a byte order mark that is not valid
// UTF-8 is in the source code page, which older programs used.
std::string ReadProjectXml(std::string_view fileName);

// Returns a piece of working text as UTF-8.
std::string ToUtf8(std::string_view piece, const qrl::TEncoding& encoding);

}  // namespace host
