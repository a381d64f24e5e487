#include "MigWizard/passes/OldNames.h"

#include "rtl/text/SysUtils.h"

namespace mig {

void TOldNames::Add(TKind kind, const TOldName& name) {
  FNames[kind].emplace(rtl::LowerCase(name.Name), name);
  NoteLength(name.Name, kind == Prefix);
  if (kind == Class) FClasses.Add(name.Name);
}

void TOldNames::AddMember(std::string_view oldClass, const TOldName& member) {
  FMembers[rtl::LowerCase(member.Name)].emplace(rtl::LowerCase(oldClass), member);
  NoteLength(member.Name, false);
}

void TOldNames::NoteLength(std::string_view name, bool isPrefix) {
  const uint64_t bits = isPrefix ? ~(LengthBit(name.size()) - 1) : LengthBit(name.size());
  for (const std::string& spelling : {rtl::UpperCase(name), rtl::LowerCase(name)})
    FLengths[static_cast<uint8_t>(spelling[0])] |= bits;
}

const TOldName* TOldNames::Find(TKind kind, std::string_view name) const {
  const auto names = FNames.find(kind);
  if (names == FNames.end()) return nullptr;
  const auto place = names->second.find(rtl::LowerCase(name));
  return place == names->second.end() ? nullptr : &place->second;
}

const TOldName* TOldNames::FindPrefix(std::string_view name) const {
  const auto names = FNames.find(Prefix);
  if (names == FNames.end()) return nullptr;
  for (const auto& [lower, entry] : names->second) {
    const bool begins = name.size() > lower.size() && rtl::SameText(name.substr(0, lower.size()), lower);
    // DbiInit, and not "Dbilities": an upper-case letter follows.
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

bool TOldNames::IsMember(std::string_view name) const {
  return FMembers.contains(rtl::LowerCase(name));
}

const TOldName* TOldNames::FindUnit(std::string_view usedName) const {
  const size_t dot = usedName.rfind('.');
  if (dot == std::string_view::npos) return Find(Unit, usedName);
  return Find(Scope, usedName.substr(0, dot)) ? Find(Unit, usedName.substr(dot + 1)) : nullptr;
}

}  // namespace mig
