#include "report/FilePatch.h"

#include <algorithm>

#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/TextFile.h"
#include "MigWizard/run/FileUtils.h"
#include "diff/GitPatch.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/CodePage.h"

namespace report {

std::string ReadableText(std::string_view bytes) {
  try {
    if (!mig::IsBinaryForm(bytes)) {
      mig::TTextFile file = mig::DecodeTextFile(std::string(bytes));
      return *file.Encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(file.Text)
                                                         : std::string(std::move(file.Text));
    }
    mig::TRCData rcData;
    rtl::TBinaryTextOptions options;
    options.ForPeople = true;
    rtl::TBinaryInfo info;
    return win::SourceToUtf8(rtl::ObjectBinaryToText(mig::ReadFormHeader(bytes, rcData), options, info));
  } catch (const rtl::Exception&) {
    return {};
  }
}

std::string FilePatch(std::string_view path, std::string_view before, std::string_view after,
                      bool ignoreSpace) {
  diff::TPatchFile file = {path, before, after, {}, {}};
  std::string oldText, newText;
  if (diff::NeedsBinaryPatch(file)) {
    oldText = ReadableText(before);
    newText = ReadableText(after);
    file.OldText = oldText;
    file.NewText = newText;
  }
  return diff::GitPatch(file, ignoreSpace ? diff::TIgnore::Space : diff::TIgnore::Nothing);
}

std::string PatchPath(std::string_view folder, std::string_view fileName) {
  std::string path = rtl::ExtractRelativePath(mig::JoinPath(folder, ""), fileName);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

}  // namespace report
