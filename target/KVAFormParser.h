// The form parser of the KORVA components, for both modes: the rules for the classes of InterBase Express,
// before those for the Borland Database Engine, and the AutoCommit line of the data sets.
#pragma once

#include <string>
#include <string_view>

#include "MigWizard/form/FormParser.h"

namespace target {

class TKVAFormParser : public mig::TFormParser {
 public:
  using TFormParser::TFormParser;

  void ConvertProperty(std::string_view propName, std::string_view propValue) override;
  // Appends the entry `AutoCommit` to Properties, even if there is one already, if the object's old class,
  // ignoring case, is one of the data sets.
  void PrintObject(int level, std::string& text) override;
};

}  // namespace target
