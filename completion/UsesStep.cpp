#include "completion/UsesStep.h"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "MigWizard/engine/PasParser.h"
#include "completion/UsesClauses.h"
#include "rtl/text/SysUtils.h"

namespace completion {
namespace {

using TTokens = std::vector<TUnitToken>;

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// Returns the tokens of a unit or program up to its last one, the full stop of "end."; more text may follow that.
TTokens ReadModule(std::string_view text, const qrl::TEncoding& encoding) {
  TTokens tokens = ReadUnitTokens(text, encoding);
  for (size_t i = 1; i < tokens.size(); ++i) {
    if (tokens[i].IsSymbol('.') && tokens[i - 1].Code == mig::kEnd) tokens.resize(i + 1);
  }
  return tokens;
}

std::vector<std::string> NamesOf(std::string_view insertedText) {
  std::vector<std::string> names;
  std::string name;
  for (const char c : insertedText) {
    if (c != ',' && c != ' ') {
      name += c;
    } else if (!name.empty()) {
      names.push_back(std::move(name));
      name.clear();
    }
  }
  if (!name.empty()) names.push_back(name);
  return names;
}

// Returns `text` without what the conversion inserted after each old unit of its uses clauses. With `onlyDoubled` only
// where the new units followed already.
std::string WithoutInsertions(std::string_view text, const qrl::TEncoding& encoding, const TUsesRules& rules,
                              bool onlyDoubled) {
  std::string inserted(rules.InsertedText);
  if (onlyDoubled) inserted.append(rules.InsertedText);
  std::string result;
  size_t done = 0;
  bool inUses = false;
  for (const TUnitToken& token : ReadUnitTokens(text, encoding)) {
    if (token.Is("uses")) inUses = true;
    if (token.IsSymbol(';')) inUses = false;
    if (!inUses || token.Offset < done || !token.Is(rules.OldUnit)) continue;
    if (text.substr(token.End(), inserted.size()) != inserted) continue;
    result.append(text.substr(done, token.End() - done));
    done = token.End() + rules.InsertedText.size();
  }
  return result.append(text.substr(done));
}

// How the items of a clause follow each other.
struct TClauseLayout {
  std::string Separator = ", ";  // between two new items

  TClauseLayout(std::string_view text, const TUsesClause& clause) {
    if (clause.Items.size() < 2) return;
    for (size_t i = 1; i < clause.Items.size(); ++i) {
      const size_t lineStart = text.rfind('\n', clause.Items[i].Begin) + 1;
      if (lineStart >= clause.Items[i - 1].End) continue;
      // Two items on one line. Where the first such items have no blank between them, no item has one.
      const size_t comma = *clause.Items[i - 1].Comma;
      if (comma == clause.Items[i - 1].End && comma + 1 == clause.Items[i].Begin) Separator = ",";
      return;
    }
    // One a line: either "  Name" with commas at the line ends, or "  , Name".
    const TUsesItem& last = clause.Items.back();
    const size_t lineStart = text.rfind('\n', last.Begin) + 1;
    const bool isCommaFirst = *clause.Items[clause.Items.size() - 2].Comma >= lineStart;
    const std::string_view lead = text.substr(lineStart, last.Begin - lineStart);
    if (!std::all_of(lead.begin(), lead.end(),
                     [&](char c) { return IsBlank(c) || (isCommaFirst && c == ','); }))
      return;
    Separator =
        (isCommaFirst ? "" : ",") + std::string(LineEndOf(text.substr(clause.Keyword))) + std::string(lead);
  }
};

// A change of the text: `Length` bytes at `Offset` are replaced.
struct TEdit {
  size_t Offset, Length;
  std::string Replacement;
};

std::string ApplyEdits(std::string_view text, std::vector<TEdit> edits) {
  std::stable_sort(edits.begin(), edits.end(),
                   [](const TEdit& left, const TEdit& right) { return left.Offset < right.Offset; });
  std::string result;
  size_t done = 0;
  for (const TEdit& edit : edits) {
    result.append(text.substr(done, edit.Offset - done)).append(edit.Replacement);
    done = edit.Offset + edit.Length;
    // No blanks are left at the end of a line whose last item is removed.
    const bool endsLine = done == text.size() || text[done] == '\r' || text[done] == '\n';
    if (edit.Length > 0 && edit.Replacement.empty() && endsLine)
      result.resize(result.find_last_not_of(" \t") + 1);
  }
  return result.append(text.substr(done));
}

class TUsesStep {
 public:
  TUsesStep(std::string_view text, const qrl::TEncoding& encoding, const TUsesRules& rules,
            const TUsesAccount& account)
      : FText(text),
        FEncoding(encoding),
        FRules(rules),
        FAccount(account),
        FTokens(ReadModule(text, encoding)),
        FNewUnits(NamesOf(rules.InsertedText)) {}

