#include "MigWizard/run/OtherForms.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "MigWizard/passes/UnitNames.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

constexpr std::string_view kFormExtensions[] = {".dfm", ".nfm"};

std::vector<std::string> FormsBeside(const rtl::TStringList& files) {
  std::vector<std::string> forms;
  for (int i = 0; i < files.Count(); ++i) {
    if (!IsUnitSource(files[i])) continue;
    for (const std::string_view extension : kFormExtensions) {
      std::string form = rtl::ChangeFileExt(files[i], extension);
      if (rtl::FileExists(form)) forms.push_back(std::move(form));
    }
  }
  return forms;
}

// Returns the names of `listed` that no file of the run has, where only the case of the extension may differ.
// These are nearly all of the names that FindOtherForms leaves out.
std::vector<std::string> FormsSpelledOtherwise(const std::vector<std::string>& listed,
                                               const rtl::TStringList& files) {
  std::vector<std::string> forms;
  std::unordered_set<std::string_view> known[std::size(kFormExtensions)];  // by extension, without it
  const auto find = [&known](std::string_view name) -> std::unordered_set<std::string_view>* {
    const size_t dot = name.size() - std::min(name.size(), kFormExtensions[0].size());
    for (size_t i = 0; i < std::size(kFormExtensions); ++i)
      if (rtl::SameText(name.substr(dot), kFormExtensions[i])) return &known[i];
    return nullptr;
  };
  const auto stem = [](std::string_view name) {
    return name.substr(0, name.size() - kFormExtensions[0].size());
  };
  for (int i = 0; i < files.Count(); ++i)
    if (auto* const names = find(files[i])) names->insert(stem(files[i]));
  for (const std::string& name : listed)
    if (!find(name)->contains(stem(name))) forms.push_back(name);
  return forms;
}

}  // namespace

bool IsFormFile(std::string_view fileName) {
  const size_t dot = fileName.rfind('.');
  if (dot == std::string_view::npos) return false;
  const std::string_view extension = fileName.substr(dot);
  return rtl::SameText(extension, kFormExtensions[0]) || rtl::SameText(extension, kFormExtensions[1]);
}

std::vector<std::string> FindOtherForms(const TReplaceOptions& options, const TRunHooks& hooks,
                                        const rtl::TStringList& files,
                                        const std::vector<std::string>& listed) {
  std::vector<std::string> forms =
      options.Dest == sdFolder ? FormsSpelledOtherwise(listed, files) : FormsBeside(files);
  if (forms.empty()) return forms;
  std::unordered_set<std::string> known;
  for (int i = 0; i < files.Count(); ++i) known.insert(win::UpperFileName(files[i]));
  std::erase_if(forms, [&](const std::string& form) {
    return !known.insert(win::UpperFileName(form)).second || hooks.IsExcluded(form);
  });
  return forms;
}

}  // namespace mig
