// The errors of the stand-alone host. A message is complete: it begins with the file, and with the line where
// there is one, as in `C:\App\App.dproj(12): "Forms" is a folder, not a unit.`
#pragma once

#include <string>
#include <string_view>

#include "rtl/text/Exceptions.h"

namespace host {

// A file that is not what it should be, or an operation that the host cannot do.
class EHostError : public rtl::Exception {
 public:
  using rtl::Exception::Exception;
};

// A name that the user gave chooses nothing: the command line is wrong, not a file.
class EChoiceError : public EHostError {
 public:
  using EHostError::EHostError;
};

// `fileName` with `line`, counted from 1 (0: none), before `text`.
inline std::string At(std::string_view fileName, int line, std::string_view text) {
  std::string message(fileName);
  if (line > 0) message.append("(").append(std::to_string(line)).append(")");
  return message.append(": ").append(text);
}

// `name` in double quotes, for messages.
inline std::string Quoted(std::string_view name) {
  return std::string("\"").append(name).append("\"");
}

}  // namespace host
