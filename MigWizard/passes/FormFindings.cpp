#include "MigWizard/passes/FormFindings.h"

#include <algorithm>
#include <string>

#include "MigWizard/form/LoginParameters.h"
#include "MigWizard/form/PropertyRules.h"
#include "MigWizard/passes/FindingRules.h"
#include "MigWizard/passes/FormWalk.h"
#include "MigWizard/passes/StopFinder.h"
#include "rtl/text/ClassRegistry.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr std::string_view kBlanks = "\t\n\r ";
constexpr std::string_view kEventPrefixes[] = {"On", "Before", "After"};

std::string_view RootOf(std::string_view propName) {
  return propName.substr(0, propName.find('.'));
}

bool Holds(const std::vector<std::string_view>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [name](std::string_view each) { return rtl::SameText(each, name); });
}

bool IsIdentifier(std::string_view text) {
  const auto isPart = [](char c) {
    return c == '_' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  };
  return !text.empty() && std::all_of(text.begin(), text.end(), isPart) && (text[0] < '0' || text[0] > '9');
}

// For example: OnCalcFields = Table1CalcFields
bool IsEventHandler(std::string_view propName, std::string_view value) {
  const auto begins = [propName](std::string_view prefix) {
    return propName.size() > prefix.size() && propName.starts_with(prefix) &&
           propName[prefix.size()] >= 'A' && propName[prefix.size()] <= 'Z';
  };
  return IsIdentifier(value) && std::any_of(std::begin(kEventPrefixes), std::end(kEventPrefixes), begins);
}

std::string_view Unquoted(std::string_view value) {
  return value.size() < 2 ? std::string_view() : value.substr(1, value.size() - 2);
}

std::string_view TrimmedStart(std::string_view value) {
  return value.substr(std::min(value.find_first_not_of(kBlanks), value.size()));
}

// Adds the findings object by object. Most objects have none, and most converted ones are known without a
// walk; the text is walked again only where an inherited object has properties to look at, or where a
// converted object may have objects of old classes in it.
class TFormFindings : public TFormWalk {
 public:
  TFormFindings(const TFormFindingInput& input, TFormParser& parser)
      : TFormWalk(input.Text, input.Encoding), FInput(input), FStops(input.Text, parser) {}

  std::vector<TFinding> Find() {
    size_t walked = 0;
    // So many are rare, and unused memory costs nothing.
    if (IsWhole()) FFindings.reserve(2 * FInput.Conversions.size() + 4);
    const std::vector<TFormOutline::TObject>& objects = FInput.Outline.Objects();
    for (FObject = 0; FObject < static_cast<int32_t>(objects.size()); ++FObject) {
      const TFormOutline::TObject& object = objects[static_cast<size_t>(FObject)];
      if (object.Offset < walked) continue;
      const TObjectConversion* const conversion = ConversionAt(object.Offset);
      if (conversion == nullptr && FInput.Reported.Names.Find(object.ClassName) == 0) continue;
      if (conversion == nullptr ? !object.IsObject && FInput.Classes.Find(object.ClassName) != nullptr
                                : !IsOfOnePiece(*conversion)) {
        walked = Run(object.Offset);
      } else if (conversion != nullptr) {
        AddConverted(*conversion);
      } else {
        (void)AddOther(object);
      }
    }
    const auto comesBefore = [](const TFinding& left, const TFinding& right) {
      return left.Offset < right.Offset;
    };
    if (!std::is_sorted(FFindings.begin(), FFindings.end(), comesBefore))
      std::stable_sort(FFindings.begin(), FFindings.end(), comesBefore);
    return std::move(FFindings);
  }

 private:
  // The properties of an open object that are not in its text.
  struct TOpen {
    bool IsConverted = false;
    bool IsLeftOut = false;
    bool IsInherited = false;               // of a class of the map
    const std::string* NewClass = nullptr;  // of the map
    std::vector<std::string> Lacking;       // properties that the new class lacks
  };

  // Returns True for a converted object in which there is no other object of the map or of an old class.
  bool IsOfOnePiece(const TObjectConversion& conversion) const {
    return conversion.IsConverted && conversion.End != 0 &&
           (conversion.Nested.empty() || !FInput.Reported.Words.FindAny(conversion.Nested));
  }

