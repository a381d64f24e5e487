#include "completion/UsesStep.h"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "MigWizard/engine/PasParser.h"
#include "completion/DeclaredNames.h"
#include "completion/UsesClauses.h"
#include "completion/UsesEditor.h"
#include "rtl/text/SysUtils.h"

namespace completion {
namespace {

using TTokens = std::vector<TUnitToken>;

// Returns the tokens of a unit or program up to its last one, the full stop of "end."; more text may follow
// that.
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

// Returns `text` without the text that the conversion inserted after each old unit of its uses clauses. With
// `onlyDoubled` only where the new units followed already.
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

class TUsesStep {
 public:
  TUsesStep(std::string_view text, const qrl::TEncoding& encoding, const TUsesRules& rules,
            const TUsesCallbacks& callbacks)
      : FText(text),
        FRules(rules),
        FCallbacks(callbacks),
        FTokens(ReadModule(text, encoding)),
        FNewUnits(NamesOf(rules.InsertedText)),
        FEditor(text, encoding) {}

  // Returns the completed text, or nullopt if the clauses cannot be read with certainty.
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
    const TUsesItem* const place = target != nullptr && target->Clause ? PlaceIn(*target->Clause) : nullptr;
    for (const TUsesClause* const clause : FSections) {
      const bool isTarget = target != nullptr && target->Clause && clause == &*target->Clause;
      if (!KeepStuck(*clause, place) || (!isTarget && !KeepDirectives(*clause))) return std::nullopt;
    }
    for (const TUsesClause* const clause : FSections) {
      for (const TUsesItem& item : clause->Items) {
        if (FMarked.contains(&item)) FCallbacks.OnRemoved(item.Name);
      }
    }
    if (target != nullptr) InsertInto(*target, place);
    for (const TUsesClause* const clause : FSections) FEditor.Remove(*clause, FMarked);
    return FEditor.Result();
  }

 private:
  bool IsInClause(size_t offset) const {
    return std::any_of(FSections.begin(), FSections.end(), [&](const TUsesClause* clause) {
      return offset >= clause->Keyword && offset <= clause->Semicolon;
    });
  }

  void ReadIdentifiers() {
    const size_t implementation = FClauses->Implementation ? FClauses->Implementation->Begin : FText.size();
    for (size_t i = 0; i < FTokens.size(); ++i) {
      const TUnitToken& token = FTokens[i];
      if (token.Code != qrl::kIdentifier || IsInClause(token.Offset)) continue;
      (IsMember(FTokens, i) ? FMembers : FIdentifiers).insert(rtl::LowerCase(token.Lexem));
      if (!FRules.IsNewClass(token.Lexem)) continue;
      (token.Offset < implementation ? FNeedsInterface : FNeedsImplementation) = true;
    }
  }

  bool IsNewUnit(const TUsesItem& item) const {
    return std::any_of(FNewUnits.begin(), FNewUnits.end(),
                       [&](const std::string& name) { return rtl::SameText(name, item.Name); });
  }

  // Whether an old unit is no longer needed: nothing that it declares or may declare is named, nor the unit
  // itself.
  bool IsFree(const TUsesItem& item) {
    const std::string unit = rtl::LowerCase(item.BareName());
    if (FIdentifiers.contains(unit) || FMembers.contains(unit)) return false;
    if (!FDeclared) FDeclared = FindDeclaredNames(FTokens);
    return std::none_of(FIdentifiers.begin(), FIdentifiers.end(), [&](const std::string& name) {
      return FRules.Declares(name, item.Name) ||
             (FRules.MayDeclare(name, item.Name) && !FDeclared->contains(name));
    });
  }

