#include "MigWizard/passes/UnitReader.h"

#include <utility>

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

using enum TWord;

// The maximum nesting of routines and types; deeper ones are ignored.
constexpr int kMostNesting = 200;

}  // namespace

// Moves past the next ";" outside of parentheses. Stops before a word that cannot be part of a declaration.
void TUnitReader::SkipStatement(TNameSpot spot, int nesting) {
  int parentheses = 0;
  while (!AtEnd()) {
    if (Is("(") || Is("[")) ++parentheses;
    if (Is(")") || Is("]")) --parentheses;
    if (Is(";") && parentheses <= 0) return Next();
    if (Word() == End || Word() == Begin || Word() == Implementation) return;
    if (Word() == Record) {
      ReadRecord(nesting + 1);
    } else {
      Next(spot);
    }
  }
}

// Reads to the end of the unit or, within a routine, past its body.
void TUnitReader::ReadDeclarations(int nesting) {
  const bool isUnit = nesting == 0;
  TWord section = None;
  while (!AtEnd()) {
    switch (Word()) {
      case Unit:
      case Program:
      case Library:
      case Package:
        Next();
        FOutline.Name = ReadDottedName();
        SkipStatement(TNameSpot::Expression, nesting);
        break;
      case Interface:
      case Implementation:
        if (!isUnit) return;
        FIsInterface = Word() == Interface;
        if (!FIsInterface) FOutline.InterfaceNames = FOutline.Names.size();
        section = None;
        Next();
        break;
      case Uses:
        ReadUses();
        break;
      case Label:
      case Exports:
        SkipStatement(TNameSpot::Expression, nesting);
        break;
      case Begin:
      case Asm:
        ReadBlock();
        SkipSymbol(";");
        if (!isUnit) return;
        break;
      case Initialization:
      case Finalization:
        if (!isUnit) return;
        ReadStatements();
        break;
      default:
        if (BeginsRoutine(Word())) {
          section = None;
          ReadRoutine(nesting);
        } else if (const TWord begun = SectionOf(Word()); begun != None) {
          section = begun;
          Next();
        } else {
          ReadDeclaration(section, nesting);
        }
        break;
    }
  }
}

// Reads one declaration of `section`, or moves past a token that begins none.
void TUnitReader::ReadDeclaration(TWord section, int nesting) {
  if (!Token().IsName) {
    Next();
  } else if (section == Type && (Token(1).Lexem == "=" || Token(1).Lexem == "<")) {
    ReadType(nesting);
  } else if (section == Var) {
    ReadVariables(TNameSpot::Variable, Declared(), nesting);
  } else if (section == Const) {
    Declare(Declared(), {}, Token());
    SkipStatement(TNameSpot::Variable, nesting);
  } else {
    Next();
  }
}

std::vector<TDeclaration>& TUnitReader::Declared() {
  return FRoutines.empty() ? FOutline.Names : FRoutines.back().Locals;
}

void TUnitReader::Declare(std::vector<TDeclaration>& list, std::string_view type, const TUnitToken& name) {
  list.push_back({std::string(name.Lexem), std::string(type),
                  FPlaces != nullptr ? FPlaces->At(name.Offset) : TTextPlace()});
}

void TUnitReader::ReadUses() {
  constexpr size_t kUsual = 16;  // units in a clause
  FUsedUnits.reserve(FUsedUnits.size() + kUsual);
  Next();
  while (!AtEnd() && !Is(";")) {
    if (Token().IsName) {
      const size_t offset = Token().Offset;
      std::string name(Token().Lexem);
      Skip();  // unit names are checked below
      while (Is(".")) {
        name.append(".").append(Token(1).Lexem);
        Skip(2);
      }
      const bool hasPath = rtl::SameText(Token().Lexem, "in");
      FUsedUnits.push_back({std::move(name), offset, hasPath});
    } else if (Word() == End || Word() == Implementation) {
      return;
    } else {
      Skip();
    }
    if (rtl::SameText(Token().Lexem, "in")) Skip();
  }
  SkipSymbol(";");
}

// Reads `A, B: TType = 1;`.
void TUnitReader::ReadVariables(TNameSpot spot, std::vector<TDeclaration>& list, int nesting) {
  std::vector<const TUnitToken*> names;
  while (Token().IsName) {
    names.push_back(&Token());
    Next();
    if (!Is(",")) break;
    Next();
  }
  if (!Is(":")) return SkipStatement(spot, nesting);
  Next();
  const std::string type = PlainType();
  for (const TUnitToken* name : names) Declare(list, type, *name);
  SkipStatement(spot, nesting);
}

