// Strings, paths and single files. Paths are Windows paths throughout: the separators are the backslash and
// the colon of a drive.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace rtl {

// --- Strings. Letters are ASCII letters; all other bytes are compared and kept as they are. ---
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);
// Negative, 0 or positive: byte by byte after mapping a..z to A..Z; a prefix is less.
int CompareText(std::string_view left, std::string_view right);
bool SameText(std::string_view left, std::string_view right);
// Without the characters of code 32 or less at both ends. A view into `text`.
std::string_view Trim(std::string_view text);

// An argument of Format: text or a whole number.
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
// Replaces each %s and %d in turn by the next argument, and %% by a percent sign. Raises EConvertError if the
// arguments do not suffice.
std::string Format(std::string_view format, std::initializer_list<TFormatArg> args);

// Date and time now, in the user's locale: short date, long time.
std::string DateTimeNowToStr();

// --- File names. None of these touches a file. ---
std::string ExtractFilePath(std::string_view fileName);  // up to and with the last separator
std::string ExtractFileDir(std::string_view fileName);   // without the separator, but for that of a root
std::string ExtractFileName(std::string_view fileName);
std::string ExtractFileExt(std::string_view fileName);    // with its dot, or empty
std::string ExtractFileDrive(std::string_view fileName);  // "C:" or "\\server\share", or empty
std::string ChangeFileExt(std::string_view fileName, std::string_view extension);
// `fileName` as seen from the folder part of `baseName`, with "..\" where needed; unchanged on another drive.
std::string ExtractRelativePath(std::string_view baseName, std::string_view fileName);

// --- Single files, on the file system in force (win/FileSystem.h). ---
bool FileExists(std::string_view fileName);  // a file, not a folder
bool DirectoryExists(std::string_view folder);
[[nodiscard]] bool CreateDir(std::string_view folder);  // the reason of a failure is in win::GetLastError
bool RemoveDir(std::string_view folder);
bool DeleteFile(std::string_view fileName);

}  // namespace rtl
