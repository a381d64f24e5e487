#include "MigWizard/form/FormWriter.h"

#include <algorithm>

namespace mig {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr size_t kIndentStep = 2;

}  // namespace

void WriteObject(const TObjectToPrint& object, int level, std::string& text) {
  const size_t indent = kIndentStep * static_cast<size_t>(std::max(level, 0));
  const size_t inner = indent + kIndentStep;
  const size_t valueIndent = inner + kIndentStep;
  size_t length = 3 * (indent + kLineEnd.size()) + object.Keyword.size() + object.Name.size() +
                  object.ClassName.size() + 6;
  for (const TFormProperty& property : object.Properties)
    length += inner + property.Name().size() + 3 + property.MaxPrintedSize(valueIndent) + kLineEnd.size();
  for (const std::string_view nested : object.NestedObjects) length += nested.size() + kLineEnd.size();
  text.reserve(length);

  text.assign(indent, ' ').append(object.Keyword).append(" ").append(object.Name).append(": ");
  text.append(object.ClassName).append(kLineEnd);
  for (TFormProperty& property : object.Properties) {
    text.append(inner, ' ').append(property.Name()).append(" = ");
    property.IndentLines(valueIndent);
    property.Print(text);
    text.append(kLineEnd);
  }
  for (const std::string_view nested : object.NestedObjects) text.append(nested).append(kLineEnd);
  text.append(indent, ' ').append("end").append(kLineEnd);
}

}  // namespace mig
