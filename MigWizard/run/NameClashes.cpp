#include "MigWizard/run/NameClashes.h"

#include "MigWizard/run/RunErrors.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

// Returns True if two spellings name the same file. Accesses the disk only if they differ only in case.
bool IsSameFile(const std::string& left, const std::string& right) {
  if (left == right) return true;
  if (win::UpperFileName(left) != win::UpperFileName(right)) return false;
  return win::FileSystem().GetLongPathNameA(left) == win::FileSystem().GetLongPathNameA(right);
}

}  // namespace

void TNameClashes::AddBareName(const std::string& fileName) {
  const std::string bareName = rtl::ExtractFileName(fileName);
  const auto [place, isNew] = FBareNames.try_emplace(win::UpperFileName(bareName), fileName);
  if (isNew || IsSameFile(place->second, fileName)) return;
  throw ENameClash(
      rtl::Format("Two files named \"%s\" cannot be converted in one project run: \"%s\" and \"%s\".",
                  {bareName, place->second, fileName}),
      place->second, fileName);
}

void TNameClashes::AddFullName(const std::string& name) {
  if (!FCheckedNames.insert(name).second) return;
  const size_t parent = name.rfind('\\');
  if (parent != std::string::npos) AddFullName(name.substr(0, parent));
  const auto [place, isNew] = FFullNames.try_emplace(win::UpperFileName(name), name);
  if (isNew || IsSameFile(place->second, name)) return;
  throw ENameClash(rtl::Format("\"%s\" and \"%s\" differ only in case and cannot be converted in one run.",
                               {place->second, name}),
                   place->second, name);
}

}  // namespace mig
