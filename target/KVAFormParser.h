// The form parser of the KORVA components, for both modes: the rules for the classes of InterBase Express, in
// front of those for the Borland Database Engine, and the AutoCommit line of the data sets.
#pragma once

#include <string>
#include <string_view>

#include "MigWizard/form/FormParser.h"

namespace target {

class TKVAFormParser : public mig::TFormParser {
 public:
  using TFormParser::TFormParser;

  void ConvertProperty(std::string_view propName, std::string_view propValue) override;
  // Adds the entry `AutoCommit` to Properties if the object's old class, in any case of letters, is one of
  // the data sets; behind all others, and also if there is one already.
  void PrintObject(int level, std::string& text) override;
};

}  // namespace target
