// Any bytes as a unit: bytes outside the edits are unchanged.
#include <cstdlib>
#include <string>

#include "MigWizard/passes/FormSearch.h"
#include "MigWizard/passes/UnitPass.h"
#include "rtl/text/SysUtils.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  mig::TClassMap classes;
  classes.AddClass("TQuery", "TQuery");  // counted, and the text stays
  const mig::TUnitRules rules{classes, "DBTABLES", "", [](std::string_view oldClass, std::string_view) {
                                return std::string(oldClass);
                              }};
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const mig::TUnitResult result = mig::ConvertUnit(text, qrl::TEncoding::Default(), rules);
  for (const std::string_view directive : result.ResourceDirectives)
    (void)mig::FormFileOfDirective(directive, "C:\\Unit1.pas", qrl::TEncoding::Default());
  if (rtl::LowerCase(result.Edits.Apply(text)) != rtl::LowerCase(text)) std::abort();
  return 0;
}
