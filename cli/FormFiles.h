// Reading and converting one form file, with messages that name it as the user does.
#pragma once

#include <string>
#include <string_view>

#include "cli/FormBytes.h"

namespace cli {

// Returns the bytes of the file at the full Windows path `path`. Raises rtl::EStreamError, with `name` in the
// place of the path.
std::string ReadFormFile(const std::string& path, const std::string& name);

// Converts, and says on standard error if bytes after the form were dropped. Raises rtl::Exception with
// `name` before the reason.
TConvertedForm ConvertForm(std::string bytes, TFormKind wanted, const std::string& name);

// Writes the file `output`, as the user typed it, in one step: on failure it is as it was. It gets the
// permissions of the file `input`, unless that is empty. Raises EUsage and rtl::EStreamError.
void WriteFormFile(const std::string& output, std::string_view bytes, const std::string& input);

}  // namespace cli
