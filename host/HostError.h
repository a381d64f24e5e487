// The errors of the stand-alone host. A message is complete: it begins with the file, and with the line where
// there is one, as in `C:\App\App.dproj(12): "Forms" is a folder, not a unit.`
#pragma once

#include <string>
#include <string_view>

#include "rtl/text/Exceptions.h"

namespace host {

// A file with invalid contents, or an operation that the host does not support.
class EHostError : public rtl::Exception {
 public:
  using rtl::Exception::Exception;
};

// A name on the command line that matches nothing. Reported as a mistake in the command line, not in a
// file.
class EChoiceError : public EHostError {
 public:
  using EHostError::EHostError;
};

// Returns `text` prefixed with `fileName` and `line`, which counts from 1 (0: none).
inline std::string At(std::string_view fileName, int line, std::string_view text) {
  std::string message(fileName);
  if (line > 0) message.append("(").append(std::to_string(line)).append(")");
  return message.append(": ").append(text);
}

// Returns `name` in double quotes, for messages.
inline std::string Quoted(std::string_view name) {
  return std::string("\"").append(name).append("\"");
}

}  // namespace host
