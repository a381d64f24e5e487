// The host's error numbers as Windows error codes.
#pragma once

#include <cstdint>

namespace win {

// The code for an `errno`; ERROR_GEN_FAILURE for one that Windows has no like of.
[[nodiscard]] uint32_t ErrorOfErrno(int number);

// Sets the last error and gives False, for `return Fail(...)`.
bool Fail(uint32_t code);
bool FailErrno(int number);

}  // namespace win
