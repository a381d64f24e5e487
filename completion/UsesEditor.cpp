#include "completion/UsesEditor.h"

#include <algorithm>

#include "MigWizard/engine/PasParser.h"
#include "completion/UnitTokens.h"

namespace completion {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

bool IsDirective(std::string_view comment) {
  return comment.starts_with("{$") || comment.starts_with("(*$");
}

std::string Joined(const std::vector<std::string>& units, std::string_view separator) {
  std::string names = units[0];
  for (size_t i = 1; i < units.size(); ++i) names.append(separator).append(units[i]);
  return names;
}

// How the items of a clause follow each other.
struct TClauseLayout {
  std::string Separator = ", ";  // between two new items

  TClauseLayout(std::string_view text, const TUsesClause& clause) {
    if (clause.Items.size() < 2) return;
    for (size_t i = 1; i < clause.Items.size(); ++i) {
      const size_t lineStart = text.find_last_of("\r\n", clause.Items[i].Begin) + 1;
      if (lineStart >= clause.Items[i - 1].End) continue;
      // Two items on one line. Where the first such items have no blank between them, no item has one.
      const size_t comma = *clause.Items[i - 1].Comma;
      if (comma == clause.Items[i - 1].End && comma + 1 == clause.Items[i].Begin) Separator = ",";
      return;
    }
    // One a line: either "  Name" with commas at the line ends, or "  , Name".
    const TUsesItem& last = clause.Items.back();
    const size_t lineStart = text.find_last_of("\r\n", last.Begin) + 1;
    const bool isCommaFirst = *clause.Items[clause.Items.size() - 2].Comma >= lineStart;
    const std::string_view lead = text.substr(lineStart, last.Begin - lineStart);
    if (!std::all_of(lead.begin(), lead.end(),
                     [&](char c) { return IsBlank(c) || (isCommaFirst && c == ','); }))
      return;
    Separator =
        (isCommaFirst ? "" : ",") + std::string(LineEndOf(text.substr(clause.Keyword))) + std::string(lead);
  }
};

}  // namespace

void TUsesEditor::InsertAfter(const TUsesClause& clause, const TUsesItem* item,
                              const std::vector<std::string>& units) {
  if (item == nullptr) {
    constexpr size_t kKeywordLength = 4;
    FEdits.push_back({clause.Keyword + kKeywordLength, 0, " " + Joined(units, ", ") + ","});
  } else {
    const std::string separator = TClauseLayout(FText, clause).Separator;
    FEdits.push_back({item->End, 0, separator + Joined(units, separator)});
  }
}

void TUsesEditor::Replace(const TUsesClause& clause, const TUsesItem& item,
                          const std::vector<std::string>& units) {
  FEdits.push_back(
      {item.Begin, item.End - item.Begin, Joined(units, TClauseLayout(FText, clause).Separator)});
}

void TUsesEditor::InsertClause(const TUsesSection& section, const std::vector<std::string>& units) {
  const std::string lineEnd(LineEndOf(FText));
  FEdits.push_back(
      {section.Begin, 0, lineEnd + lineEnd + "uses" + lineEnd + "  " + Joined(units, ", ") + ";"});
}

void TUsesEditor::Remove(const TUsesClause& clause, const TUsesItems& marked) {
  const auto isMarked = [&](const TUsesItem& item) { return marked.contains(&item); };
  if (std::all_of(clause.Items.begin(), clause.Items.end(), isMarked)) return RemoveClause(clause);
  // Items at the end are removed with the comma before them, all others with the comma after them.
  size_t end = clause.Items.size();
  while (isMarked(clause.Items[end - 1])) --end;
  for (size_t i = 0; i < end; ++i) {
    if (isMarked(clause.Items[i])) RemoveWithCommaAfter(clause.Items[i]);
  }
  for (size_t i = end; i < clause.Items.size(); ++i)
    RemoveWithCommaBefore(clause.Items[i - 1], clause.Items[i]);
}

size_t TUsesEditor::LineStart(size_t offset) const {
  return offset == 0 ? 0 : FText.find_last_of("\r\n", offset - 1) + 1;
}
bool TUsesEditor::IsBlankBetween(size_t begin, size_t end) const {
  return std::all_of(FText.begin() + static_cast<std::ptrdiff_t>(begin),
                     FText.begin() + static_cast<std::ptrdiff_t>(end), IsBlank);
}