  // Nothing where the clauses cannot be told for certain.
  std::optional<std::string> Run() {
    FClauses = FindUsesClauses(FTokens);
    if (!FClauses) return std::nullopt;
    for (std::optional<TUsesSection>* const section : {&FClauses->Interface, &FClauses->Implementation}) {
      if (*section && (*section)->Clause) FSections.push_back(&*(*section)->Clause);
    }
    ReadIdentifiers();
    MarkItems();
    if (!MoveToInterface()) return std::nullopt;
    TUsesSection* const target = FindTarget();
    for (const TUsesClause* const clause : FSections) {
      const bool isTarget = target != nullptr && target->Clause && clause == &*target->Clause;
      if (!isTarget && !KeepDirectives(*clause)) return std::nullopt;
    }
    for (const TUsesItem* const item : FMarked) FAccount.OnRemoved(item->Name);
    if (target != nullptr) InsertInto(*target);
    for (const TUsesClause* const clause : FSections) RemoveMarked(*clause);
    return ApplyEdits(FText, std::move(FEdits));
  }

 private:
  bool IsInClause(size_t offset) const {
    return std::any_of(FSections.begin(), FSections.end(), [&](const TUsesClause* clause) {
      return offset >= clause->Keyword && offset <= clause->Semicolon;
    });
  }

  void ReadIdentifiers() {
    const size_t implementation = FClauses->Implementation ? FClauses->Implementation->Begin : FText.size();
    for (const TUnitToken& token : FTokens) {
      if (token.Code != qrl::kIdentifier || IsInClause(token.Offset)) continue;
      FIdentifiers.insert(rtl::LowerCase(token.Lexem));
      if (!FRules.IsNewClass(token.Lexem)) continue;
      (token.Offset < implementation ? FNeedsInterface : FNeedsImplementation) = true;
    }
  }

  bool IsNewUnit(const TUsesItem& item) const {
    return std::any_of(FNewUnits.begin(), FNewUnits.end(),
                       [&](const std::string& name) { return rtl::SameText(name, item.Name); });
  }

  // Whether an old unit is no longer needed: nothing that it declares is named, nor the unit itself.
  bool IsFree(const TUsesItem& item) const {
    if (FIdentifiers.contains(rtl::LowerCase(item.BareName()))) return false;
    return std::none_of(FIdentifiers.begin(), FIdentifiers.end(),
                        [&](const std::string& name) { return FRules.Declares(name, item.Name); });
  }

  // Whether an item can go without touching a conditional directive's comma.
  static bool CanGo(const TUsesClause& clause, const TUsesItem& item) {
    if (item.Conditional) return false;
    if (item.Comma) return !item.CommaConditional;
    return clause.Items.size() == 1 || !clause.Items[clause.Items.size() - 2].CommaConditional;
  }

  void MarkItems() {
    std::set<std::string> met;
    for (const TUsesClause* const clause : FSections) {
      for (const TUsesItem& item : clause->Items) {
        if (IsNewUnit(item)) {
          const bool isFirst = met.insert(rtl::LowerCase(item.Name)).second;
          if (!isFirst && CanGo(*clause, item)) FMarked.insert(&item);
          continue;
        }
        if (!FRules.IsOldUnit(item.Name)) continue;
        FOldItems.emplace_back(clause, &item);
        if (!IsFree(item)) continue;
        if (CanGo(*clause, item)) {
          FMarked.insert(&item);
        } else {
          FAccount.OnRefused(TUsesRefusal::Conditional, item.Begin, item.Name);
        }
      }
    }
    for (const std::string& name : FNewUnits) {
      if (!met.contains(rtl::LowerCase(name))) FMissing.push_back(name);
    }
  }

  const TUsesItem* ItemOfOldUnit() const {
    for (const auto& [clause, item] : FOldItems) {
      if (rtl::SameText(item->BareName(), FRules.OldUnit)) return item;
    }
    return nullptr;
  }

