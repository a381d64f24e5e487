// Reads and converts one form file. Messages name the file as the user typed it.
#pragma once

#include <string>
#include <string_view>

#include "cli/FormBytes.h"

namespace cli {

// Returns the bytes of the file at the full Windows path `path`. Raises rtl::EStreamError, whose message
// has `name` in place of the path.
std::string ReadFormFile(const std::string& path, const std::string& name);

// Converts a form. Prints a warning on standard error if bytes after the form were dropped. Raises
// rtl::Exception with `name` before the reason.
TConvertedForm ConvertForm(std::string bytes, TFormKind wanted, const std::string& name);

// Writes a temporary file, with the permissions, owner and access list of the file `like` unless that is
// empty. Both are full Windows paths. Raises rtl::EStreamError.
void WriteTempForm(const std::string& temp, std::string_view bytes, const std::string& like);

// Copies a temporary file to `target` in one step; on failure the target is unchanged. Never overwrites a
// link, a folder, a device or a read-only file. On failure returns false and sets GetLastError.
[[nodiscard]] bool PutForm(const std::string& temp, const std::string& target);

// Writes the file `output`, as the user typed it, in the same way as PutForm. It gets the permissions of
// the file `input`, which is empty for standard input. Raises EUsage and rtl::EStreamError.
void WriteFormFile(const std::string& output, std::string_view bytes, const std::string& input);

}  // namespace cli
