// The tokens of a unit without white space and comments, and the words of the language among them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "MigWizard/passes/NameTable.h"
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

// The flags of a name in the table of a unit's names. The lowest bits are the TWord.
inline constexpr uint32_t kWordFlags = 0xFF;
inline constexpr uint32_t kMappedClass = 0x100;
inline constexpr uint32_t kAddsLine = 0x200;  // a mapped class that is replaced by more than one line
inline constexpr uint32_t kNewClass = 0x400;
inline constexpr uint32_t kOldName = 0x800;     // a class, a function or an object of the old components
inline constexpr uint32_t kOldMember = 0x1000;  // a member that a new class lacks
inline constexpr uint32_t kUnit = 0x2000;       // the last part of the name of an old or a new unit

struct TUnitToken {
  std::string_view Lexem;
  size_t Offset = 0;
  uint32_t Flags = 0;  // of a name, without its word
  TWord Word = TWord::None;
  bool IsName = false;  // an identifier that is not a word of the list above
};

// A part of a text, as offsets in bytes from 0. `End` is the offset after its last byte.
struct TTextRange {
  size_t Begin = 0, End = 0;
};

// Returns the table of all words, whose flags are their TWord.
const TNameTable& UnitWords();

// Returns True for a directive after the heading of a routine, such as `stdcall` or `external`.
bool IsDirective(const TUnitToken& token);
// Returns Type, Var or Const for the first word of such a section, and otherwise None.
TWord SectionOf(TWord word);
// Returns True for `procedure`, `constructor` and the like.
bool BeginsRoutine(TWord word);

// Returns the tokens that begin in one of `ranges`, which are in the order of the text and begin and end
// between tokens. Names get their flags in `names`, the table of a unit's names (UnitMarks.h).
std::vector<TUnitToken> ReadUnitTokens(std::string_view text, const qrl::TEncoding& encoding,
                                       const TNameTable& names, const std::vector<TTextRange>& ranges);

}  // namespace mig
