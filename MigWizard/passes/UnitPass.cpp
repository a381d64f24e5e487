#include "MigWizard/passes/UnitPass.h"

#include "MigWizard/engine/PasParser.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

bool BeginsWithText(std::string_view text, std::string_view beginning) {
  return rtl::SameText(text.substr(0, beginning.size()), beginning);
}

bool IsResourceDirective(std::string_view comment) {
  return BeginsWithText(comment, "{$R ") || BeginsWithText(comment, "{$RESOURCE ");
}

class TUnitPass {
 public:
  TUnitPass(std::string_view text, const qrl::TEncoding& encoding, const TUnitRules& rules,
            const TNameTable* names)
      : FText(text), FEncoding(encoding), FRules(rules), FNames(names) {}

  TUnitResult Run() {
    constexpr size_t kBytesPerMark = 256;
    if (FNames != nullptr) FResult.Marks.reserve(FText.size() / kBytesPerMark);
    TPasParser scanner(FText, FEncoding);
    std::string_view lexem;
    bool inUses = false;
    while (const int code = inUses ? scanner.GetNext(lexem) : scanner.GetNextWord(lexem)) {
      switch (code) {
        case qrl::kIdentifier:
          ProcessIdentifier(lexem, inUses);
          break;
        case qrl::kComment:
          ProcessComment(lexem);
          break;
        case kUses:
          if (!inUses) FResult.UsesClauses.push_back({scanner.PrevPos(), FText.size()});
          inUses = true;
          break;
        case kSemicolon:
          if (inUses) FResult.UsesClauses.back().End = scanner.PrevPos() + 1;
          inUses = false;
          break;
        case kEnd:
          if (FNames != nullptr) AddMark(lexem, static_cast<uint32_t>(TWord::End));
          break;
        default:
          break;
      }
    }
    return std::move(FResult);
  }

 private:
  void ProcessIdentifier(std::string_view name, bool inUses) {
    if (FNames != nullptr) {
      const uint32_t flags = FNames->Find(name);
      if (inUses) FResult.NamesUnits = FResult.NamesUnits || (flags & kUnit) != 0;
      if ((flags & ~kUnit) != 0 && !inUses) AddMark(name, flags & ~kUnit);
      // All classes of the map are in the table.
      if ((flags & kMappedClass) == 0 && !inUses) return;
    }
    if (inUses && IsNewUnit(name)) FResult.NamesNewUnits = true;
    if (inUses && rtl::SameText(name, FRules.OldUnit)) {
      Replace(name, std::string(name).append(FRules.NewUnits));
    } else if (const std::string* newClass = FRules.Classes.Find(name)) {
      Replace(name, FRules.GetReplacement(name, *newClass));
    }
  }

  // Scans the comment again after its first character, so that a brace or a slash does not begin the same
  // comment again. Text that then looks like a string or a comment is left unchanged.
  void ProcessComment(std::string_view comment) {
    if (IsResourceDirective(comment)) {
      FResult.ResourceDirectives.push_back(comment);
      return;
    }
    TPasParser scanner(comment.substr(1), FEncoding);
    std::string_view lexem;
    const size_t edits = FResult.Edits.Edits().size();
    while (const int code = scanner.GetNextWord(lexem)) {
      if (code != qrl::kIdentifier) continue;
      if (const std::string* newClass = FRules.Classes.Find(lexem)) Replace(lexem, *newClass);
    }
    if (FResult.Edits.Edits().size() > edits) FResult.ChangedComments.push_back(comment);
  }

  // Adds the marks of a name. One that is only that of a member counts only after a dot.
  void AddMark(std::string_view name, uint32_t flags) {
    const auto offset = static_cast<size_t>(name.data() - FText.data());
    if (offset > 0 && FText[offset - 1] == '&') flags &= ~kWordFlags;  // &begin is a name
    if (flags == kOldMember && !MayFollowDot(offset)) return;
    if (flags != 0) FResult.Marks.push_back({offset, flags});
  }

  // Returns False if the last character of code before `offset` is not a dot.
  bool MayFollowDot(size_t offset) const {
    size_t end = offset;
    while (end > 0 && static_cast<uint8_t>(FText[end - 1]) <= ' ') --end;
    if (end == 0) return false;
    const char last = FText[end - 1];
    if (last == '.' || last == '}' || last == ')') return true;  // a comment may follow the dot
    if (FText.substr(end, offset - end).find_first_of("\r\n") == std::string_view::npos) return false;
    const size_t line = FText.find_last_of("\r\n", end - 1);
    return FText.substr(line + 1, end - line - 1).find("//") != std::string_view::npos;
  }

  // Returns True if `name` is one of the comma-separated names in NewUnits.
  bool IsNewUnit(std::string_view name) const {
    for (std::string_view rest = FRules.NewUnits; !rest.empty();) {
      const size_t comma = rest.find(',');
      if (rtl::SameText(rtl::Trim(rest.substr(0, comma)), name)) return true;
      rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
    }
    return false;
  }

  // `lexem` is a view into the text.
  void Replace(std::string_view lexem, std::string replacement) {
    ++FResult.Changes;
    if (lexem == replacement) return;
    FResult.Edits.Replace(static_cast<size_t>(lexem.data() - FText.data()), lexem.size(),
                          std::move(replacement));
  }

  std::string_view FText;
  const qrl::TEncoding& FEncoding;
  const TUnitRules& FRules;
  const TNameTable* const FNames;
  TUnitResult FResult;
};

}  // namespace

TUnitResult ConvertUnit(std::string_view text, const qrl::TEncoding& encoding, const TUnitRules& rules,
                        const TNameTable* names) {
  return TUnitPass(text, encoding, rules, names).Run();
}

}  // namespace mig