  void OnObject(const TObjectHeader& object) override {
    TOpen open;
    open.NewClass = FInput.Classes.Find(object.ClassName);
    if (const TObjectConversion* conversion = ConversionAt(object.Offset)) {
      open.IsConverted = conversion->IsConverted;
      open.IsLeftOut = conversion->IsLeftOut;
      if (conversion->IsConverted) {
        AddConverted(*conversion);
        if (IsOfOnePiece(*conversion)) SkipObject(conversion->End);
      } else if (conversion->IsLeftOut) {
        TFinding& finding = Add(TRuleId::Deselected, object.Offset);
        finding.Subject = finding.Object;
        finding.OldClass = object.ClassName;
      } else {
        AddUnparsed(object, IsWhole() ? FStops.Find(object.Offset) : TStop{object.Offset, {}});
        if (IsWhole()) ShowClass(*conversion);
      }
    } else {
      open.IsInherited = AddOther(object);
    }
    FOpen.push_back(std::move(open));
  }

  // Adds the findings of an object that is not converted. Returns True for an inherited one of the map,
  // whose properties matter.
  bool AddOther(const TObjectHeader& object) {
    const std::string* const newClass = FInput.Classes.Find(object.ClassName);
    const auto isIn = [this](bool TOpen::*kind) {
      return std::any_of(FOpen.begin(), FOpen.end(), [kind](const TOpen& outer) { return outer.*kind; });
    };
    if (newClass == nullptr) {
      if (const TOldName* old = FInput.OldNames.Find(TOldNames::Class, object.ClassName)) {
        TFinding& finding = Add(TRuleId::UnmappedClass, object.Offset);
        finding.OldClass = object.ClassName;
        finding.Advice = old->Advice;
      }
    } else if (isIn(&TOpen::IsLeftOut)) {
      // It is left out with the object around it.
    } else if (!object.IsObject) {
      return true;
    } else if (isIn(&TOpen::IsConverted)) {
      Add(TRuleId::NestedObject, object.Offset, object, *newClass);
    } else {
      AddUnparsed(object, {object.Offset, "header"});
    }
    return false;
  }

  void OnProperty(const TWalkedProperty& property) override {
    TOpen& open = FOpen.back();
    if (!open.IsInherited) return;
    const std::string_view root = RootOf(property.Name);
    const rtl::TClassInfo* newClass = rtl::GetClass(*open.NewClass);
    if (newClass == nullptr || newClass->HasProperty(root) || root == "Left" || root == "Top") return;
    if (std::find(open.Lacking.begin(), open.Lacking.end(), root) == open.Lacking.end())
      open.Lacking.emplace_back(root);
  }

  bool WantsProperties() const override { return FOpen.back().IsInherited; }

  void OnObjectEnd() override {
    const TOpen open = std::move(FOpen.back());
    FOpen.pop_back();
    if (open.IsInherited) AddInherited(Objects().back(), open);
  }

  const TObjectConversion* ConversionAt(size_t offset) {
    const std::vector<TObjectConversion>& conversions = FInput.Conversions;
    while (FNextConversion < conversions.size() && conversions[FNextConversion].Start < offset)
      ++FNextConversion;
    return FNextConversion < conversions.size() && conversions[FNextConversion].Start == offset
               ? &conversions[FNextConversion]
               : nullptr;
  }

  bool IsWhole() const { return FInput.Detail == TFindingDetail::Whole; }

  // Returns the path of the object that is the innermost one of the walk, or is looked at without a walk.
  std::string Path() const {
    std::string path = FInput.Outline.PathOf(FObject);
    for (size_t i = 1; i < Objects().size(); ++i) AppendName(path, Objects()[i].Name);
    return path;
  }

  TFinding& Add(TRuleId rule, size_t offset) {
    TFinding& finding = FFindings.emplace_back();
    finding.Rule = rule;
    finding.Level = RuleOf(rule).Level;
    finding.Offset = offset;
    if (IsWhole()) finding.Object = Path();
    return finding;
  }
  TFinding& Add(TRuleId rule, size_t offset, const TObjectHeader& object, std::string_view newClass) {
    TFinding& finding = Add(rule, offset);
    finding.OldClass = object.ClassName;
    finding.NewClass = newClass;
    return finding;
  }
  TFinding& Add(TRuleId rule, std::string_view place, const TObjectConversion& conversion) {
    TFinding& finding = Add(rule, static_cast<size_t>(place.data() - Text().data()));
    finding.OldClass = conversion.OldClass;
    finding.NewClass = *conversion.NewClass;
    return finding;
  }

