#include "MigWizard/passes/UnitNames.h"

#include "rtl/text/SysUtils.h"

namespace mig {

bool IsUnitModule(std::string_view fileName) {
  return fileName.size() >= 4 && rtl::SameText(fileName.substr(fileName.size() - 4), ".PAS");
}

bool IsUnitSource(std::string_view fileName) {
  const std::string extension = rtl::ExtractFileExt(fileName);
  return rtl::SameText(extension, ".PAS") || rtl::SameText(extension, ".DPR");
}

}  // namespace mig
