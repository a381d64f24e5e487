#include "target/OldNameList.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>

#include "rtl/text/Exceptions.h"
#include "rtl/text/SysUtils.h"
#include "target/OldNamesText.h"

namespace target {
namespace {

using mig::TOldNames;

struct TKindRow {
  std::string_view Word;
  TOldNames::TKind Kind;
};

constexpr TKindRow kKinds[] = {
    {"unit", TOldNames::Unit},         {"scope", TOldNames::Scope},
    {"class", TOldNames::Class},       {"call", TOldNames::Call},
    {"prefix", TOldNames::Prefix},     {"object", TOldNames::Object},
    {"value", TOldNames::Value},       {"connection", TOldNames::Connection},
    {"declares", TOldNames::Declared}, {"declares-prefix", TOldNames::DeclaredPrefix},
    {"family", TOldNames::Family},     {"base", TOldNames::Base},
};
constexpr std::string_view kMember = "member";

std::vector<std::string> Split(std::string_view list, char separator) {
  std::vector<std::string> parts;
  std::istringstream text{std::string(list)};
  for (std::string part; std::getline(text, part, separator);)
    if (!rtl::Trim(part).empty()) parts.emplace_back(rtl::Trim(part));
  return parts;
}

// Returns the old class, and its new one if it is in the map.
std::vector<std::string> OwnersOf(const std::string& oldClass, const mig::TClassMap& classes) {
  std::vector<std::string> owners{oldClass};
  if (const std::string* newClass = classes.Find(oldClass)) owners.push_back(*newClass);
  return owners;
}

bool ReadLine(std::string_view line, const mig::TClassMap& classes, TOldNames& names) {
  const size_t bar = std::min(line.find('|'), line.size());
  const std::string advice(rtl::Trim(line.substr(std::min(bar + 1, line.size()))));
  const size_t colon = line.find(':');
  if (colon > bar) return false;
  const std::vector<std::string> head = Split(line.substr(0, colon), ' ');
  if (head.empty() || head.size() > 2) return false;
  const std::string owner = head.size() > 1 ? head[1] : std::string();
  const auto* const kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                        [&head](const TKindRow& row) { return row.Word == head[0]; });
  if (kind == std::end(kKinds) && head[0] != kMember) return false;
  for (const std::string& name : Split(line.substr(colon + 1, bar - colon - 1), ' ')) {
    if (kind != std::end(kKinds)) {
      names.Add(kind->Kind, {name, owner, advice});
      continue;
    }
    for (const std::string& oldClass : Split(owner, ','))
      for (const std::string& each : OwnersOf(oldClass, classes)) names.AddMember(each, {name, {}, advice});
  }
  return true;
}

}  // namespace

TOldNames ReadOldNames(std::string_view text, const mig::TClassMap& classes) {
  TOldNames names;
  std::istringstream lines{std::string(text)};
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    const std::string_view content = rtl::Trim(line);
    if (content.empty() || content.starts_with('#')) continue;
    if (!ReadLine(content, classes, names))
      throw rtl::Exception(rtl::Format("Line %d of the list of old names cannot be read: %s",
                                       {static_cast<int64_t>(number), content}));
  }
  return names;
}

TOldNames BuiltInOldNames(const mig::TClassMap& classes) {
  return ReadOldNames(kOldNamesText, classes);
}

}  // namespace target
