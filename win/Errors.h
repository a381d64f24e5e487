// Windows error codes, as returned by GetLastError, and their texts.
#pragma once

#include <cstdint>
#include <string>

namespace win {

inline constexpr uint32_t ERROR_SUCCESS = 0;
inline constexpr uint32_t ERROR_FILE_NOT_FOUND = 2;
inline constexpr uint32_t ERROR_PATH_NOT_FOUND = 3;
inline constexpr uint32_t ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr uint32_t ERROR_ACCESS_DENIED = 5;
inline constexpr uint32_t ERROR_INVALID_HANDLE = 6;
inline constexpr uint32_t ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr uint32_t ERROR_NOT_SAME_DEVICE = 17;
inline constexpr uint32_t ERROR_NO_MORE_FILES = 18;
inline constexpr uint32_t ERROR_WRITE_PROTECT = 19;
inline constexpr uint32_t ERROR_GEN_FAILURE = 31;
inline constexpr uint32_t ERROR_SHARING_VIOLATION = 32;
inline constexpr uint32_t ERROR_FILE_EXISTS = 80;
inline constexpr uint32_t ERROR_INVALID_PARAMETER = 87;
inline constexpr uint32_t ERROR_DISK_FULL = 112;
inline constexpr uint32_t ERROR_INVALID_NAME = 123;
inline constexpr uint32_t ERROR_DIR_NOT_EMPTY = 145;
inline constexpr uint32_t ERROR_ALREADY_EXISTS = 183;
inline constexpr uint32_t ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr uint32_t ERROR_DIRECTORY = 267;
inline constexpr uint32_t ERROR_FILE_INVALID = 1006;
inline constexpr uint32_t ERROR_IO_DEVICE = 1117;
inline constexpr uint32_t ERROR_CANT_RESOLVE_FILENAME = 1921;

// Returns the code of the last operation of this layer that failed on the calling thread. Operations that
// succeed leave it unchanged.
uint32_t GetLastError();
void SetLastError(uint32_t code);

// Returns the English text of a code, with its full stop and without a line end: "Access is denied.". Returns
// the host's own text for a code that is not listed above, or "System error N." if it has none.
std::string SysErrorMessage(uint32_t code);

// Returns the host's text of a code, as above, or an empty string. Defined in the host's folder.
std::string HostErrorMessage(uint32_t code);

}  // namespace win
