// The system's headers, without those of their macros that are names of this project. Include it instead of
// <windows.h>.
#pragma once

#include <windows.h>
// After <windows.h>, which they need.
#include <sddl.h>
#include <shellapi.h>

// win/Errors.h and win/FileSystem.h define these names as constants of the same values.
#undef ERROR_SUCCESS
#undef ERROR_FILE_NOT_FOUND
#undef ERROR_PATH_NOT_FOUND
#undef ERROR_TOO_MANY_OPEN_FILES
#undef ERROR_ACCESS_DENIED
#undef ERROR_INVALID_HANDLE
#undef ERROR_NOT_ENOUGH_MEMORY
#undef ERROR_NOT_SAME_DEVICE
#undef ERROR_NO_MORE_FILES
#undef ERROR_WRITE_PROTECT
#undef ERROR_GEN_FAILURE
#undef ERROR_SHARING_VIOLATION
#undef ERROR_FILE_EXISTS
#undef ERROR_INVALID_PARAMETER
#undef ERROR_DISK_FULL
#undef ERROR_INVALID_NAME
#undef ERROR_DIR_NOT_EMPTY
#undef ERROR_ALREADY_EXISTS
#undef ERROR_FILENAME_EXCED_RANGE
#undef ERROR_DIRECTORY
#undef ERROR_FILE_INVALID
#undef ERROR_IO_DEVICE
#undef ERROR_CANT_RESOLVE_FILENAME
#undef FILE_ATTRIBUTE_READONLY
#undef FILE_ATTRIBUTE_DIRECTORY
#undef FILE_ATTRIBUTE_NORMAL
#undef FILE_ATTRIBUTE_REPARSE_POINT
#undef INVALID_FILE_ATTRIBUTES
// rtl/text/SysUtils.h and rtl/forms define functions of these names.
#undef DeleteFile
#undef MessageBox
#undef GetMessage
