// Any bytes as a form's text: converted or not, never a crash, and never an exception but for nesting.
#include "MigWizard/passes/FormPass.h"
#include "target/KVAFormParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static target::TKVAFormParser parser(mig::ParseStateClass<mig::TFormParseState>());
  static const mig::TClassMap classes = [] {
    mig::TClassMap map;
    map.AddClass("TQuery", "TKVAQuery");
    map.AddClass("TDatabase", "TKVAConnection");
    return map;
  }();
  rtl::TMemoryStream output;
  try {
    mig::ConvertForm({reinterpret_cast<const char*>(data), size}, qrl::TEncoding::Default(), classes, parser,
                     output);
  } catch (const mig::ENestingTooDeep&) {
    return 0;
  }
  return 0;
}