// Removes from `begin` to `end`, and the line if nothing else is on it.
void TUsesEditor::RemoveRange(size_t begin, size_t end) {
  size_t after = end;
  while (after < FText.size() && IsBlank(FText[after])) ++after;
  const size_t lineStart = LineStart(begin);
  const bool endsLine = after == FText.size() || FText[after] == '\r' || FText[after] == '\n';
  if (endsLine && IsBlankBetween(lineStart, begin)) {
    const size_t lineEnd = std::min(FText.find_first_not_of('\r', after), FText.size());
    if (lineEnd < FText.size() && FText[lineEnd] == '\n') {
      after = lineEnd + 1;
    } else if (after < FText.size()) {
      ++after;  // a CR alone
    }
    FEdits.push_back({lineStart, after - lineStart, ""});
  } else {
    FEdits.push_back({begin, (endsLine ? end : after) - begin, ""});
  }
}

void TUsesEditor::RemoveWithCommaAfter(const TUsesItem& item) {
  const size_t comma = *item.Comma;
  if (IsBlankBetween(item.End, comma)) return RemoveRange(item.Begin, comma + 1);
  FEdits.push_back({item.Begin, item.End - item.Begin, ""});  // a comment between item and comma stays
  FEdits.push_back({comma, 1, ""});
}

void TUsesEditor::RemoveWithCommaBefore(const TUsesItem& previous, const TUsesItem& item) {
  const size_t comma = *previous.Comma;
  const std::string_view between = FText.substr(comma + 1, item.Begin - comma - 1);
  if (between.find_first_not_of(" \t\r\n") == std::string_view::npos) {
    FEdits.push_back({comma, item.End - comma, ""});
  } else {
    FEdits.push_back({comma, 1, ""});
    RemoveRange(item.Begin, item.End);
  }
}

// Returns the comments of a clause, without the line ends after them.
std::vector<std::string_view> TUsesEditor::CommentsOf(const TUsesClause& clause) const {
  std::vector<std::string_view> comments;
  mig::TPasParser scanner(FText.substr(clause.Keyword, clause.Semicolon - clause.Keyword), FEncoding);
  std::string_view lexem;
  while (const int code = scanner.GetNext(lexem)) {
    if (code == qrl::kComment) comments.push_back(lexem.substr(0, lexem.find_last_not_of("\r\n") + 1));
  }
  return comments;
}

// Removes a whole clause. Its comments stay, on lines of their own.
void TUsesEditor::RemoveClause(const TUsesClause& clause) {
  const std::vector<std::string_view> comments = CommentsOf(clause);
  if (comments.empty()) return RemoveRange(clause.Keyword, clause.Semicolon + 1);
  const std::string lineEnd(LineEndOf(FText));
  std::string kept;
  const size_t keywordLine = LineStart(clause.Keyword);
  size_t begin = clause.Keyword;
  for (const std::string_view comment : comments) {
    const auto at = static_cast<size_t>(comment.data() - FText.data());
    const size_t line = LineStart(at);
    const bool hasOwnLine = line > keywordLine && IsBlankBetween(line, at);
    if (kept.empty() && hasOwnLine && IsBlankBetween(keywordLine, begin)) begin = keywordLine;
    kept.append(kept.empty() ? "" : lineEnd)
        .append(FText.substr(hasOwnLine ? line : at, hasOwnLine ? at - line : 0));
    kept.append(comment);
  }
  size_t after = std::min(FText.find_first_not_of(" \t", clause.Semicolon + 1), FText.size());
  if (after == FText.size() || FText[after] == '\r' || FText[after] == '\n') {
    after = clause.Semicolon + 1;
  } else {
    kept += lineEnd;
  }
  FEdits.push_back({begin, after - begin, kept});
}

bool TUsesEditor::HasDirective(const TUsesClause& clause) const {
  const std::vector<std::string_view> comments = CommentsOf(clause);
  return std::any_of(comments.begin(), comments.end(), IsDirective);
}

std::string TUsesEditor::Result() {
  std::stable_sort(FEdits.begin(), FEdits.end(),
                   [](const TEdit& left, const TEdit& right) { return left.Offset < right.Offset; });
  std::string result;
  size_t done = 0;
  for (const TEdit& edit : FEdits) {
    result.append(FText.substr(done, edit.Offset - done)).append(edit.Replacement);
    done = edit.Offset + edit.Length;
    // No blanks are left at the end of a line whose last item is removed.
    const bool endsLine = done == FText.size() || FText[done] == '\r' || FText[done] == '\n';
    if (edit.Length > 0 && edit.Replacement.empty() && endsLine)
      result.resize(result.find_last_not_of(" \t") + 1);
  }
  return result.append(FText.substr(done));
}

}  // namespace completion
