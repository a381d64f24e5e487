// How a form parser prints the object that it has parsed.
#include <algorithm>
#include <string>
#include <string_view>

#include "MigWizard/form/FormParser.h"

namespace mig {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr size_t kIndentStep = 2;

}  // namespace

void TFormParser::PrintObject(int level, std::string& text) {
  text.clear();
  const TFormParseState& state = FormState();
  if (state.Keyword.empty() || state.ObjName.empty()) return;

  const size_t indent = kIndentStep * static_cast<size_t>(std::max(level, 0));
  const size_t inner = indent + kIndentStep;
  size_t length = 0;
  for (TFormProperty& property : FProperties) {
    property.IndentLines(inner + kIndentStep);
    length += inner + property.Name().size() + property.MostPrinted() + kLineEnd.size();
  }
  for (const std::string_view nested : NestedObjects()) length += nested.size() + kLineEnd.size();
  text.reserve(length);

  text.append(indent, ' ').append(state.Keyword).append(" ").append(state.ObjName).append(": ");
  text.append(FNewType.empty() ? state.ObjType : std::string_view(FNewType)).append(kLineEnd);
  for (const TFormProperty& property : FProperties) {
    text.append(inner, ' ').append(property.Name()).append(" = ");
    property.Print(text);
    text.append(kLineEnd);
  }
  for (const std::string_view nested : NestedObjects()) text.append(nested).append(kLineEnd);
  text.append(indent, ' ').append("end").append(kLineEnd);
}

}  // namespace mig
