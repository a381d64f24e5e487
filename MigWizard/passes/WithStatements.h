// The `with` statements that are open at a token: in them a name may be a member of another object.
#pragma once

#include <vector>

#include "MigWizard/passes/UnitWords.h"

namespace mig {

class TWithStatements {
 public:
  // Starts a block of statements. The depth is 0.
  void Clear();
  // Moves past `token`, which `next` follows.
  void Pass(const TUnitToken& token, const TUnitToken& next);
  bool Any() const { return !FOpen.empty(); }
  // Returns the number of open `begin`, `case`, `try` and `asm`.
  int Depth() const { return FDepth; }

 private:
  struct TWith {
    int Depth;
    bool IsBlock;
  };
  void CloseStatementsWithoutBlock();

  std::vector<TWith> FOpen;
  int FDepth = 0;
  int FHeads = 0;  // statements whose `do` is not read yet
};

}  // namespace mig