// Returns the last part of the plain type name at the current token, or an empty string if there is none.
std::string TUnitReader::PlainType() const {
  size_t ahead = 0;
  if (!Token().IsName) return {};
  while (Token(ahead + 1).Lexem == "." && Token(ahead + 2).IsName) ahead += 2;
  const std::string_view after = Token(ahead + 1).Lexem;
  const bool isPlain = after == ";" || after == "=" || after == ")" || Token(ahead + 1).Word == End ||
                       rtl::SameText(after, "read") || rtl::SameText(after, "write") ||
                       rtl::SameText(after, "index") || rtl::SameText(after, "absolute");
  return isPlain && !IsLeftOut(Token(ahead).Offset) ? std::string(Token(ahead).Lexem) : std::string();
}

// Reads `TName = ...;`.
void TUnitReader::ReadType(int nesting) {
  const TUnitToken name = Token();
  Declare(Declared(), {}, name);
  Next();
  SkipTypeParameters();
  SkipSymbol("=");
  while (Word() == Packed || Is("[")) {
    if (Is("[")) {
      while (!AtEnd() && !Is("]")) Next();
    }
    Next();
  }
  if (nesting > kMostNesting) return SkipStatement(TNameSpot::Expression, nesting);
  if (Word() == Class && Token(1).Word != Of) {
    ReadClass(name, nesting + 1);
  } else if (Word() == Record || Word() == Object || Word() == Interface || Word() == DispInterface) {
    ReadRecord(nesting + 1);
  }
  SkipStatement(TNameSpot::Expression, nesting);
}

void TUnitReader::ReadClass(const TUnitToken& name, int nesting) {
  Next();
  if (Is(";")) return;  // a forward declaration
  TClassOutline outline;
  outline.Name = name.Lexem;
  for (const std::string_view word : {"abstract", "sealed", "helper"})
    if (rtl::SameText(Token().Lexem, word) && Token(1).Lexem != ":" && Token(1).Lexem != ",") Next();
  if (Is("(")) {
    Next();
    for (bool isFirst = true; !AtEnd() && !Is(")"); Next(TNameSpot::ClassHeading)) {
      if (Token().IsName && isFirst)
        outline.Ancestor = IsLeftOut(Token().Offset) ? std::string() : std::string(Token().Lexem);
      if (Is(",") || Is("<")) isFirst = false;
    }
    SkipSymbol(")");
  }
  BeforeMembers();
  if (!Is(";")) ReadMembers(outline, nesting, TNameSpot::Field);
  AfterMembers(outline);
  FOutline.Classes.push_back(std::move(outline));
}

void TUnitReader::ReadRecord(int nesting) {
  Next();
  if (Is(";") || nesting > kMostNesting) return;
  TClassOutline outline;
  ReadMembers(outline, nesting, TNameSpot::RecordField);
}

// Reads past the `end` of a class or record.
void TUnitReader::ReadMembers(TClassOutline& outline, int nesting, TNameSpot spot) {
  while (!AtEnd()) {
    switch (Word()) {
      case End:
        return Next();
      case Implementation:
        return;
      case Private:
      case Protected:
      case Public:
      case Published:
      case Class:
      case Var:
      case ThreadVar:
      case Const:
        Next();
        break;
      case Type:
        Next();
        while (Token().IsName && Token(1).Lexem == "=" && nesting <= kMostNesting) ReadType(nesting);
        break;
      case Procedure:
      case Function:
      case Constructor:
      case Destructor:
      case Operator: {
        const TUnitToken member = Token(1);
        ReadHeading(nesting);
        Declare(outline.Members, {}, member);
        break;
      }
      case Property:
        ReadProperty(outline, nesting);
        break;
      case Case:
        while (!AtEnd() && Word() != Of && Word() != End) Next(TNameSpot::RecordField);
        break;
      default:
        if (Token().IsName && (Token(1).Lexem == ":" || Token(1).Lexem == ",")) {
          ReadVariables(spot, outline.Members, nesting);
        } else if (Token().IsName && Token(1).Lexem == "=") {
          Declare(outline.Members, {}, Token());
          SkipStatement(TNameSpot::Variable, nesting);
        } else {
          Next();
        }
        break;
    }
  }
}

// Reads `property Name[Index: Integer]: TType read FName; default;`.
void TUnitReader::ReadProperty(TClassOutline& outline, int nesting) {
  Next();
  const TUnitToken name = Token();
  Next();
  if (Is("[")) {
    while (!AtEnd() && !Is("]")) Next(TNameSpot::Parameters);
    SkipSymbol("]");
  }
  std::string type;
  if (Is(":")) {
    Next();
    type = PlainType();
  }
  Declare(outline.Members, type, name);
  SkipStatement(TNameSpot::Property, nesting);
}

