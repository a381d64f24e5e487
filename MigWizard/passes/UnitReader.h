// Reads the declarations and the statements of a unit into its outline, and shows every name of the code to a
// derived class, with its context.
//
// It is no compiler: it is exact for source that compiles, and ends at the end of any other source.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/TextPlaces.h"
#include "MigWizard/passes/TokenCursor.h"
#include "MigWizard/passes/UnitOutline.h"
#include "MigWizard/passes/WithStatements.h"

namespace mig {

struct TUsedUnit {
  std::string Name;  // with its scope
  size_t Offset;
  bool HasPath;
};

class TUnitReader : public TTokenCursor {
 public:
  // The arguments must outlive the object. Without `places`, declarations have no places.
  TUnitReader(const std::vector<TUnitToken>& code, const TTextPlaces* places)
      : TTokenCursor(code), FPlaces(places) {}

  // Reads the whole unit. Call once.
  void ReadUnit() { ReadDeclarations(0); }

  TUnitOutline& Outline() { return FOutline; }
  const std::vector<TUsedUnit>& UsedUnits() const { return FUsedUnits; }

 protected:
  struct TRoutine {
    std::string Owner;                 // the class of a method
    std::vector<TDeclaration> Locals;  // including parameters
  };

  // Called before and after the members of a class, which may contain other classes.
  virtual void BeforeMembers() = 0;
  virtual void AfterMembers(const TClassOutline& outline) = 0;

  // Returns True if the change of the name at `offset` is left out by choice.
  virtual bool IsLeftOut(size_t offset) const = 0;

  // Returns the open routines, the outermost first.
  const std::vector<TRoutine>& Routines() const { return FRoutines; }
  bool IsInWith() const { return FWiths.Any(); }

 private:
  void SkipStatement(TNameSpot spot, int nesting);

  // --- Declarations ---
  void ReadDeclarations(int nesting);
  void ReadDeclaration(TWord section, int nesting);
  std::vector<TDeclaration>& Declared();
  void Declare(std::vector<TDeclaration>& list, std::string_view type, const TUnitToken& name);
  void ReadUses();
  void ReadVariables(TNameSpot spot, std::vector<TDeclaration>& list, int nesting);
  std::string PlainType() const;
  void ReadType(int nesting);
  void ReadClass(const TUnitToken& name, int nesting);
  void ReadRecord(int nesting);
  void ReadMembers(TClassOutline& outline, int nesting, TNameSpot spot);
  void ReadProperty(TClassOutline& outline, int nesting);
  // The heading of a routine.
  struct THeading {
    std::vector<TDeclaration> Parameters;
    std::string Owner;   // the class of a method in the implementation section
    std::string Result;  // as TDeclaration::Type
    bool HasBody = true;
  };
  THeading ReadHeading(int nesting);
  void ReadParameters(std::vector<TDeclaration>& parameters);
  void ReadRoutine(int nesting);

  // --- Statements ---
  void ReadBlock();
  void ReadStatements();
  void PassStatementToken();
  void AddInnerNames();

  const TTextPlaces* FPlaces;
  TUnitOutline FOutline;
  bool FIsInterface = false;
  std::vector<TRoutine> FRoutines;
  std::vector<TUsedUnit> FUsedUnits;
  TWithStatements FWiths;
};

}  // namespace mig
