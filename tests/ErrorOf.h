// Exceptions as text, for tables and comparisons.
#pragma once

#include <string>

#include "rtl/text/Exceptions.h"

namespace tests {

// The message of the TError that `call` raises, or "none". Any other exception passes through.
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
