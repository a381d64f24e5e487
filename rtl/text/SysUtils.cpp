#include "rtl/text/SysUtils.h"

#include <algorithm>
#include <vector>

#include "rtl/text/Exceptions.h"
#include "win/FileApi.h"

namespace rtl {
namespace {

constexpr char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr std::string_view kPathDividers = "\\:";

bool IsDriveRoot(std::string_view path) {
  return path.size() == 3 && path[1] == ':' && path[2] == '\\';
}

// Returns the offset of the extension's dot, or the length of the name if it has no extension.
size_t ExtensionStart(std::string_view fileName) {
  const size_t place = fileName.find_last_of(".\\:");
  return place != std::string_view::npos && fileName[place] == '.' ? place : fileName.size();
}

std::vector<std::string_view> Folders(std::string_view path) {
  std::vector<std::string_view> parts;
  while (!path.empty()) {
    const size_t end = std::min(path.find('\\'), path.size());
    if (end > 0) parts.push_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return parts;
}

}  // namespace

std::string UpperCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), Upper);
  return result;
}

std::string LowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), Lower);
  return result;
}

int CompareText(std::string_view left, std::string_view right) {
  const size_t common = std::min(left.size(), right.size());
  for (size_t i = 0; i < common; ++i) {
    const auto a = static_cast<unsigned char>(Upper(left[i]));
    const auto b = static_cast<unsigned char>(Upper(right[i]));
    if (a != b) return a < b ? -1 : 1;
  }
  return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

bool SameText(std::string_view left, std::string_view right) {
  return left.size() == right.size() && CompareText(left, right) == 0;
}

std::string_view Trim(std::string_view text) {
  const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= 32; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string Format(std::string_view format, std::initializer_list<TFormatArg> args) {
  std::string result;
  auto next = args.begin();
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%' || i + 1 == format.size()) {
      result += format[i];
      continue;
    }
    const char kind = format[++i];
    if (kind == '%') {
      result += '%';
    } else if ((kind == 's' || kind == 'd') && next != args.end()) {
      result += (next++)->Text();
    } else {
      throw EConvertError("No argument for format \"" + std::string(format) + "\".");
    }
  }
  return result;
}

std::string ExtractFilePath(std::string_view fileName) {
  const size_t place = fileName.find_last_of(kPathDividers);
  return std::string(fileName.substr(0, place == std::string_view::npos ? 0 : place + 1));
}

std::string ExtractFileDir(std::string_view fileName) {
  const std::string path = ExtractFilePath(fileName);
  const std::string_view view = path;
  const bool keepsDivider =
      view.empty() || view.back() != '\\' || view == "\\" || IsDriveRoot(view) ||
      (view.size() > 1 && kPathDividers.find(view[view.size() - 2]) != std::string_view::npos);
  return keepsDivider ? path : path.substr(0, path.size() - 1);
}

std::string ExtractFileName(std::string_view fileName) {
  const size_t place = fileName.find_last_of(kPathDividers);
  return std::string(fileName.substr(place == std::string_view::npos ? 0 : place + 1));
}

std::string ExtractFileExt(std::string_view fileName) {
  return std::string(fileName.substr(ExtensionStart(fileName)));
}

std::string ExtractFileDrive(std::string_view fileName) {
  if (fileName.size() >= 2 && fileName[1] == ':') return std::string(fileName.substr(0, 2));
  if (fileName.substr(0, 2) != "\\\\") return {};
  const size_t server = fileName.find('\\', 2);
  if (server == std::string_view::npos || server == 2) return {};
  return std::string(fileName.substr(0, fileName.find('\\', server + 1)));
}

std::string ChangeFileExt(std::string_view fileName, std::string_view extension) {
  return std::string(fileName.substr(0, ExtensionStart(fileName))).append(extension);
}

std::string ExtractRelativePath(std::string_view baseName, std::string_view fileName) {
  const std::string drive = ExtractFileDrive(fileName);
  if (!SameText(drive, ExtractFileDrive(baseName))) return std::string(fileName);
  const std::string basePath = ExtractFilePath(baseName);
  const std::string filePath = ExtractFilePath(fileName);
  const auto base = Folders(std::string_view(basePath).substr(drive.size()));
  const auto target = Folders(std::string_view(filePath).substr(drive.size()));
  size_t common = 0;
  while (common < base.size() && common < target.size() && SameText(base[common], target[common])) ++common;
  std::string result;
  for (size_t i = common; i < base.size(); ++i) result += "..\\";
  for (size_t i = common; i < target.size(); ++i) result.append(target[i]).append("\\");
  return result + ExtractFileName(fileName);
}

bool FileExists(std::string_view fileName) {
  const uint32_t attributes = win::FileSystem().GetFileAttributesA(fileName);
  return attributes != win::INVALID_FILE_ATTRIBUTES && (attributes & win::FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool DirectoryExists(std::string_view folder) {
  const uint32_t attributes = win::FileSystem().GetFileAttributesA(folder);
  return attributes != win::INVALID_FILE_ATTRIBUTES && (attributes & win::FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool CreateDir(std::string_view folder) {
  return win::FileSystem().CreateDirectoryA(folder);
}
bool RemoveDir(std::string_view folder) {
  return win::FileSystem().RemoveDirectoryA(folder);
}
bool DeleteFile(std::string_view fileName) {
  return win::FileSystem().DeleteFileA(fileName);
}

}  // namespace rtl
