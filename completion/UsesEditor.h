// Changes of the uses clauses of a unit. Clauses keep their layout, one item a line or several, and their
// comments.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "completion/UsesClauses.h"
#include "qrl/Encoding.h"

namespace completion {

using TUsesItems = std::unordered_set<const TUsesItem*>;

// Clauses, sections and items are those of the text. Each change is recorded; Result applies them all.
class TUsesEditor {
 public:
  // Both arguments must outlive the object.
  TUsesEditor(std::string_view text, const qrl::TEncoding& encoding) : FText(text), FEncoding(encoding) {}

  // Inserts units after an item, or after the word `uses` if `item` is null.
  void InsertAfter(const TUsesClause& clause, const TUsesItem* item, const std::vector<std::string>& units);
  // Replaces an item by units.
  void Replace(const TUsesClause& clause, const TUsesItem& item, const std::vector<std::string>& units);
  // Inserts a clause into a section that has none.
  void InsertClause(const TUsesSection& section, const std::vector<std::string>& units);

  // Removes the marked items with their commas, or the whole clause if all of its items are marked. The
  // comments of a removed clause get lines of their own.
  void Remove(const TUsesClause& clause, const TUsesItems& marked);

  // Returns whether a comment in the clause is a compiler directive.
  bool HasDirective(const TUsesClause& clause) const;

  // Returns the text with all changes.
  std::string Result();

 private:
  // `Length` bytes at `Offset` are replaced.
  struct TEdit {
    size_t Offset, Length;
    std::string Replacement;
  };

  size_t LineStart(size_t offset) const;
  bool IsBlankBetween(size_t begin, size_t end) const;
  void RemoveRange(size_t begin, size_t end);
  void RemoveWithCommaAfter(const TUsesItem& item);
  void RemoveWithCommaBefore(const TUsesItem& previous, const TUsesItem& item);
  void RemoveClause(const TUsesClause& clause);
  std::vector<std::string_view> CommentsOf(const TUsesClause& clause) const;

  const std::string_view FText;
  const qrl::TEncoding& FEncoding;
  std::vector<TEdit> FEdits;
};

}  // namespace completion