// Reads a routine's heading with its directives; the current token is `procedure` or similar.
TUnitReader::THeading TUnitReader::ReadHeading(int nesting) {
  THeading heading;
  Next();
  std::string_view last;
  while (Token().IsName || Token().Word != None) {
    heading.Owner = last;
    last = Token().Lexem;
    Next();
    SkipTypeParameters();
    if (!Is(".")) break;
    Next();
  }
  if (Is("=")) {  // a method that implements one of an interface
    SkipStatement(TNameSpot::Expression, nesting);
    heading.HasBody = false;
    return heading;
  }
  if (Is("(")) ReadParameters(heading.Parameters);
  if (Is(":")) {
    Next();
    heading.Result = PlainType();
  }
  SkipStatement(TNameSpot::Result, nesting);
  while (IsDirective(Token()) && Token(1).Lexem != ":" && Token(1).Lexem != "," && Token(1).Lexem != "=") {
    if (Word() == Forward || Word() == External) heading.HasBody = false;
    SkipStatement(TNameSpot::Expression, nesting);
  }
  return heading;
}

void TUnitReader::ReadParameters(std::vector<TDeclaration>& parameters) {
  std::vector<const TUnitToken*> names;
  int depth = 0;
  do {
    if (Is("(")) ++depth;
    if (Is(")")) --depth;
    if (depth == 1 && Token().IsName && !Is(":")) names.push_back(&Token());
    if (depth == 1 && Is(":")) {
      Next();
      const std::string type = PlainType();
      for (const TUnitToken* name : names) Declare(parameters, type, *name);
      names.clear();
      while (!AtEnd() && !Is(";") && !(Is(")") && depth == 1)) {
        if (Is("(")) ++depth;
        if (Is(")")) --depth;
        Next(TNameSpot::Parameters);
      }
      continue;
    }
    Next(TNameSpot::Parameters);
  } while (!AtEnd() && depth > 0);
  for (const TUnitToken* name : names) Declare(parameters, {}, *name);
}

void TUnitReader::ReadRoutine(int nesting) {
  TRoutine routine;
  if (!FRoutines.empty()) routine.Owner = FRoutines.back().Owner;
  const bool hasResult = Word() == Function || Word() == Operator;
  TUnitToken name = Token(1);
  THeading heading = ReadHeading(nesting);
  if (heading.Owner.empty()) Declare(Declared(), {}, name);
  if (!heading.Owner.empty()) routine.Owner = heading.Owner;
  if (!heading.HasBody || (FIsInterface && FRoutines.empty()) || nesting >= kMostNesting) return;
  routine.Locals = std::move(heading.Parameters);
  if (hasResult) {
    name.Lexem = "Result";
    Declare(routine.Locals, heading.Result, name);
  }
  FRoutines.push_back(std::move(routine));
  ReadDeclarations(nesting + 1);
  FRoutines.pop_back();
}

// Reads from `begin` or `asm` past its `end`.
void TUnitReader::ReadBlock() {
  FWiths.Clear();
  do {
    PassStatementToken();
  } while (!AtEnd() && FWiths.Depth() > 0);
  FWiths.Clear();
}

// Reads the statements of `initialization` or `finalization`.
void TUnitReader::ReadStatements() {
  Next();
  FWiths.Clear();
  while (!AtEnd() && !(FWiths.Depth() == 0 && (Word() == End || Word() == Finalization)))
    PassStatementToken();
}

void TUnitReader::PassStatementToken() {
  if (Word() == Procedure || Word() == Function || Word() == Var) AddInnerNames();
  FWiths.Pass(Token(), Token(1));
  Next();
}

// Adds the parameters of an anonymous method, or an inline variable. They hide other names; their types are
// not followed.
void TUnitReader::AddInnerNames() {
  if (FRoutines.empty()) return;
  std::vector<TDeclaration>& locals = FRoutines.back().Locals;
  for (size_t ahead = 1; !AtEnd(ahead); ++ahead) {
    const TUnitToken& token = Token(ahead);
    if (token.Lexem == ")" || token.Lexem == ":=" || token.Word == Begin) break;
    if (Word() == Var && (token.Lexem == ":" || token.Lexem == ";")) break;
    if (token.IsName) locals.insert(locals.begin(), TDeclaration{std::string(token.Lexem), {}, {}});
  }
}

}  // namespace mig
