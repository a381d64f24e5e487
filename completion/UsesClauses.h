// The uses clauses of a unit or program.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "completion/UnitTokens.h"

namespace completion {

// Offsets are in bytes, 0-based.
struct TUsesItem {
  std::string Name;             // as spelled, with its unit scope: "Bde.DBTables"
  size_t Begin = 0, End = 0;    // the name and an "in 'file'" after it
  bool Conditional = false;     // some part of it is between conditional directives
  std::optional<size_t> Comma;  // the one after it; none after the last item
  bool CommaConditional = false;

  // Returns the name without its unit scope.
  std::string_view BareName() const;
};

struct TUsesClause {
  size_t Keyword = 0;    // the word `uses`
  size_t Semicolon = 0;  // the ";" that ends the clause
  std::vector<TUsesItem> Items;
};

// One part of a source that can have a uses clause.
struct TUsesSection {
  // Where a uses clause can be inserted: after `interface`, `implementation` or the program's heading.
  size_t Begin = 0;
  std::optional<TUsesClause> Clause;
};

struct TUsesClauses {
  std::optional<TUsesSection> Interface;       // of a program, its only section
  std::optional<TUsesSection> Implementation;  // none in a program
};

// Finds the sections and clauses. Returns nothing if the source cannot be read with certainty: it is no unit,
// program or library, a section has two clauses, a clause or a section's keyword is between conditional
// directives, or a clause never ends. A program without a heading must begin with `uses`.
std::optional<TUsesClauses> FindUsesClauses(const std::vector<TUnitToken>& tokens);

}  // namespace completion
