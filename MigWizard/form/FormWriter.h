// Prints a converted object as form text.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "MigWizard/form/FormResults.h"

namespace mig {

struct TObjectToPrint {
  std::string_view Keyword;  // object, inherited or inline
  std::string_view Name;
  std::string_view ClassName;
  std::span<TFormProperty> Properties;
  std::span<const std::string_view> NestedObjects;  // printed unchanged
};

// Sets `text` to the object, each line with CR LF after it, for nesting level `level`: 0 for the root of a
// form. Indents the lines of each value from the second on, and they stay indented. On std::bad_alloc nothing
// has changed.
void WriteObject(const TObjectToPrint& object, int level, std::string& text);

}  // namespace mig
