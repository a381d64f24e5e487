// The identifiers of the old components that a run finds and does not replace, with advice for each. The
// target supplies the list.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/NameTable.h"

namespace mig {

// A name of the list. Look-ups ignore the case of letters.
struct TOldName {
  std::string Name;    // as the list spells it
  std::string Unit;    // the unit that declares it, or empty
  std::string Advice;  // empty: the rule's advice applies
};

class TOldNames {
 public:
  // `Declared` names are not reported; they only show that a unit is still needed.
  // `Base` names are classes of the run-time library whose descendants inherit no member with the name of an
  // Object.
  // `Family` names are beginnings of names that units may declare although the list does not have them.
  enum TKind {
    Unit,
    Scope,
    Class,
    Call,
    Prefix,
    Object,
    Value,
    Connection,
    Declared,
    DeclaredPrefix,
    Base,
    Family
  };

  // A name that is added again keeps its first advice and belongs to the units of both.
  void Add(TKind kind, const TOldName& name);
  // Adds a member of an old class that its new class lacks.
  void AddMember(std::string_view oldClass, const TOldName& member);

  // Return null if the list has no such name. For `Prefix`, returns an entry with which `name` begins.
  const TOldName* Find(TKind kind, std::string_view name) const;
  const TOldName* FindPrefix(std::string_view name) const;
  const TOldName* FindMember(std::string_view oldClass, std::string_view member) const;
  // Returns True for a member of any class.
  bool IsMember(std::string_view name) const { return (FKinds.Find(name) & kMemberBit) != 0; }
  // Calls found(kind, name) for every name, and found(name) for every member, each in lower case.
  void ForEach(const std::function<void(TKind kind, const std::string& name)>& found) const;
  void ForEachMember(const std::function<void(const std::string& name)>& found) const;
  // Returns the unit that a uses clause names by `usedName`, with or without one of the unit scopes.
  const TOldName* FindUnit(std::string_view usedName) const;
  // HasNamesOf returns True if the list contains the declarations of a unit, and Declares returns True if
  // they include `identifier`. `usedName` is as for FindUnit.
  bool HasNamesOf(std::string_view usedName) const;
  bool Declares(std::string_view usedName, std::string_view identifier) const;
  // Returns True if the list does not have `identifier`, but it begins as names of the unit's family do.
  bool MayDeclare(std::string_view usedName, std::string_view identifier) const;

 private:
  static constexpr uint32_t kMemberBit = 0x10000;
  bool HasPrefixOf(TKind kind, std::string_view unit, std::string_view identifier) const;
  static uint32_t BitOf(TKind kind) { return 1U << kind; }

  TNameTable FKinds;                                                     // bits of the kinds of each name
  std::map<TKind, std::map<std::string, TOldName, std::less<>>> FNames;  // by lower case
  std::map<std::string, std::map<std::string, TOldName>, std::less<>> FMembers;  // by member, then by class
};

}  // namespace mig
