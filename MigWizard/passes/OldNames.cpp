#include "MigWizard/passes/OldNames.h"

#include <algorithm>

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

// Returns True if `name` is in the comma-separated `list`.
bool IsInList(std::string_view list, std::string_view name) {
  while (!list.empty()) {
    const size_t comma = std::min(list.find(','), list.size());
    if (rtl::SameText(list.substr(0, comma), name)) return true;
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return false;
}

}  // namespace

void TOldNames::Add(TKind kind, const TOldName& name) {
  const auto [place, isNew] = FNames[kind].emplace(rtl::LowerCase(name.Name), name);
  if (!isNew && !name.Unit.empty()) place->second.Unit += "," + name.Unit;
  if (kind == Prefix || kind == DeclaredPrefix || kind == Family) {
    FKinds.AddPrefix(name.Name, BitOf(kind));
  } else {
    FKinds.Add(name.Name, BitOf(kind));
  }
}

void TOldNames::AddMember(std::string_view oldClass, const TOldName& member) {
  FMembers[rtl::LowerCase(member.Name)].emplace(rtl::LowerCase(oldClass), member);
  FKinds.Add(member.Name, kMemberBit);
}

const TOldName* TOldNames::Find(TKind kind, std::string_view name) const {
  if ((FKinds.Find(name) & BitOf(kind)) == 0) return nullptr;
  const auto& names = FNames.at(kind);
  const auto place = names.find(rtl::LowerCase(name));
  return place == names.end() ? nullptr : &place->second;
}

const TOldName* TOldNames::FindPrefix(std::string_view name) const {
  const auto names = FNames.find(Prefix);
  if (names == FNames.end() || (FKinds.Find(name) & BitOf(Prefix)) == 0) return nullptr;
  for (const auto& [lower, entry] : names->second) {
    const bool begins = name.size() > lower.size() && rtl::SameText(name.substr(0, lower.size()), lower);
    // Matches DbiInit, but not "Dbilities": an upper-case letter must follow.
    if (begins && name[lower.size()] >= 'A' && name[lower.size()] <= 'Z') return &entry;
  }
  return nullptr;
}

const TOldName* TOldNames::FindMember(std::string_view oldClass, std::string_view member) const {
  const auto place = FMembers.find(rtl::LowerCase(member));
  if (place == FMembers.end()) return nullptr;
  const auto entry = place->second.find(rtl::LowerCase(oldClass));
  return entry == place->second.end() ? nullptr : &entry->second;
}

void TOldNames::ForEach(const std::function<void(TKind kind, const std::string& name)>& found) const {
  for (const auto& [kind, names] : FNames)
    for (const auto& [lower, name] : names) found(kind, lower);
}

void TOldNames::ForEachMember(const std::function<void(const std::string& name)>& found) const {
  for (const auto& [lower, owners] : FMembers) found(lower);
}

const TOldName* TOldNames::FindUnit(std::string_view usedName) const {
  const size_t dot = usedName.rfind('.');
  if (dot == std::string_view::npos) return Find(Unit, usedName);
  return Find(Scope, usedName.substr(0, dot)) ? Find(Unit, usedName.substr(dot + 1)) : nullptr;
}

bool TOldNames::HasNamesOf(std::string_view usedName) const {
  const TOldName* const unit = FindUnit(usedName);
  if (unit == nullptr) return false;
  for (const auto& [kind, names] : FNames) {
    for (const auto& [lower, name] : names)
      if (IsInList(name.Unit, unit->Name)) return true;
  }
  return false;
}

bool TOldNames::Declares(std::string_view usedName, std::string_view identifier) const {
  const TOldName* const unit = FindUnit(usedName);
  if (unit == nullptr || FKinds.Find(identifier) == 0) return false;
  for (const TKind kind : {Class, Call, Object, Declared}) {
    const TOldName* const name = Find(kind, identifier);
    if (name != nullptr && IsInList(name->Unit, unit->Name)) return true;
  }
  return HasPrefixOf(Prefix, unit->Name, identifier) || HasPrefixOf(DeclaredPrefix, unit->Name, identifier);
}

bool TOldNames::MayDeclare(std::string_view usedName, std::string_view identifier) const {
  constexpr uint32_t kKnown = 1U << Class | 1U << Call | 1U << Object | 1U << Declared;
  const TOldName* const unit = FindUnit(usedName);
  return unit != nullptr && (FKinds.Find(identifier) & kKnown) == 0 &&
         HasPrefixOf(Family, unit->Name, identifier);
}

// Ignores case, because keeping a unit that is not needed does no harm.
bool TOldNames::HasPrefixOf(TKind kind, std::string_view unit, std::string_view identifier) const {
  const auto prefixes = FNames.find(kind);
  if (prefixes == FNames.end()) return false;
  return std::any_of(prefixes->second.begin(), prefixes->second.end(), [&](const auto& prefix) {
    return rtl::SameText(identifier.substr(0, prefix.first.size()), prefix.first) &&
           IsInList(prefix.second.Unit, unit);
  });
}

}  // namespace mig
