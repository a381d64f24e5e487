#include "MigWizard/passes/WithStatements.h"

namespace mig {

void TWithStatements::Clear() {
  FOpen.clear();
  FDepth = 0;
  FHeads = 0;
}

void TWithStatements::Pass(const TUnitToken& token, const TUnitToken& next) {
  using enum TWord;
  switch (token.Word) {
    case Begin:
    case Case:
    case Try:
    case Asm:
      ++FDepth;
      break;
    case End:
      --FDepth;
      while (!FOpen.empty() && FOpen.back().Depth >= FDepth + (FOpen.back().IsBlock ? 0 : 1))
        FOpen.pop_back();
      break;
    case With:
      ++FHeads;
      break;
    case Do:
      if (FHeads == 0) break;
      --FHeads;
      FOpen.push_back({FDepth, next.Word == Begin});
      break;
    case Except:
    case Finally:
    case Until:
      CloseStatementsWithoutBlock();
      break;
    default:
      if (token.Lexem == ";") CloseStatementsWithoutBlock();
      break;
  }
}

// Ends the statements at this depth that are not blocks.
void TWithStatements::CloseStatementsWithoutBlock() {
  while (!FOpen.empty() && !FOpen.back().IsBlock && FOpen.back().Depth >= FDepth) FOpen.pop_back();
}

}  // namespace mig
