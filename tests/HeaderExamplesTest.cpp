// The examples of use in the headers. The build extracts each from its header (ExtractExample.cmake).
#include <gtest/gtest.h>

#include "MigWizard/engine/LL1Parser.h"
#include "MigWizard/form/FormParser.h"
#include "MigWizard/run/Replacer.h"
#include "MigWizard/wizard/Wizard.h"
#include "rtl/text/Registry.h"
#include "tests/Scratch.h"

namespace mig {
namespace {

TEST(HeaderExamplesTest, LL1Parser) {
#include "LL1Parser.example"
  EXPECT_TRUE(matches);
  EXPECT_EQ(list.Numbers, (std::vector<std::string>{"17", "4"}));
  EXPECT_EQ(position, 5);
}

TEST(HeaderExamplesTest, FormParser) {
#include "FormParser.example"
  EXPECT_EQ(printed, "object Query1: TNewQuery\r\n  Active = True\r\nend\r\n");
}

TEST(HeaderExamplesTest, Replacer) {
  const tests::TScratch scratch;
  scratch.Write("App/Unit1.pas", "uses DBTables; { TQuery }");
  const TFormParserClass formParserClass = [](const TParseStateClass& stateClass) {
    return std::make_unique<TFormParser>(stateClass);
  };
#include "Replacer.example"
  EXPECT_TRUE(replaced);
  EXPECT_EQ(scratch.Read("App/Unit1.pas"), "uses DBTables, KVADataSet; { TKVAQuery }");
}

// Only compiled, because nobody closes the dialog.
[[maybe_unused]] int Wizard(TReplaceOptions& options, rtl::TRegIniFile& settings, const char* section) {
#include "Wizard.example"
  return -1;
}

}  // namespace
}  // namespace mig
