#include "MigWizard/passes/UnitMarks.h"

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "MigWizard/passes/NameUses.h"

namespace mig {
namespace {

using enum TWord;

constexpr uint32_t kUse = kOldName | kOldMember;

// The words by which PartsToRead finds the bodies of routines, except `end`, which the scanner tells apart.
constexpr std::pair<std::string_view, TWord> kMarkedWords[] = {
    {"asm", Asm},
    {"begin", Begin},
    {"case", Case},
    {"finalization", Finalization},
    {"implementation", Implementation},
    {"initialization", Initialization},
    {"try", Try},
};

TWord WordOf(const TUnitMark& mark) {
  return static_cast<TWord>(mark.Flags & kWordFlags);
}

class TPartFinder {
 public:
  TPartFinder(size_t size, const TUnitResult& unit) : FSize(size), FUnit(unit) {}

  TUnitParts Find(bool readsInterface) {
    const std::vector<TUnitMark>& marks = FUnit.Marks;
    auto mark = std::find_if(marks.begin(), marks.end(),
                             [](const TUnitMark& each) { return WordOf(each) == Implementation; });
    if (mark == marks.end()) {  // a program
      mark = marks.begin();
      FKeepsAll = true;
    } else {
      FKeepsAll = Any({mark, marks.end()}, kUse);
      readsInterface = readsInterface || FKeepsAll || Any({marks.begin(), mark}, kUse | kAddsLine);
      FSection = mark->Offset + kImplementation.size();
      if (readsInterface || !KeepHead(mark->Offset)) Keep(0, FSection);
      ++mark;
      if (!FKeepsAll && !Any({mark, marks.end()}, kAddsLine)) mark = marks.end();
    }
    ReadBodies({mark, marks.end()});
    return std::move(FParts);
  }

 private:
  using TMarks = std::span<const TUnitMark>;

  static bool Any(TMarks marks, uint32_t flags) {
    return std::any_of(marks.begin(), marks.end(),
                       [flags](const TUnitMark& mark) { return (mark.Flags & flags) != 0; });
  }

  // Keeps the unit's name, its uses clause if something may be said about it, and the word `implementation`,
  // which is at `end`. Returns False if the interface section has no uses clause.
  bool KeepHead(size_t end) {
    const std::vector<TTextRange>& clauses = FUnit.UsesClauses;
    if (clauses.empty() || clauses[0].End > end || !FUnit.LeftOut.empty()) return false;
    Keep(0, FUnit.NamesUnits ? clauses[0].End : clauses[0].Begin);
    Keep(end, FSection);
    FParts.UnreadInterface = FSection;
    return true;
  }

  // Divides the text into sections, each of which ends with the outermost body of a routine.
  void ReadBodies(TMarks marks) {
    size_t section = 0, body = 0;  // indices of marks
    int depth = 0;
    for (size_t i = 0; i < marks.size(); ++i) {
      const TWord word = WordOf(marks[i]);
      if (depth == 0) {
        if (word == Initialization || word == Finalization) break;
        if (word != Begin && word != Asm) continue;
        EndDeclarations(marks.subspan(section, i - section), marks[i].Offset);
        body = i;
        depth = 1;
      } else if (word == Begin || word == Asm || word == Case || word == Try) {
        ++depth;
      } else if (word == End && --depth == 0) {
        EndBody(marks.subspan(body, i - body), marks[i].Offset);
        FSection = marks[i].Offset;
        section = i + 1;
      }
    }
    if (depth > 0) {
      EndBody(marks.subspan(body), FSize);
    } else {
      EndDeclarations(marks.subspan(section), FSize);  // and the statements of `initialization`
    }
  }

  void EndDeclarations(TMarks marks, size_t end) {
    if (FKeepsAll || Any(marks, kAddsLine)) {
      Keep(FSection, end);
    } else {
      if (FIsAfterBody) Keep(FSection, FSection + kEndWord.size());
      for (const TTextRange& uses : FUnit.UsesClauses)
        if (FUnit.NamesUnits && uses.Begin >= FSection && uses.End <= end) Keep(uses.Begin, uses.End);
    }
    FSection = end;
  }

  // The body begins with its first mark. `end` is the offset of its `end`.
  void EndBody(TMarks marks, size_t end) {
    FIsAfterBody = true;
    if (FKeepsAll && Any(marks, kUse)) return Keep(FSection, end);
    Keep(FSection, FSection + (WordOf(marks[0]) == Asm ? kAsm : kBegin).size());
    for (const TUnitMark& mark : marks)
      if ((mark.Flags & kAddsLine) != 0) FParts.LinesInBodies.push_back(mark.Offset);
  }

  void Keep(size_t begin, size_t end) {
    std::vector<TTextRange>& ranges = FParts.Ranges;
    if (!ranges.empty() && ranges.back().End == begin) {
      ranges.back().End = end;
    } else {
      ranges.push_back({begin, end});
    }
  }

  static constexpr std::string_view kImplementation = "implementation", kBegin = "begin", kAsm = "asm",
                                    kEndWord = "end";

  const size_t FSize;
  const TUnitResult& FUnit;
  bool FKeepsAll = false;     // except bodies
  bool FIsAfterBody = false;  // the section begins with the `end` of a body
  size_t FSection = 0;        // where the current section begins
  TUnitParts FParts;
};

}  // namespace

TNameTable MakeUnitNames(const TUnitRules& rules, const TOldNames& oldNames) {
  TNameTable names;
  for (const auto& [text, word] : kMarkedWords) names.Add(text, static_cast<uint32_t>(word));
  const rtl::TStringList& classes = rules.Classes.MappedClasses();
  for (int i = 0; i < classes.Count(); ++i) {
    const std::string& newClass = *rules.Classes.Find(classes[i]);
    const bool addsLine = rules.GetReplacement(classes[i], newClass).find('\n') != std::string::npos;
    names.Add(classes[i], kMappedClass | (addsLine ? kAddsLine : 0));
    names.Add(newClass, kNewClass);
  }
  oldNames.ForEach([&](TOldNames::TKind kind, const std::string& name) {
    if (kind == TOldNames::Prefix) names.AddPrefix(name, kOldName);
    const bool isReported = kind == TOldNames::Class || kind == TOldNames::Call || kind == TOldNames::Object;
    if (isReported && rules.Classes.Find(name) == nullptr) names.Add(name, kOldName);
  });
  oldNames.ForEach([&names](TOldNames::TKind kind, const std::string& name) {
    if (kind == TOldNames::Unit) names.Add(name, kUnit);
  });
  names.Add(rules.OldUnit, kUnit);
  for (const std::string& name : NamesOf(rules.NewUnits)) names.Add(name.substr(name.rfind('.') + 1), kUnit);
  oldNames.ForEachMember([&names](const std::string& name) { names.Add(name, kOldMember); });
  return names;
}

TUnitParts PartsToRead(size_t size, const TUnitResult& unit, bool readsInterface) {
  return TPartFinder(size, unit).Find(readsInterface);
}

}  // namespace mig