  // Marks the new units of the implementation's clause that the interface needs, and adds them to the missing ones.
  // Returns False if one of them cannot go.
  bool MoveToInterface() {
    if (!FNeedsInterface || !FClauses->Implementation || !FClauses->Implementation->Clause) return true;
    const TUsesClause& implementation = *FClauses->Implementation->Clause;
    std::set<std::string> listed;  // by the interface, in lower case
    if (FClauses->Interface->Clause) {
      for (const TUsesItem& item : FClauses->Interface->Clause->Items) {
        if (IsNewUnit(item)) listed.insert(rtl::LowerCase(item.Name));
      }
    }
    const bool isConverted = ItemOfOldUnit() != nullptr;
    if (!isConverted && !listed.empty()) return true;  // the author has divided the units between the clauses
    std::set<std::string> wanted;
    for (const TUsesItem& item : implementation.Items) {
      const std::string name = rtl::LowerCase(item.Name);
      if (!IsNewUnit(item) || listed.contains(name)) continue;
      if (!CanGo(implementation, item)) return false;
      FMoved.insert(&item);
      wanted.insert(name);
    }
    if (wanted.empty()) return true;
    if (isConverted) {
      for (const std::string& name : FMissing) wanted.insert(rtl::LowerCase(name));
    }
    FMarked.insert(FMoved.begin(), FMoved.end());
    FMissing.clear();
    for (const std::string& name : FNewUnits) {
      if (wanted.contains(rtl::LowerCase(name))) FMissing.push_back(name);
    }
    return true;
  }

  // Returns the section that gets the new units, or null if none does.
  TUsesSection* FindTarget() {
    if (FMissing.empty()) return nullptr;
    if (!FMoved.empty()) return &*FClauses->Interface;
    const bool hasSome = FMissing.size() < FNewUnits.size();
    const TUsesItem* const oldUnit = ItemOfOldUnit();
    if (oldUnit == nullptr && (hasSome || !(FNeedsInterface || FNeedsImplementation))) return nullptr;
    return &SectionFor(oldUnit);
  }

  void InsertInto(const TUsesSection& section) {
    if (!section.Clause) return InsertClause(section);
    const TUsesClause& clause = *section.Clause;
    const std::string separator = TClauseLayout(FText, clause).Separator;
    std::string names = FMissing[0];
    for (size_t i = 1; i < FMissing.size(); ++i) names += separator + FMissing[i];
    const TUsesItem* const place = PlaceIn(clause);
    if (place == nullptr) {
      FEdits.push_back({clause.Items[0].Begin, 0, names + separator});
    } else if (FMarked.erase(place) > 0) {
      FEdits.push_back({place->Begin, place->End - place->Begin, names});
    } else {
      FEdits.push_back({place->End, 0, separator + names});
    }
  }

  TUsesSection& SectionFor(const TUsesItem* oldUnit) {
    if (!FClauses->Implementation || FNeedsInterface) return *FClauses->Interface;
    const auto& clause = FClauses->Interface->Clause;
    const bool isOldInInterface = oldUnit != nullptr && clause && oldUnit->Begin > clause->Keyword &&
                                  oldUnit->Begin < clause->Semicolon;
    if (isOldInInterface || !FNeedsImplementation) return OldSection(oldUnit);
    return *FClauses->Implementation;
  }

  TUsesSection& OldSection(const TUsesItem* oldUnit) {
    const auto& clause = FClauses->Implementation->Clause;
    const bool isInImplementation =
        clause && oldUnit->Begin > clause->Keyword && oldUnit->Begin < clause->Semicolon;
    return isInImplementation ? *FClauses->Implementation : *FClauses->Interface;
  }

  // The item after which new ones go, or in whose place: the first of the old families, else the last one. Null
  // where there is none outside of conditional directives.
  const TUsesItem* PlaceIn(const TUsesClause& clause) const {
    for (const auto& [owner, item] : FOldItems) {
      if (owner == &clause && !item->Conditional) return item;
    }
    return clause.Items.back().Conditional ? nullptr : &clause.Items.back();
  }

  void InsertClause(const TUsesSection& section) {
    const std::string lineEnd(LineEndOf(FText));
    std::string names = FMissing[0];
    for (size_t i = 1; i < FMissing.size(); ++i) names += ", " + FMissing[i];
    FEdits.push_back({section.Begin, 0, lineEnd + lineEnd + "uses" + lineEnd + "  " + names + ";"});
  }

  void RemoveMarked(const TUsesClause& clause) {
    const auto isMarked = [this](const TUsesItem& item) { return FMarked.contains(&item); };
    if (std::all_of(clause.Items.begin(), clause.Items.end(), isMarked)) return RemoveClause(clause);
    // Items at the end go with the comma before them, all others with the comma after them.
    size_t end = clause.Items.size();
    while (isMarked(clause.Items[end - 1])) --end;
    for (size_t i = 0; i < end; ++i) {
      if (isMarked(clause.Items[i])) RemoveWithCommaAfter(clause.Items[i]);
    }
    for (size_t i = end; i < clause.Items.size(); ++i)
      RemoveWithCommaBefore(clause.Items[i - 1], clause.Items[i]);
  }