  void AddInherited(const TObjectHeader& object, const TOpen& open) {
    TFinding& finding = Add(TRuleId::InheritedObject, object.Offset, object, *open.NewClass);
    finding.Subject = rtl::LowerCase(object.Keyword);
    for (const std::string& name : open.Lacking)
      finding.Value.append(finding.Value.empty() ? "" : ", ").append(name);
    const std::vector<size_t>& unread = FInput.Unread;
    if (std::find(unread.begin(), unread.end(), object.Offset) != unread.end())
      finding.Detail = ", because its text cannot be read";
    if (open.Lacking.empty()) return;
    finding.Level = TLevel::Error;
    finding.Detail += "; " + finding.NewClass + " does not publish " + finding.Value;
  }

  void AddUnparsed(const TObjectHeader& object, const TStop& stop) {
    TFinding& finding =
        Add(TRuleId::UnparsedObject, object.Offset, object, *FInput.Classes.Find(object.ClassName));
    finding.Offset = stop.Offset;
    finding.Subject = finding.Detail = stop.What;
  }

  // If the last finding is on the line of the object's class, shows the line with the new class.
  void ShowClass(const TObjectConversion& conversion) {
    TFinding& finding = FFindings.back();
    const auto at = static_cast<size_t>(conversion.OldClass.data() - Text().data());
    const size_t start = Text().find_last_of("\r\n", at) + 1;  // 0 in the first line
    const size_t end = std::min(Text().find_first_of("\r\n", at), Text().size());
    if (!FInput.ReplacesClasses || finding.Offset < start || finding.Offset > end) return;
    std::string line(Text().substr(start, end - start));
    finding.After =
        ShownValue({}, line.replace(at - start, conversion.OldClass.size(), *conversion.NewClass));
  }

  void AddConverted(const TObjectConversion& conversion) {
    const size_t first = FFindings.size();
    AddProperties(conversion);
    if (!IsWhole()) MergeEqual(FFindings, first);
  }

  void AddProperties(const TObjectConversion& conversion) {
    std::vector<std::string_view> newRoots;
    newRoots.reserve(conversion.NewNames.size());
    for (const std::string_view name : conversion.NewNames) newRoots.push_back(RootOf(name));
    const bool isConnection = FInput.OldNames.Find(TOldNames::Connection, conversion.OldClass) != nullptr;
    bool hasLost = false;
    for (const TSourceProperty& property : conversion.Properties) {
      const std::string_view root = RootOf(property.Name);
      if (isConnection && root == "Params") {
        AddLoginEntries(property, conversion);
      } else if (property.EntryCount > 0) {
        AddKept(property, conversion, newRoots);
      } else if (!isConnection && property.Name == "DatabaseName") {
        if (!std::exchange(hasLost, true)) AddLost(property, conversion);
      } else if (!Holds(newRoots, root)) {
        AddDropped(property, conversion);
      }
    }
    if (rtl::GetClass(*conversion.NewClass) == nullptr) {
      TFinding& finding = Add(TRuleId::NoPublishedList, Text().substr(conversion.Start), conversion);
      finding.Subject = *conversion.NewClass;
      const std::string_view header =
          Text().substr(conversion.Start,
                        static_cast<size_t>(conversion.OldClass.data() - Text().data()) - conversion.Start);
      finding.After = ShownValue({}, std::string(header) + *conversion.NewClass);
    }
  }

