// Strings, file names and single files. File names are Windows paths: the separators are the backslash and
// the colon of a drive.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace rtl {

// --- Strings. Only ASCII letters have a case; all other bytes are compared and kept as they are. ---
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);
// Compares byte by byte, after mapping a..z to A..Z. Returns a negative number, 0 or a positive number; a
// prefix is less than the longer text.
int CompareText(std::string_view left, std::string_view right);
bool SameText(std::string_view left, std::string_view right);
// Returns a view into `text` without the characters 0 to 32 at both ends.
std::string_view Trim(std::string_view text);

// An argument of Format: text or an integer.
class TFormatArg {
 public:
  TFormatArg(std::string_view text) : FText(text) {}             // NOLINT: converts on purpose
  TFormatArg(const std::string& text) : FText(text) {}           // NOLINT
  TFormatArg(const char* text) : FText(text) {}                  // NOLINT
  TFormatArg(int64_t number) : FText(std::to_string(number)) {}  // NOLINT
  TFormatArg(int number) : FText(std::to_string(number)) {}      // NOLINT
  const std::string& Text() const { return FText; }

 private:
  std::string FText;
};
// Replaces each %s and %d by the next argument, and %% by a percent sign. Raises EConvertError if there are
// too few arguments.
std::string Format(std::string_view format, std::initializer_list<TFormatArg> args);

// --- File names. None of these functions accesses a file. ---
std::string ExtractFilePath(std::string_view fileName);  // up to and including the last separator
std::string ExtractFileDir(std::string_view fileName);   // without that separator, except in a root
std::string ExtractFileName(std::string_view fileName);
std::string ExtractFileExt(std::string_view fileName);    // with its dot, or empty
std::string ExtractFileDrive(std::string_view fileName);  // "C:" or "\\server\share", or empty
std::string ChangeFileExt(std::string_view fileName, std::string_view extension);
// Returns `fileName` relative to the folder part of `baseName`, with "..\" where needed; unchanged if it is
// on another drive.
std::string ExtractRelativePath(std::string_view baseName, std::string_view fileName);

// --- Single files, on the current file system (win/FileSystem.h). ---
bool FileExists(std::string_view fileName);  // false for a folder
bool DirectoryExists(std::string_view folder);
// On failure, the operations below set win::GetLastError.
[[nodiscard]] bool CreateDir(std::string_view folder);
bool RemoveDir(std::string_view folder);
bool DeleteFile(std::string_view fileName);

}  // namespace rtl
