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
  TUnitPass(std::string_view text, const qrl::TEncoding& encoding, const TUnitRules& rules)
      : FText(text), FEncoding(encoding), FRules(rules) {}

  TUnitResult Run() {
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
          inUses = true;
          break;
        case kSemicolon:
          inUses = false;
          break;
        default:
          break;
      }
    }
    return std::move(FResult);
  }

 private:
  void ProcessIdentifier(std::string_view name, bool inUses) {
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
    while (const int code = scanner.GetNextWord(lexem)) {
      if (code != qrl::kIdentifier) continue;
      if (const std::string* newClass = FRules.Classes.Find(lexem)) Replace(lexem, *newClass);
    }
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
  TUnitResult FResult;
};

}  // namespace

TUnitResult ConvertUnit(std::string_view text, const qrl::TEncoding& encoding, const TUnitRules& rules) {
  return TUnitPass(text, encoding, rules).Run();
}

}  // namespace mig
