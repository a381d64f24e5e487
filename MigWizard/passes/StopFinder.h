// Finds the reason why an object of a form cannot be parsed: its header, a property, a nested object or its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "MigWizard/form/FormParser.h"

namespace mig {

// The place and the reason where the parsing of an object stopped.
struct TStop {
  size_t Offset = 0;  // in bytes, from 0
  std::string What;   // "header", "property NAME", "end" or "text"
};

// Parses the parts of objects, one by one. An object nested in several others is parsed only once.
class TStopFinder {
 public:
  // `text` and `parser` must outlive the object.
  TStopFinder(std::string_view text, TFormParser& parser) : FText(text), FParser(parser) {}

  // Returns where and why the object at offset `start`, which cannot be parsed, stops. The innermost object of a
  // chain stops all those around it. The reference is valid as long as this object.
  const TStop& Find(size_t start);

 private:
  bool Parse(std::string_view rule, size_t& place);
  size_t SkipBlanks(size_t place) const;
  size_t Look(size_t start, TStop& stop);

  const std::string_view FText;
  TFormParser& FParser;
  std::unordered_map<size_t, TStop> FStops;
  std::unordered_set<int32_t> FUnparsable;  // positions from 1 where no object can be parsed
};

}  // namespace mig
