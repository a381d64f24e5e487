#include "MigWizard/passes/StopFinder.h"

#include <algorithm>
#include <vector>

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr std::string_view kBlanks = "\t\n\r ";

}  // namespace

const TStop& TStopFinder::Find(size_t start) {
  // Descend to the innermost object, and report it for each of those around it.
  std::vector<size_t> chain;
  for (size_t object = start;;) {
    TStop stop;
    size_t nested = std::string_view::npos;
    if (const auto known = FStops.find(object); known != FStops.end()) {
      stop = known->second;
    } else {
      chain.push_back(object);
      nested = Look(object, stop);
    }
    if (nested == std::string_view::npos) {
      for (const size_t each : chain) FStops.emplace(each, stop);
      return FStops.at(start);
    }
    object = nested;
  }
}

// Parses `rule` at offset `place`. Moves `place` past it on success; else leaves it.
bool TStopFinder::Parse(std::string_view rule, size_t& place) {
  auto position = static_cast<int64_t>(place) + 1;
  if (FUnparsable.contains(static_cast<int32_t>(position)) && rule == "<object>") return false;
  if (!FParser.Parse(FText, rule, position)) {
    FUnparsable.insert(FParser.FailedObjects().begin(), FParser.FailedObjects().end());
    return false;
  }
  place = static_cast<size_t>(position) - 1;
  return true;
}

size_t TStopFinder::SkipBlanks(size_t place) const {
  return std::min(FText.find_first_not_of(kBlanks, place), FText.size());
}

// Returns the nested object that stops the object at `start`. If something else does, sets `stop` and returns
// npos.
size_t TStopFinder::Look(size_t start, TStop& stop) {
  size_t place = start;
  stop = {start, "header"};
  if (!Parse("<obj_header>", place) || SkipBlanks(place) == place) return std::string_view::npos;
  place = SkipBlanks(place);
  if (FText.substr(place).starts_with('[')) return std::string_view::npos;
  for (;;) {
    place = SkipBlanks(place);
    const std::string_view rest = FText.substr(place);
    const size_t length = std::min(rest.find_first_of("\t\n\r =:"), rest.size());
    const std::string_view word = rest.substr(0, length);
    stop = {place, word.empty() ? "text" : "property " + std::string(word)};
    size_t nested = place;
    if (Parse("<object>", nested)) {
      place = nested;
      continue;
    }
    if (rtl::SameText(word, "end") || word.empty()) {
      stop.What = "end";
      return std::string_view::npos;
    }
    const bool isNested =
        rtl::SameText(word, "object") || rtl::SameText(word, "inherited") || rtl::SameText(word, "inline");
    if (isNested && (rest.size() == length || rest[length] != '=')) return place;
    if (!Parse("<prop>", place)) return std::string_view::npos;
  }
}

}  // namespace mig
