// Maps the host's error numbers to Windows error codes.
#pragma once

#include <cstdint>

namespace win {

// Returns the code for an `errno`, ERROR_GEN_FAILURE if there is none.
[[nodiscard]] uint32_t ErrorOfErrno(int number);

// Sets the last error and returns false: `return Fail(ERROR_ACCESS_DENIED);`
bool Fail(uint32_t code);
bool FailErrno(int number);

}  // namespace win
