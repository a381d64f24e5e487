// What a unit declares and uses, as far as findings need it: an outline, not a syntax tree. It is right for source
// that compiles; of other source it tells less.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "MigWizard/passes/TextPlaces.h"

namespace mig {

struct TDeclaration {
  std::string Name;
  std::string Type;  // the last name of a type that is a plain name; otherwise empty
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
  std::vector<std::string> Path;  // the names before the last one, with dots between them
  std::string Name;               // the last one
  std::string Shown;              // how a finding names it
  std::string Owner;              // the class of the method in which it stands
  bool IsLocal = false;           // the first name is a local one of the routine, ...
  TDeclaration Local;             // ... this
  TTextPlace Place;
  std::string Before, After;  // as in TFinding
};

struct TUnitOutline {
  std::string Name;
  std::vector<std::string> UsedUnits;  // in lower case, with their scopes
  std::vector<TDeclaration> Names;     // declared by the unit, outside of classes and routines
  std::vector<TClassOutline> Classes;
  std::vector<TNameUse> Uses;  // in the order of the text
};

}  // namespace mig
