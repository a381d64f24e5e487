// Finds the names of old components in the code of a unit, and the transaction lines that the conversion puts
// where no field is declared.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/LinePairs.h"
#include "MigWizard/passes/UnitFindings.h"
#include "MigWizard/passes/UnitReader.h"

namespace mig {

// Returns the names in a list like ", First, Second".
std::vector<std::string> NamesOf(std::string_view list);

// Call ReadUnit once. Outline() then has the uses.
class TNameUses : public TUnitReader {
 public:
  // The arguments must outlive the object.
  TNameUses(const TUnitFindingInput& input, const std::vector<TUnitToken>& code, const TTextPlaces& places)
      : TUnitReader(code, input.Detail == TFindingDetail::Whole ? &places : nullptr),
        FInput(input),
        FPlaces(places) {}

  // Adds a finding with the level of its rule. The result is valid until the next call.
  TFinding& Add(TRuleId rule, size_t offset);
  std::vector<TFinding>& Findings() { return FFindings; }

  // Sets `before` and `after` to the source line at `offset` before and after the run.
  void ShowLine(size_t offset, std::string& before, std::string& after);

  bool IsLeftOut(size_t offset) const override;

  // Adds a finding for a mapped class at `offset` in statements, which brings a line.
  void AddLineInBody(size_t offset);

 protected:
  void OnName(TNameSpot spot) override;
  void BeforeMembers() override;
  void AfterMembers(const TClassOutline& outline) override;

 private:
  const TLinePairs& Pairs();
  void NoteCall(const TOldName& prefix);
  void NoteUse(TNameUse::TKind kind, const TOldName& old, size_t back);
  bool IsDeclaredHere() const;
  void FindLocal(TNameUse& use) const;
  bool IsUnitOf(const TOldName& old, const std::vector<std::string>& path) const;
  bool UsesUnitOf(const TOldName& old) const;
  const std::string* ClassWithLine(std::string_view name) const;
  void AddTransaction(TNameSpot spot);
  void AddTransaction(TNameSpot spot, std::string_view name, const std::string& newClass, size_t offset,
                      bool isCall);
  void AddTransactions(const std::vector<size_t>& fields, const TClassOutline& outline);

  const TUnitFindingInput& FInput;
  const TTextPlaces& FPlaces;
  std::vector<TFinding> FFindings;
  std::string FBeforeUses;  // viewed by FPairs
  std::optional<TLinePairs> FPairs;
  std::vector<std::vector<size_t>> FClasses;  // open ones: the findings for their fields
};

}  // namespace mig