  void AddKept(const TSourceProperty& property, const TObjectConversion& conversion,
               const std::vector<std::string_view>& newRoots) {
    if (property.Rule != nullptr && property.Name == "IndexFieldNames" && !Holds(newRoots, "MasterSource")) {
      TFinding& finding = Add(TRuleId::OrderBecameDetail, property.Name, conversion);
      finding.Subject = property.Name;
      if (IsWhole()) {
        finding.Value = ShownValue(property.Name, property.Value);
        finding.After = "DetailFields = " + finding.Value;
      }
    }
    if (const TOldName* old = FInput.OldNames.Find(TOldNames::Value, property.Value)) {
      TFinding& finding = Add(TRuleId::OldValue, property.Name, conversion);
      finding.Subject = property.Name;
      finding.Value = property.Value;
      finding.Advice = old->Advice;
      if (property.Rule != nullptr)
        finding.After = std::string(property.Rule->NewName).append(" = ").append(property.Value);
    }
  }

  void AddLost(const TSourceProperty& property, const TObjectConversion& conversion) {
    TFinding& finding = Add(TRuleId::LostConnection, property.Name, conversion);
    const std::string_view alias = Unquoted(property.Value);
    finding.Subject = property.Name;
    finding.Value =
        alias.find('\'') == std::string_view::npos ? std::string(alias) : ShownValue({}, property.Value);
    if (!IsWhole()) return;
    const std::string quoted = '"' + finding.Value + '"';
    const std::string inherited = FInput.InheritedDatabase(alias);
    if (FInput.IsUnwritable(alias)) {
      finding.Detail = "the form's encoding lacks the name of the database of the alias " + quoted;
    } else if (!inherited.empty()) {
      finding.Detail =
          inherited + ", which declares the alias " + quoted + ", is inherited and keeps its class";
      finding.Advice =
          "Convert " + inherited + " by hand or with --complete inherited, and set the Connection property.";
    } else {
      finding.Detail = "the run found no database of the alias " + quoted;
    }
  }

  void AddDropped(const TSourceProperty& property, const TObjectConversion& conversion) {
    TFinding& finding = Add(TRuleId::DroppedProperty, property.Name, conversion);
    const std::string_view value = TrimmedStart(property.Value);
    finding.Subject = property.Name;
    finding.IsEvent = IsEventHandler(property.Name, value);
    if (!IsWhole()) return;
    finding.Value = ShownValue(property.Name, value);
    finding.Detail = finding.IsEvent ? "event handler" : "property";
  }

  // Adds a finding for each entry, except for the first one of each name that the rule looks up.
  void AddLoginEntries(const TSourceProperty& property, const TObjectConversion& conversion) {
    const TLoginParameters list(property.Value);
    std::vector<std::string_view> kept;
    for (const TLoginParameters::TEntry& entry : list.Entries()) {
      const bool isLookedUp =
          property.Rule != nullptr &&
          std::any_of(
              property.Rule->LoginFields.begin(), property.Rule->LoginFields.end(),
              [&entry](const TLoginField& field) { return rtl::SameText(field.ParameterName, entry.Name); });
      if (isLookedUp && !Holds(kept, entry.Name)) {
        kept.push_back(entry.Name);
        continue;
      }
      TFinding& finding = Add(TRuleId::DroppedLoginEntry, entry.Text, conversion);
      finding.Subject = entry.Name.empty() ? std::string("(no name)") : ShownValue({}, entry.Name);
      if (CouldBeSecret(entry.Name, {})) finding.Subject = entry.Name;
      finding.Before = "'" + finding.Subject + "=...'";
    }
  }

  const TFormFindingInput& FInput;
  TStopFinder FStops;
  int32_t FObject = 0;  // the index of the object in the outline
  size_t FNextConversion = 0;
  std::vector<TOpen> FOpen;  // the objects of a walk
  std::vector<TFinding> FFindings;
};

}  // namespace

std::vector<TFinding> FindInForm(const TFormFindingInput& input, TFormParser& parser) {
  return TFormFindings(input, parser).Find();
}

std::vector<TConvertedClass> CountConverted(const std::vector<TObjectConversion>& conversions) {
  std::vector<TConvertedClass> classes;
  for (const TObjectConversion& conversion : conversions) {
    if (!conversion.IsConverted) continue;
    const auto place =
        std::find_if(classes.begin(), classes.end(), [&conversion](const TConvertedClass& each) {
          return rtl::SameText(each.OldClass, conversion.OldClass);
        });
    if (place != classes.end()) {
      ++place->Count;
    } else {
      classes.push_back({std::string(conversion.OldClass), *conversion.NewClass, 1});
    }
  }
  return classes;
}

}  // namespace mig
