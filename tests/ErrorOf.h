// Converts exceptions to text, for tables and comparisons.
#pragma once

#include <string>

#include "rtl/text/Exceptions.h"

namespace tests {

// Returns the message of the TError that `call` raises, or "none". Other exceptions propagate.
template <typename TError = rtl::Exception, typename TCall>
std::string ErrorOf(TCall call) {
  try {
    static_cast<void>(call());
    return "none";
  } catch (const TError& error) {
    return error.what();
  }
}

}  // namespace tests
