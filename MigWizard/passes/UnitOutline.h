// The declarations and names of a unit, as far as findings need them: an outline, not a syntax tree. It is
// exact for source that compiles, and may be incomplete for other source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "MigWizard/passes/TextPlaces.h"

namespace mig {

struct TDeclaration {
  std::string Name;
  std::string Type;  // the last part of the type's name, or empty if the type is not a plain name
  TTextPlace Place;
};

struct TClassOutline {
  std::string Name, Ancestor;
  std::vector<TDeclaration> Members;  // fields, properties and methods
};

// A name in code that may be one of the old components.
struct TNameUse {
  enum TKind : uint8_t { OldClass, OldCall, OldMember };
  TKind Kind = OldClass;
  std::vector<std::string> Path;  // the names before the last one, joined by dots
  std::string Name;               // the last one
  std::string Shown;              // as shown in a finding
  std::string Owner;              // the class of the method that contains the name
  bool IsLocal = false;           // the first name is local to the routine ...
  TDeclaration Local;             // ... and declared like this
  TTextPlace Place;
  std::string Before, After;  // as in TFinding
};

struct TUnitOutline {
  std::string Name;
  std::vector<std::string> UsedUnits;  // in lower case, with their scopes; empty if there are no uses
  std::vector<TDeclaration> Names;     // declared by the unit outside of classes and routines
  size_t InterfaceNames = 0;           // how many of them, the first ones, other units can use
  std::vector<TClassOutline> Classes;
  std::vector<TNameUse> Uses;  // in the order of the text
};

}  // namespace mig
