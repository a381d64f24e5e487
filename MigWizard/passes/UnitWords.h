// The tokens of a unit without white space and comments, and the words of the language among them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "qrl/Encoding.h"

namespace mig {

// Words that an outline of a unit depends on. Every other name is None.
enum class TWord : uint8_t {
  None,
  Asm,
  Begin,
  Case,
  Class,
  Const,
  Constructor,
  Destructor,
  DispInterface,
  Do,
  End,
  Except,
  Exports,
  External,
  Finalization,
  Finally,
  Forward,
  Function,
  Implementation,
  Inherited,
  Initialization,
  Interface,
  Label,
  Library,
  Object,
  Of,
  Operator,
  Package,
  Packed,
  Private,
  Procedure,
  Program,
  Property,
  Protected,
  Public,
  Published,
  Record,
  ResourceString,
  ThreadVar,
  Try,
  Type,
  Unit,
  Until,
  Uses,
  Var,
  With,
};

struct TUnitToken {
  std::string_view Lexem;
  size_t Offset = 0;
  TWord Word = TWord::None;
  bool IsName = false;  // an identifier that is not a word of the list above
};

struct TUnitTokens {
  std::vector<TUnitToken> Code;
  std::vector<std::string_view> Comments;
};

TUnitTokens ReadUnitTokens(std::string_view text, const qrl::TEncoding& encoding);

}  // namespace mig