  size_t LineStart(size_t offset) const { return FText.rfind('\n', offset - 1) + 1; }
  bool IsBlankBetween(size_t begin, size_t end) const {
    return std::all_of(FText.begin() + static_cast<std::ptrdiff_t>(begin),
                       FText.begin() + static_cast<std::ptrdiff_t>(end), IsBlank);
  }

  // Removes from `begin` to `end`, and the line if nothing else is on it.
  void RemoveRange(size_t begin, size_t end) {
    size_t after = end;
    while (after < FText.size() && IsBlank(FText[after])) ++after;
    const size_t lineStart = begin == 0 ? 0 : LineStart(begin);
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

  void RemoveWithCommaAfter(const TUsesItem& item) {
    const size_t comma = *item.Comma;
    if (IsBlankBetween(item.End, comma)) return RemoveRange(item.Begin, comma + 1);
    FEdits.push_back({item.Begin, item.End - item.Begin, ""});  // a comment between item and comma stays
    FEdits.push_back({comma, 1, ""});
  }

  void RemoveWithCommaBefore(const TUsesItem& previous, const TUsesItem& item) {
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
  std::vector<std::string_view> CommentsOf(const TUsesClause& clause) const {
    std::vector<std::string_view> comments;
    mig::TPasParser scanner(FText.substr(clause.Keyword, clause.Semicolon - clause.Keyword), FEncoding);
    std::string_view lexem;
    while (const int code = scanner.GetNext(lexem)) {
      if (code == qrl::kComment) comments.push_back(lexem.substr(0, lexem.find_last_not_of("\r\n") + 1));
    }
    return comments;
  }

  // Removes a whole clause. Its comments stay, on lines of their own.
  void RemoveClause(const TUsesClause& clause) {
    const std::vector<std::string_view> comments = CommentsOf(clause);
    if (comments.empty()) return RemoveRange(clause.Keyword, clause.Semicolon + 1);
    const std::string lineEnd(LineEndOf(FText));
    std::string kept;
    for (const std::string_view comment : comments) kept.append(kept.empty() ? "" : lineEnd).append(comment);
    size_t after = std::min(FText.find_first_not_of(" \t", clause.Semicolon + 1), FText.size());
    if (after == FText.size() || FText[after] == '\r' || FText[after] == '\n') {
      after = clause.Semicolon + 1;
    } else {
      kept += lineEnd;
    }
    FEdits.push_back({clause.Keyword, after - clause.Keyword, kept});
  }

  // Keeps a clause that would go as a whole if it has a directive, because what the directive does is not known.
  // Returns False if units of it would move to the interface.
  bool KeepDirectives(const TUsesClause& clause) {
    const std::vector<std::string_view> comments = CommentsOf(clause);
    if (std::none_of(comments.begin(), comments.end(), IsDirective) ||
        !std::all_of(clause.Items.begin(), clause.Items.end(),
                     [&](const TUsesItem& item) { return FMarked.contains(&item); }))
      return true;
    for (const TUsesItem& item : clause.Items) FMarked.erase(&item);
    return std::none_of(clause.Items.begin(), clause.Items.end(),
                        [&](const TUsesItem& item) { return FMoved.contains(&item); });
  }

  static bool IsDirective(std::string_view comment) {
    return comment.starts_with("{$") || comment.starts_with("(*$");
  }

  const std::string_view FText;
  const qrl::TEncoding& FEncoding;
  const TUsesRules& FRules;
  const TUsesAccount& FAccount;
  const TTokens FTokens;
  const std::vector<std::string> FNewUnits;
  std::optional<TUsesClauses> FClauses;
  std::vector<const TUsesClause*> FSections;
  std::unordered_set<std::string> FIdentifiers;  // outside of uses clauses, in lower case
  bool FNeedsInterface = false;
  bool FNeedsImplementation = false;
  std::vector<std::pair<const TUsesClause*, const TUsesItem*>> FOldItems;
  std::unordered_set<const TUsesItem*> FMarked;  // to be removed
  std::unordered_set<const TUsesItem*> FMoved;   // of these, new units that the interface gets
  std::vector<std::string> FMissing;
  std::vector<TEdit> FEdits;
};

}  // namespace

std::string CompleteUses(std::string_view text, const qrl::TEncoding& encoding, const TUsesRules& rules,
                         const TUsesAccount& account) {
  const std::string original = WithoutInsertions(text, encoding, rules, /*onlyDoubled=*/false);
  if (std::optional<std::string> completed = TUsesStep(original, encoding, rules, account).Run())
    return *completed;
  account.OnRefused(TUsesRefusal::Source, 0, {});
  return WithoutInsertions(text, encoding, rules, /*onlyDoubled=*/true);
}

}  // namespace completion
