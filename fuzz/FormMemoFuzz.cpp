// Converts any bytes as a form's text twice: with a parser that remembers results from the start, and with
// one that hardly does. Both convert the same objects to the same text.
#include "MigWizard/passes/FormPass.h"
#include "fuzz/Require.h"
#include "target/KVAFormParser.h"

namespace {

class TParser : public target::TKVAFormParser {
 public:
  explicit TParser(int64_t rereadAllowance) : TKVAFormParser(mig::ParseStateClass<mig::TFormParseState>()) {
    SetRereadAllowance(rereadAllowance);
  }
};

// The number of converted objects and the text; -1 for a text that is nested too deeply.
std::pair<int, std::string> Convert(std::string_view text, TParser& parser) {
  static const mig::TClassMap classes = [] {
    mig::TClassMap map;
    map.AddClass("TQuery", "TKVAQuery");
    map.AddClass("TDatabase", "TKVAConnection");
    return map;
  }();
  rtl::TMemoryStream output;
  try {
    const int count = mig::ConvertForm(text, qrl::TEncoding::Default(), classes, parser, output);
    return {count, std::string(output.Bytes())};
  } catch (const mig::ENestingTooDeep&) {
    return {-1, {}};
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // What is read in vain without a result being remembered. More would take exponential time.
  constexpr int64_t kMuch = 1 << 18;
  static TParser remembering(0);
  static TParser forgetting(kMuch);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  fuzz::Require(Convert(text, remembering) == Convert(text, forgetting), "both parsers give the same");
  return 0;
}
