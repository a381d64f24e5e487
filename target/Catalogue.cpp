#include "target/Catalogue.h"

#include <algorithm>

#include "rtl/text/StringList.h"
#include "rtl/text/SysUtils.h"
#include "target/CatalogueText.h"

namespace target {
namespace {

constexpr std::string_view kClassWord = "class ";

bool IsName(std::string_view text) {
  const auto isNameChar = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
  };
  return !text.empty() && std::all_of(text.begin(), text.end(), isNameChar);
}

}  // namespace

TCatalogue::TCatalogue(std::string_view text, std::string_view origin) : FOrigin(origin) {
  rtl::TStringList lines;
  lines.SetText(text);
  for (int i = 0; i < lines.Count(); ++i) {
    const std::string_view line = std::string_view(lines[i]).substr(0, lines[i].find('#'));
    const std::string_view word = rtl::Trim(line);
    if (word.empty()) continue;
    const std::string place = rtl::Format("%s, line %d: ", {FOrigin, i + 1});
    if (line.starts_with(kClassWord)) {
      AddClass(line.substr(kClassWord.size()), place);
    } else if (line.front() > ' ' || !IsName(word)) {
      throw ECatalogue(place + "expected \"class NAME\", or an indented property.");
    } else if (FClasses.empty()) {
      throw ECatalogue(place + "a property before the first class.");
    } else {
      FClasses.back().Properties.emplace_back(word);
    }
  }
}

void TCatalogue::AddClass(std::string_view declaration, const std::string& place) {
  const size_t colon = declaration.find(':');
  const std::string_view name = rtl::Trim(declaration.substr(0, colon));
  const std::string_view base =
      colon == std::string_view::npos ? std::string_view() : rtl::Trim(declaration.substr(colon + 1));
  if (!IsName(name) || (colon != std::string_view::npos && !IsName(base)))
    throw ECatalogue(place + "expected \"class NAME\" or \"class NAME : BASE\".");
  if (Find(name)) throw ECatalogue(place + rtl::Format("class \"%s\" is defined twice.", {name}));
  if (!base.empty() && !Find(base))
    throw ECatalogue(place + rtl::Format("class \"%s\" is not defined above.", {base}));
  FClasses.push_back({std::string(name), std::string(base), {}});
}

TCatalogue TCatalogue::BuiltIn() {
  return {kCatalogueText, "built-in catalogue"};
}

const TCatalogue::TClass* TCatalogue::Find(std::string_view name) const {
  const auto found = std::find_if(FClasses.begin(), FClasses.end(),
                                  [name](const TClass& item) { return rtl::SameText(item.Name, name); });
  return found == FClasses.end() ? nullptr : &*found;
}

rtl::TClassInfo TCatalogue::ClassInfo(std::string_view className) const {
  const TClass* item = Find(className);
  if (!item) throw ECatalogue(rtl::Format("%s: class \"%s\" is missing.", {FOrigin, className}));
  const std::string name = item->Name;
  std::vector<std::string> properties;
  for (; item; item = item->Base.empty() ? nullptr : Find(item->Base))
    properties.insert(properties.begin(), item->Properties.begin(), item->Properties.end());
  return {name, std::move(properties)};
}

std::string TCatalogue::Text() const {
  std::string text;
  for (const TClass& item : FClasses) {
    if (!text.empty()) text += '\n';
    text += "class " + item.Name + (item.Base.empty() ? "" : " : " + item.Base) + '\n';
    for (const std::string& property : item.Properties) text += "  " + property + '\n';
  }
  return text;
}

}  // namespace target
