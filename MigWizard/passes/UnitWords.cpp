#include "MigWizard/passes/UnitWords.h"

#include <algorithm>
#include <iterator>

#include "MigWizard/engine/PasParser.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

using enum TWord;

struct TWordRow {
  std::string_view Text;
  TWord Word;
};

constexpr TWordRow kWords[] = {
    {"asm", Asm},
    {"begin", Begin},
    {"case", Case},
    {"class", Class},
    {"const", Const},
    {"constructor", Constructor},
    {"destructor", Destructor},
    {"dispinterface", DispInterface},
    {"do", Do},
    {"end", End},
    {"except", Except},
    {"exports", Exports},
    {"external", External},
    {"finalization", Finalization},
    {"finally", Finally},
    {"forward", Forward},
    {"function", Function},
    {"implementation", Implementation},
    {"inherited", Inherited},
    {"initialization", Initialization},
    {"interface", Interface},
    {"label", Label},
    {"library", Library},
    {"object", Object},
    {"of", Of},
    {"operator", Operator},
    {"package", Package},
    {"packed", Packed},
    {"private", Private},
    {"procedure", Procedure},
    {"program", Program},
    {"property", Property},
    {"protected", Protected},
    {"public", Public},
    {"published", Published},
    {"record", Record},
    {"resourcestring", ResourceString},
    {"threadvar", ThreadVar},
    {"try", Try},
    {"type", Type},
    {"unit", Unit},
    {"until", Until},
    {"uses", Uses},
    {"var", Var},
    {"with", With},
};

// Directives after the heading of a routine. Each ends with ";", some after an argument.
constexpr std::string_view kDirectives[] = {
    "abstract", "assembler", "cdecl",  "default",  "deprecated",  "dispid",   "dynamic",  "experimental",
    "export",   "far",       "final",  "inline",   "message",     "name",     "near",     "noreturn",
    "overload", "override",  "pascal", "platform", "reintroduce", "register", "safecall", "static",
    "stdcall",  "stored",    "unsafe", "varargs",  "virtual",     "winapi",
};

}  // namespace

const TNameTable& UnitWords() {
  static const TNameTable words = [] {
    TNameTable table;
    for (const TWordRow& row : kWords) table.Add(row.Text, static_cast<uint32_t>(row.Word));
    return table;
  }();
  return words;
}

std::vector<TUnitToken> ReadUnitTokens(std::string_view text, const qrl::TEncoding& encoding,
                                       const TNameTable& names, const std::vector<TTextRange>& ranges) {
  constexpr size_t kBytesPerToken = 4;
  std::vector<TUnitToken> code;
  size_t size = 0;
  for (const TTextRange& range : ranges) size += range.End - range.Begin;
  code.reserve(size / kBytesPerToken);
  const TNameTable& words = UnitWords();
  TPasParser scanner(text, encoding);
  std::string_view lexem;
  bool isEscaped = false;  // &begin is a name
  for (const TTextRange& range : ranges) {
    scanner.SetPosition(range.Begin);
    while (const int token = scanner.GetNext(lexem)) {
      const size_t offset = scanner.PrevPos();
      if (offset >= range.End) break;
      if (token == qrl::kWhiteSpace || token == qrl::kComment) continue;
      const bool canBeWord = token == qrl::kIdentifier || (token >= kEnd && token <= kUses);
      const TWord word = canBeWord && !isEscaped ? static_cast<TWord>(words.Find(lexem)) : None;
      const uint32_t flags = canBeWord && word == None ? names.Find(lexem) & ~kWordFlags : 0;
      isEscaped = lexem == "&";
      if (!isEscaped) code.push_back({lexem, offset, flags, word, canBeWord && word == None});
    }
  }
  return code;
}

bool IsDirective(const TUnitToken& token) {
  return token.Word == Forward || token.Word == External ||
         (token.IsName &&
          std::any_of(std::begin(kDirectives), std::end(kDirectives),
                      [&token](std::string_view word) { return rtl::SameText(word, token.Lexem); }));
}

TWord SectionOf(TWord word) {
  if (word == ThreadVar) return Var;
  if (word == ResourceString) return Const;
  return word == Type || word == Var || word == Const ? word : None;
}

bool BeginsRoutine(TWord word) {
  return word == Procedure || word == Function || word == Constructor || word == Destructor ||
         word == Operator;
}

}  // namespace mig
