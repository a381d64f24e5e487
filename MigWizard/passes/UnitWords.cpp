#include "MigWizard/passes/UnitWords.h"

#include <array>
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

// Sorted by their first letter.
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

// By first letter: the index of its first row.
constexpr std::array<uint8_t, 27> kFirstRows = [] {
  std::array<uint8_t, 27> first{};
  for (size_t letter = 0, row = 0; letter < first.size(); ++letter) {
    while (row < std::size(kWords) && static_cast<size_t>(kWords[row].Text[0] - 'a') < letter) ++row;
    first[letter] = static_cast<uint8_t>(row);
  }
  return first;
}();

TWord WordOf(std::string_view lexem) {
  const auto letter = static_cast<size_t>(static_cast<uint8_t>(lexem[0]) | 0x20) - 'a';
  if (letter >= 26) return None;
  for (size_t row = kFirstRows[letter]; row < kFirstRows[letter + 1]; ++row)
    if (rtl::SameText(kWords[row].Text, lexem)) return kWords[row].Word;
  return None;
}

}  // namespace

TUnitTokens ReadUnitTokens(std::string_view text, const qrl::TEncoding& encoding) {
  TUnitTokens tokens;
  TPasParser scanner(text, encoding);
  std::string_view lexem;
  bool isEscaped = false;  // &begin is a name
  while (const int code = scanner.GetNext(lexem)) {
    if (code == qrl::kWhiteSpace) continue;
    if (code == qrl::kComment) {
      tokens.Comments.push_back(lexem);
      continue;
    }
    const bool canBeWord = code == qrl::kIdentifier || (code >= kEnd && code <= kUses);
    TUnitToken token{lexem, scanner.PrevPos(), canBeWord && !isEscaped ? WordOf(lexem) : None, false};
    token.IsName = canBeWord && token.Word == None;
    isEscaped = lexem == "&";
    if (!isEscaped) tokens.Code.push_back(token);
  }
  return tokens;
}

}  // namespace mig