  void MarkItems() {
    std::set<std::string> met;
    for (const TUsesClause* const clause : FSections) {
      for (const TUsesItem& item : clause->Items) {
        if (IsNewUnit(item)) {
          const bool isFirst = met.insert(rtl::LowerCase(item.Name)).second;
          if (!isFirst && !item.Conditional) FMarked.insert(&item);
          continue;
        }
        if (!FRules.IsOldUnit(item.Name)) continue;
        FOldItems.emplace_back(clause, &item);
        if (!IsFree(item)) continue;
        if (item.Conditional) {
          FCallbacks.OnRefused(TUsesRefusal::Conditional, item.Begin, item.Name);
        } else {
          FMarked.insert(&item);
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

  // Marks the new units of the implementation's clause that the interface needs, and adds them to the missing
  // ones. Returns False if one of them cannot be removed.
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
      if (item.Conditional) return RefuseToMove(item);
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

  void InsertInto(const TUsesSection& section, const TUsesItem* place) {
    if (!section.Clause) return FEditor.InsertClause(section, FMissing);
    if (place != nullptr && FMarked.erase(place) > 0) {
      FEditor.Replace(*section.Clause, *place, FMissing);
    } else {
      FEditor.InsertAfter(*section.Clause, place, FMissing);
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

  // Returns the item after which new ones are inserted, or which they replace: the first of the old families,
  // else the last one. Null if there is none outside of conditional directives.
  const TUsesItem* PlaceIn(const TUsesClause& clause) const {
    for (const auto& [owner, item] : FOldItems) {
      if (owner == &clause && !item->Conditional) return item;
    }
    const auto last = std::find_if(clause.Items.rbegin(), clause.Items.rend(),
                                   [](const TUsesItem& item) { return !item.Conditional; });
    return last == clause.Items.rend() ? nullptr : &*last;
  }

  // Unmarks the items whose comma is between conditional directives: at the end of the clause the comma
  // before the first of them, else the one after the item. `place`, which the new units replace, needs no
  // comma. Returns False if one of them would move to the interface.
  bool KeepStuck(const TUsesClause& clause, const TUsesItem* place) {
    const auto goes = [&](const TUsesItem& item) { return &item != place && FMarked.contains(&item); };
    if (std::all_of(clause.Items.begin(), clause.Items.end(), goes)) return true;  // with all commas
    while (const TUsesItem* const item = FindStuck(clause, goes)) {
      if (FMoved.contains(item)) return RefuseToMove(*item);
      FMarked.erase(item);
      if (!IsNewUnit(*item)) FCallbacks.OnRefused(TUsesRefusal::Conditional, item->Begin, item->Name);
    }
    return true;
  }

  // Returns an item that goes although its comma cannot, or null.
  template <class TGoes>
  static const TUsesItem* FindStuck(const TUsesClause& clause, const TGoes& goes) {
    size_t end = clause.Items.size();
    while (goes(clause.Items[end - 1])) --end;
    for (size_t i = 0; i < end; ++i) {
      if (goes(clause.Items[i]) && clause.Items[i].CommaConditional) return &clause.Items[i];
    }
    return end < clause.Items.size() && clause.Items[end - 1].CommaConditional ? &clause.Items[end] : nullptr;
  }

  // Keeps a clause that would be removed as a whole if it contains a directive, whose effect is not known.
  // Returns False if units of it would move to the interface.
  bool KeepDirectives(const TUsesClause& clause) {
    if (!FEditor.HasDirective(clause) ||
        !std::all_of(clause.Items.begin(), clause.Items.end(),
                     [&](const TUsesItem& item) { return FMarked.contains(&item); }))
      return true;
    for (const TUsesItem& item : clause.Items) FMarked.erase(&item);
    const auto moved = std::find_if(clause.Items.begin(), clause.Items.end(),
                                    [&](const TUsesItem& item) { return FMoved.contains(&item); });
    return moved == clause.Items.end() || RefuseToMove(*moved);
  }

  // Returns False.
  bool RefuseToMove(const TUsesItem& item) const {
    FCallbacks.OnRefused(TUsesRefusal::Stuck, item.Begin, item.Name);
    return false;
  }

  const std::string_view FText;
  const TUsesRules& FRules;
  const TUsesCallbacks& FCallbacks;
  const TTokens FTokens;
  const std::vector<std::string> FNewUnits;
  std::optional<TUsesClauses> FClauses;
  std::vector<const TUsesClause*> FSections;
  // Outside of uses clauses, in lower case. A member follows a full stop.
  std::unordered_set<std::string> FIdentifiers, FMembers;
  std::optional<std::unordered_set<std::string>> FDeclared;  // by the text itself
  bool FNeedsInterface = false;
  bool FNeedsImplementation = false;
  std::vector<std::pair<const TUsesClause*, const TUsesItem*>> FOldItems;
  TUsesItems FMarked;  // to be removed
  TUsesItems FMoved;   // of these, new units that the interface gets
  std::vector<std::string> FMissing;
  TUsesEditor FEditor;
};

}  // namespace

std::string CompleteUses(std::string_view text, const qrl::TEncoding& encoding, const TUsesRules& rules,
                         const TUsesCallbacks& callbacks) {
  const std::string original = WithoutInsertions(text, encoding, rules, /*onlyDoubled=*/false);
  if (std::optional<std::string> completed = TUsesStep(original, encoding, rules, callbacks).Run())
    return *completed;
  callbacks.OnRefused(TUsesRefusal::Source, 0, {});
  return WithoutInsertions(text, encoding, rules, /*onlyDoubled=*/true);
}

}  // namespace completion
