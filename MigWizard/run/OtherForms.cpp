#include "MigWizard/run/OtherForms.h"

#include <unordered_set>

#include "MigWizard/passes/UnitNames.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

constexpr const char* kFormExtensions[] = {".dfm", ".nfm"};

bool IsForm(std::string_view fileName) {
  const std::string extension = rtl::LowerCase(rtl::ExtractFileExt(fileName));
  return extension == kFormExtensions[0] || extension == kFormExtensions[1];
}

class TSearch {
 public:
  TSearch(const TRunHooks& hooks, const rtl::TStringList& files) : FHooks(hooks) {
    for (int i = 0; i < files.Count(); ++i) FKnown.insert(win::UpperFileName(files[i]));
  }

  void ScanFolder(const std::string& dir, bool includeSubDirs) {
    rtl::TFolderEntries entries(dir);
    while (entries.Next()) {
      if (!entries.IsFolder()) {
        if (IsForm(entries.Name())) Add(entries.Path());
      } else if (includeSubDirs && !entries.IsLink()) {
        ScanFolder(entries.Path(), includeSubDirs);
      }
    }
  }

  void AddFormsOf(const std::string& unit) {
    for (const char* const extension : kFormExtensions) {
      const std::string form = rtl::ChangeFileExt(unit, extension);
      if (rtl::FileExists(form)) Add(form);
    }
  }

  std::vector<std::string> Forms;

 private:
  void Add(const std::string& form) {
    if (FKnown.insert(win::UpperFileName(form)).second && !FHooks.IsExcluded(form)) Forms.push_back(form);
  }

  const TRunHooks& FHooks;
  std::unordered_set<std::string> FKnown;  // in upper case
};

}  // namespace

std::vector<std::string> FindOtherForms(const TReplaceOptions& options, const TRunHooks& hooks,
                                        const rtl::TStringList& files) {
  TSearch search(hooks, files);
  if (options.Dest == sdFolder) {
    search.ScanFolder(options.Directory, options.IncludeSubDirs);
  } else {
    for (int i = 0; i < files.Count(); ++i)
      if (IsUnitSource(files[i])) search.AddFormsOf(files[i]);
  }
  return std::move(search.Forms);
}

}  // namespace mig
