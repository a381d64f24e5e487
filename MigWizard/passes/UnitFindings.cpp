#include "MigWizard/passes/UnitFindings.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "MigWizard/passes/LinePairs.h"
#include "MigWizard/passes/UnitWords.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

using enum TWord;

// The maximum nesting of routines and types; deeper ones are ignored.
constexpr int kMostNesting = 200;

// The context of a type name.
enum class TSpot { Expression, ClassHeading, Parameters, Variable, Field, RecordField, Property, Result };

struct TSpotRow {
  TSpot Spot;
  const char* Text;
  TLevel Level;
};

constexpr TSpotRow kSpots[] = {
    {TSpot::Expression, "an expression", TLevel::Error},
    {TSpot::ClassHeading, "a class heading", TLevel::Error},
    {TSpot::Parameters, "a parameter list", TLevel::Error},
    {TSpot::Variable, "a variable declaration", TLevel::Warning},
    {TSpot::Field, "a component field", TLevel::Note},
    {TSpot::RecordField, "a field of a record", TLevel::Warning},
    {TSpot::Property, "a property declaration", TLevel::Error},
    {TSpot::Result, "the result of a function", TLevel::Error},
};

// Directives after the heading of a routine. Each ends with ";", some after an argument.
constexpr std::string_view kDirectives[] = {
    "abstract", "assembler", "cdecl",  "default",  "deprecated",  "dispid",   "dynamic",  "experimental",
    "export",   "far",       "final",  "inline",   "message",     "name",     "near",     "noreturn",
    "overload", "override",  "pascal", "platform", "reintroduce", "register", "safecall", "static",
    "stdcall",  "stored",    "unsafe", "varargs",  "virtual",     "winapi",
};

bool IsDirective(const TUnitToken& token) {
  return token.Word == Forward || token.Word == External ||
         (token.IsName &&
          std::any_of(std::begin(kDirectives), std::end(kDirectives),
                      [&token](std::string_view word) { return rtl::SameText(word, token.Lexem); }));
}

// Returns the names in a list like ", First, Second".
std::vector<std::string> NamesOf(std::string_view list) {
  std::vector<std::string> names;
  while (!list.empty()) {
    const size_t end = std::min(list.find(','), list.size());
    if (const std::string_view name = rtl::Trim(list.substr(0, end)); !name.empty()) names.emplace_back(name);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

class TUnitReader {
 public:
  TUnitReader(const TUnitFindingInput& input, const TTextPlaces& places)
      : FInput(input),
        FPlaces(places),
        FTokens(ReadUnitTokens(input.Text, input.Encoding)),
        FCode(FTokens.Code) {}

  TUnitFindings Read() {
    ReadDeclarations(0);
    AddComments();
    AddUnits();
    for (TFinding& finding : FResult.Findings) ShowLine(finding.Offset, finding.Before, finding.After);
    const auto comesBefore = [](const TFinding& left, const TFinding& right) {
      return left.Offset < right.Offset;
    };
    std::stable_sort(FResult.Findings.begin(), FResult.Findings.end(), comesBefore);
    return std::move(FResult);
  }

 private:
  struct TRoutine {
    std::string Owner;
    std::vector<TDeclaration> Locals;  // including parameters
  };
  struct TUsedUnit {
    std::string Name;  // with its scope
    size_t Offset;
    bool HasPath;
  };
  struct TWith {
    int Depth;
    bool IsBlock;
  };

  // --- Tokens ---

  bool AtEnd() const { return FAt >= FCode.size(); }
  const TUnitToken& Token(size_t ahead = 0) const {
    static const TUnitToken none;
    return FAt + ahead < FCode.size() ? FCode[FAt + ahead] : none;
  }
  const TUnitToken& Before(size_t back) const {
    static const TUnitToken none;
    return back <= FAt ? FCode[FAt - back] : none;
  }
  TWord Word() const { return Token().Word; }
  bool Is(std::string_view symbol) const { return Token().Lexem == symbol; }

  // Checks the current token and moves to the next one. Visits every token of code once.
  void Next(TSpot spot = TSpot::Expression) {
    if (AtEnd()) return;
    if (Token().IsName) CheckName(spot);
    ++FAt;
  }
  void SkipSymbol(std::string_view symbol) {
    if (Is(symbol)) Next();
  }
  // Moves past the next ";" outside of parentheses. Stops before a word that cannot be part of a declaration.
  void SkipStatement(TSpot spot, int nesting) {
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

  // --- Declarations ---

  // Reads to the end of the unit or, within a routine, past its body.
  void ReadDeclarations(int nesting) {
    enum class TMode { None, Types, Variables, Constants } mode = TMode::None;
    const bool isUnit = nesting == 0;
    while (!AtEnd()) {
      switch (Word()) {
        case Unit:
        case Program:
        case Library:
        case Package:
          Next();
          FResult.Outline.Name = ReadDottedName();
          SkipStatement(TSpot::Expression, nesting);
          break;
        case Interface:
        case Implementation:
          if (!isUnit) return;
          FIsInterface = Word() == Interface;
          mode = TMode::None;
          Next();
          break;
        case Uses:
          ReadUses();
          break;
        case Type:
          mode = TMode::Types;
          Next();
          break;
        case Var:
        case ThreadVar:
          mode = TMode::Variables;
          Next();
          break;
        case Const:
        case ResourceString:
          mode = TMode::Constants;
          Next();
          break;
        case Label:
        case Exports:
          SkipStatement(TSpot::Expression, nesting);
          break;
        case Procedure:
        case Function:
        case Constructor:
        case Destructor:
        case Operator:
          mode = TMode::None;
          ReadRoutine(nesting);
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
          if (!Token().IsName) {
            Next();
          } else if (mode == TMode::Types && (Token(1).Lexem == "=" || Token(1).Lexem == "<")) {
            ReadType(nesting);
          } else if (mode == TMode::Variables) {
            ReadVariables(TSpot::Variable, Declared(), nesting);
          } else if (mode == TMode::Constants) {
            Declare(Declared(), {}, Token());
            SkipStatement(TSpot::Variable, nesting);
          } else {
            Next();
          }
          break;
      }
    }
  }

  std::vector<TDeclaration>& Declared() {
    return FRoutines.empty() ? FResult.Outline.Names : FRoutines.back().Locals;
  }
  void Declare(std::vector<TDeclaration>& list, std::string_view type, const TUnitToken& name) {
    list.push_back({std::string(name.Lexem), std::string(type), FPlaces.At(name.Offset)});
  }

  std::string ReadDottedName() {
    std::string name(Token().Lexem);
    Next();
    while (Is(".")) {
      Next();
      name.append(".").append(Token().Lexem);
      Next();
    }
    return name;
  }

  void ReadUses() {
    Next();
    while (!AtEnd() && !Is(";")) {
      if (Token().IsName) {
        const size_t offset = Token().Offset;
        std::string name(Token().Lexem);
        ++FAt;  // unit names are checked below
        while (Is(".")) {
          name.append(".").append(Token(1).Lexem);
          FAt += 2;
        }
        const bool hasPath = rtl::SameText(Token().Lexem, "in");
        FResult.Outline.UsedUnits.push_back(rtl::LowerCase(name));
        FUsedUnits.push_back({std::move(name), offset, hasPath});
      } else if (Word() == End || Word() == Implementation) {
        return;
      } else {
        ++FAt;
      }
      if (rtl::SameText(Token().Lexem, "in")) ++FAt;
    }
    SkipSymbol(";");
  }

  // Reads `A, B: TType = 1;`.
  void ReadVariables(TSpot spot, std::vector<TDeclaration>& list, int nesting) {
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
  std::string PlainType() const {
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
  void ReadType(int nesting) {
    const TUnitToken name = Token();
    Declare(Declared(), {}, name);
    Next();
    if (Is("<")) {
      while (!AtEnd() && !Is(">") && !Is(";")) Next();
      SkipSymbol(">");
    }
    SkipSymbol("=");
    while (Word() == Packed || Is("[")) {
      if (Is("[")) {
        while (!AtEnd() && !Is("]")) Next();
      }
      Next();
    }
    if (nesting > kMostNesting) return SkipStatement(TSpot::Expression, nesting);
    if (Word() == Class && Token(1).Word != Of) {
      ReadClass(name, nesting + 1);
    } else if (Word() == Record || Word() == Object || Word() == Interface || Word() == DispInterface) {
      ReadRecord(nesting + 1);
    }
    SkipStatement(TSpot::Expression, nesting);
  }

  void ReadClass(const TUnitToken& name, int nesting) {
    Next();
    if (Is(";")) return;  // a forward declaration
    TClassOutline outline;
    outline.Name = name.Lexem;
    for (const std::string_view word : {"abstract", "sealed", "helper"})
      if (rtl::SameText(Token().Lexem, word) && Token(1).Lexem != ":" && Token(1).Lexem != ",") Next();
    if (Is("(")) {
      Next();
      for (bool isFirst = true; !AtEnd() && !Is(")"); Next(TSpot::ClassHeading)) {
        if (Token().IsName && isFirst)
          outline.Ancestor = IsLeftOut(Token().Offset) ? std::string() : std::string(Token().Lexem);
        if (Is(",") || Is("<")) isFirst = false;
      }
      SkipSymbol(")");
    }
    std::vector<size_t> transactions;
    std::swap(transactions, FTransactions);
    if (!Is(";")) ReadMembers(outline, nesting, TSpot::Field);
    std::swap(transactions, FTransactions);
    AddTransactions(transactions, outline);
    FResult.Outline.Classes.push_back(std::move(outline));
  }

  void ReadRecord(int nesting) {
    Next();
    if (Is(";") || nesting > kMostNesting) return;
    TClassOutline outline;
    ReadMembers(outline, nesting, TSpot::RecordField);
  }

  // Reads past the `end` of a class or record.
  void ReadMembers(TClassOutline& outline, int nesting, TSpot spot) {
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
          std::vector<TDeclaration> parameters;
          ReadHeading(parameters, nesting);
          Declare(outline.Members, {}, member);
          break;
        }
        case Property:
          ReadProperty(outline, nesting);
          break;
        case Case:
          while (!AtEnd() && Word() != Of && Word() != End) Next(TSpot::RecordField);
          break;
        default:
          if (Token().IsName && (Token(1).Lexem == ":" || Token(1).Lexem == ",")) {
            ReadVariables(spot, outline.Members, nesting);
          } else if (Token().IsName && Token(1).Lexem == "=") {
            Declare(outline.Members, {}, Token());
            SkipStatement(TSpot::Variable, nesting);
          } else {
            Next();
          }
          break;
      }
    }
  }

  // Reads `property Name[Index: Integer]: TType read FName; default;`.
  void ReadProperty(TClassOutline& outline, int nesting) {
    Next();
    const TUnitToken name = Token();
    Next();
    if (Is("[")) {
      while (!AtEnd() && !Is("]")) Next(TSpot::Parameters);
      SkipSymbol("]");
    }
    std::string type;
    if (Is(":")) {
      Next();
      type = PlainType();
    }
    Declare(outline.Members, type, name);
    SkipStatement(TSpot::Property, nesting);
  }

  // Reads a routine's heading with its directives; the current token is `procedure` or similar. Returns True
  // if a body may follow. Sets `owner` to the class of a method.
  bool ReadHeading(std::vector<TDeclaration>& parameters, int nesting, std::string* owner = nullptr) {
    Next();
    std::string_view last;
    while (Token().IsName || Token().Word != None) {
      if (owner != nullptr) *owner = last;
      last = Token().Lexem;
      Next();
      if (Is("<")) {
        while (!AtEnd() && !Is(">") && !Is(";")) Next();
        SkipSymbol(">");
      }
      if (!Is(".")) break;
      Next();
    }
    if (Is("=")) {  // a method that implements one of an interface
      SkipStatement(TSpot::Expression, nesting);
      return false;
    }
    if (Is("(")) ReadParameters(parameters);
    SkipStatement(TSpot::Result, nesting);
    bool hasBody = true;
    while (IsDirective(Token()) && Token(1).Lexem != ":" && Token(1).Lexem != "," && Token(1).Lexem != "=") {
      if (Word() == Forward || Word() == External) hasBody = false;
      SkipStatement(TSpot::Expression, nesting);
    }
    return hasBody;
  }

  void ReadParameters(std::vector<TDeclaration>& parameters) {
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
          Next(TSpot::Parameters);
        }
        continue;
      }
      Next(TSpot::Parameters);
    } while (!AtEnd() && depth > 0);
    for (const TUnitToken* name : names) Declare(parameters, {}, *name);
  }

  void ReadRoutine(int nesting) {
    TRoutine routine;
    if (!FRoutines.empty()) routine.Owner = FRoutines.back().Owner;
    const TUnitToken name = Token(1);
    std::string owner;
    const bool hasBody = ReadHeading(routine.Locals, nesting, &owner);
    if (owner.empty()) {
      Declare(Declared(), {}, name);
    } else {
      routine.Owner = owner;
    }
    if (!hasBody || (FIsInterface && FRoutines.empty()) || nesting >= kMostNesting) return;
    routine.Locals.push_back({"Result", {}, {}});
    FRoutines.push_back(std::move(routine));
    ReadDeclarations(nesting + 1);
    FRoutines.pop_back();
  }

  // --- Statements ---

  // Reads from `begin` or `asm` past its `end`.
  void ReadBlock() {
    FWiths.clear();
    FHeads = 0;
    int depth = 0;
    do {
      PassStatementToken(depth);
    } while (!AtEnd() && depth > 0);
    FWiths.clear();
  }

  // Reads the statements of `initialization` or `finalization`.
  void ReadStatements() {
    Next();
    FWiths.clear();
    int depth = 0;
    while (!AtEnd() && !(depth == 0 && (Word() == End || Word() == Finalization))) PassStatementToken(depth);
  }

  void PassStatementToken(int& depth) {
    switch (Word()) {
      case Begin:
      case Case:
      case Try:
      case Asm:
        ++depth;
        break;
      case End:
        --depth;
        while (!FWiths.empty() && FWiths.back().Depth >= depth + (FWiths.back().IsBlock ? 0 : 1))
          FWiths.pop_back();
        break;
      case With:
        ++FHeads;
        break;
      case Do:
        if (FHeads == 0) break;
        --FHeads;
        FWiths.push_back({depth, Token(1).Word == Begin});
        break;
      case Procedure:
      case Function:
      case Var:
        AddInnerNames();
        break;
      case Except:
      case Finally:
      case Until:
        EndWiths(depth);
        break;
      default:
        if (Is(";")) EndWiths(depth);
        break;
    }
    Next();
  }

  // Adds the parameters of an anonymous method, or an inline variable. They hide other names; their types are
  // not followed.
  void AddInnerNames() {
    if (FRoutines.empty()) return;
    std::vector<TDeclaration>& locals = FRoutines.back().Locals;
    for (size_t ahead = 1; FAt + ahead < FCode.size(); ++ahead) {
      const TUnitToken& token = Token(ahead);
      if (token.Lexem == ")" || token.Lexem == ":=" || token.Word == Begin) break;
      if (Word() == Var && (token.Lexem == ":" || token.Lexem == ";")) break;
      if (token.IsName) locals.insert(locals.begin(), TDeclaration{std::string(token.Lexem), {}, {}});
    }
  }

  // Ends the `with` statements at this depth that are not blocks.
  void EndWiths(int depth) {
    while (!FWiths.empty() && !FWiths.back().IsBlock && FWiths.back().Depth >= depth) FWiths.pop_back();
  }

  // --- Names ---

  TFinding& Add(TRuleId rule, size_t offset) {
    TFinding& finding = FResult.Findings.emplace_back();
    finding.Rule = rule;
    finding.Level = RuleOf(rule).Level;
    finding.Offset = offset;
    return finding;
  }

  // Returns True if the edit at `offset` is left out by choice.
  bool IsLeftOut(size_t offset) const {
    const std::vector<size_t>& leftOut = FInput.Result.LeftOut;
    return std::binary_search(leftOut.begin(), leftOut.end(), offset);
  }

  // Sets `before` and `after` to the source line at `offset` before and after the run.
  void ShowLine(size_t offset, std::string& before, std::string& after) {
    const std::string_view line = FPlaces.LineAt(offset);
    const auto start = static_cast<size_t>(line.data() - FInput.Text.data());
    const bool isCompleted = FInput.Completed != nullptr;
    const std::vector<TTextEdits::TEdit>& edits =
        isCompleted ? FInput.Completed->Edits.Edits() : FInput.Result.Edits.Edits();
    auto edit = std::lower_bound(
        edits.begin(), edits.end(), start,
        [](const TTextEdits::TEdit& each, size_t position) { return each.Position < position; });
    size_t newStart = start;
    if (isCompleted)
      for (auto each = edits.begin(); each != edit; ++each)
        newStart += each->Replacement.size() - each->Length;
    std::string changed;
    size_t done = 0;
    for (; edit != edits.end() && edit->Position < start + line.size(); ++edit) {
      changed.append(line.substr(done, edit->Position - start - done)).append(edit->Replacement);
      done = std::min(edit->Position - start + edit->Length, line.size());
    }
    before = ShownValue({}, line);
    changed.append(line.substr(done));
    if (isCompleted) changed = Pairs().After(newStart, newStart + changed.size());
    after = ShownValue({}, changed);
  }

  // Returns the lines before and after the completion of the uses clauses.
  const TLinePairs& Pairs() {
    if (!FPairs) {
      FBeforeUses = FInput.Completed->Edits.Apply(FInput.Text);
      FPairs.emplace(FBeforeUses, FInput.Completed->Text, FInput.Encoding);
    }
    return *FPairs;
  }

  void CheckName(TSpot spot) {
    const TUnitToken& token = Token();
    if (const std::string* newClass = FInput.Rules.Classes.Find(token.Lexem)) {
      if (IsLeftOut(token.Offset)) return;
      NoteNewClass(*newClass);
      if (FInput.Rules.GetReplacement(token.Lexem, *newClass).find('\n') != std::string::npos)
        AddTransaction(spot);
      return;
    }
    if (FInput.Rules.Classes.IsNewClass(token.Lexem)) NoteNewClass(token.Lexem);
    if (!FInput.OldNames.MayBe(token.Lexem)) return;
    if (const TOldName* old = FInput.OldNames.Find(TOldNames::Class, token.Lexem)) {
      NoteUse(TNameUse::OldClass, *old, 0);
    } else if (const TOldName* prefix = FInput.OldNames.FindPrefix(token.Lexem)) {
      NoteCall(*prefix);
    } else if (const TOldName* call = FInput.OldNames.Find(TOldNames::Call, token.Lexem)) {
      if (Token(1).Lexem == "(") NoteUse(TNameUse::OldCall, *call, 0);
    } else if (const TOldName* object = FInput.OldNames.Find(TOldNames::Object, token.Lexem)) {
      if (Token(1).Lexem == ".") NoteUse(TNameUse::OldCall, *object, 0);
    } else if (Before(1).Lexem == "." && FInput.OldNames.IsMember(token.Lexem)) {
      NoteUse(TNameUse::OldMember, {}, 0);
    }
  }

  void NoteNewClass(std::string_view newClass) {
    if (!FFirstNewClass.empty()) return;
    FFirstNewClass = newClass;
    FFirstNewClassOffset = Token().Offset;
  }

  // For `Check(DbiInit(nil))` the place is that of Check.
  void NoteCall(const TOldName& prefix) {
    const bool isChecked = Before(1).Lexem == "(" && rtl::SameText(Before(2).Lexem, "Check");
    NoteUse(TNameUse::OldCall, prefix, isChecked && Before(3).Lexem != "." ? 2 : 0);
  }

  // `back` is the number of tokens between the beginning of the finding and the current token.
  void NoteUse(TNameUse::TKind kind, const TOldName& old, size_t back) {
    TNameUse use;
    use.Kind = kind;
    use.Name = Token().Lexem;
    size_t first = FAt;
    while (first >= 2 && FCode[first - 1].Lexem == "." && FCode[first - 2].IsName) {
      first -= 2;
      use.Path.insert(use.Path.begin(), std::string(FCode[first].Lexem));
    }
    // After a call, an index or a dereference, the type is not known.
    if (first > 0 && (FCode[first - 1].Lexem == "." || FCode[first - 1].Word == Inherited)) return;
    const bool isQualified = !use.Path.empty();
    if (kind == TNameUse::OldMember) {
      if (!isQualified || !FWiths.empty()) return;
    } else {
      if (isQualified && !IsUnitOf(old, use.Path)) return;
      if (!isQualified && (!FWiths.empty() || !UsesUnitOf(old))) return;
      if (!isQualified && IsDeclaredHere(use.Name)) return;
    }
    use.Shown = std::string(FInput.Text.substr(
        FCode[FAt - back].Offset, Token().Offset + Token().Lexem.size() - FCode[FAt - back].Offset));
    if (!FRoutines.empty()) use.Owner = FRoutines.back().Owner;
    FindLocal(use);
    if (kind != TNameUse::OldMember && !isQualified && use.IsLocal) return;
    use.Place = FPlaces.At(kind == TNameUse::OldMember ? Token().Offset : FCode[FAt - back].Offset);
    ShowLine(Token().Offset, use.Before, use.After);
    FResult.Outline.Uses.push_back(std::move(use));
  }

  // Returns True if the current tokens declare the name: `Session: TMySession`, `Session = class`.
  bool IsDeclaredHere(std::string_view) const {
    const std::string_view after = Token(1).Lexem;
    return (after == ":" || after == "=" || after == ",") && FRoutines.empty();
  }

  void FindLocal(TNameUse& use) const {
    const std::string_view first =
        use.Path.empty() ? std::string_view(use.Name) : std::string_view(use.Path[0]);
    for (auto routine = FRoutines.rbegin(); routine != FRoutines.rend(); ++routine) {
      for (const TDeclaration& local : routine->Locals) {
        if (!rtl::SameText(local.Name, first)) continue;
        use.IsLocal = true;
        use.Local = local;
        return;
      }
    }
  }

  bool IsUnitOf(const TOldName& old, const std::vector<std::string>& path) const {
    std::string name;
    for (const std::string& part : path) name.append(name.empty() ? "" : ".").append(part);
    const TOldName* unit = FInput.OldNames.FindUnit(name);
    return unit != nullptr && IsOneOf(unit->Name, old.Unit) && UsesUnitOf(old);
  }
  bool UsesUnitOf(const TOldName& old) const {
    return std::any_of(FUsedUnits.begin(), FUsedUnits.end(), [&](const TUsedUnit& used) {
      const TOldName* unit = used.HasPath ? nullptr : FInput.OldNames.FindUnit(used.Name);
      return unit != nullptr && IsOneOf(unit->Name, old.Unit);
    });
  }
  static bool IsOneOf(std::string_view unit, std::string_view list) {
    const std::vector<std::string> names = NamesOf(list);
    return std::any_of(names.begin(), names.end(),
                       [unit](const std::string& name) { return rtl::SameText(name, unit); });
  }

  // --- Transaction lines ---

  void AddTransaction(TSpot spot) {
    const bool isName = spot == TSpot::Field || spot == TSpot::RecordField || spot == TSpot::Variable;
    if (isName && Before(1).Lexem != ":" && Before(1).Lexem != ".") spot = TSpot::Expression;
    const TSpotRow& row = *std::find_if(std::begin(kSpots), std::end(kSpots),
                                        [spot](const TSpotRow& each) { return each.Spot == spot; });
    const bool isCall =
        spot == TSpot::Expression && Token(1).Lexem == "." && rtl::SameText(Token(2).Lexem, "Create");
    if (spot == TSpot::Field) FTransactions.push_back(FResult.Findings.size());
    TFinding& finding = Add(TRuleId::TransactionLine, Token().Offset);
    finding.Level = row.Level;
    finding.OldClass = Token().Lexem;
    finding.NewClass = *FInput.Rules.Classes.Find(Token().Lexem);
    finding.Subject = finding.Detail = isCall ? "a constructor call" : row.Text;
  }

  // A class cannot have two members with the same name: only the first field is correct, and none is if the
  // class already has a member with that name.
  void AddTransactions(const std::vector<size_t>& fields, const TClassOutline& outline) {
    bool isTaken =
        std::any_of(outline.Members.begin(), outline.Members.end(),
                    [](const TDeclaration& member) { return rtl::SameText(member.Name, "Transaction"); });
    for (const size_t index : fields) {
      TFinding& finding = FResult.Findings[index];
      if (std::exchange(isTaken, true)) {
        finding.Level = TLevel::Error;
        finding.Subject = "once more in the same class";
        finding.Detail = "a class that has a member of that name already";
      }
    }
  }

  // --- Comments and units ---

  void AddComments() {
    const auto& edits = FInput.Result.Edits.Edits();
    auto edit = edits.begin();
    for (const std::string_view comment : FTokens.Comments) {
      const auto start = static_cast<size_t>(comment.data() - FInput.Text.data());
      while (edit != edits.end() && edit->Position < start) ++edit;
      for (; edit != edits.end() && edit->Position < start + comment.size(); ++edit) {
        TFinding& finding = Add(TRuleId::ChangedText, edit->Position);
        finding.Subject = finding.Value = finding.OldClass =
            std::string(FInput.Text.substr(edit->Position, edit->Length));
        finding.NewClass = edit->Replacement;
        if (comment.starts_with("{$") || comment.starts_with("(*$")) finding.Level = TLevel::Warning;
      }
    }
  }

  void AddUnits() {
    const std::vector<std::string> newUnits = NamesOf(FInput.Rules.NewUnits);
    std::map<std::string, int> counts;  // of the new units after the run
    size_t firstDoubled = 0;
    bool isDoubled = false, hasNew = false;
    for (const TUsedUnit& used : FUsedUnits) {
      const size_t lastPart = used.Name.rfind('.') + 1;
      const bool isReplaced = rtl::SameText(used.Name.substr(lastPart), FInput.Rules.OldUnit) &&
                              !IsLeftOut(used.Offset + lastPart);
      for (const std::string& name : newUnits) {
        const bool isNew = rtl::SameText(used.Name, name);
        if (!isNew && !isReplaced) continue;
        if (isNew && !std::exchange(hasNew, true) && !FInput.Result.Edits.Empty())
          Add(TRuleId::SecondConversion, used.Offset).Subject = name;
        if (++counts[name] == 2 && !std::exchange(isDoubled, true)) firstDoubled = used.Offset;
      }
      const TOldName* old = used.HasPath ? nullptr : FInput.OldNames.FindUnit(used.Name);
      if (old == nullptr) continue;
      TFinding& finding = Add(TRuleId::OldUnit, used.Offset);
      finding.Subject = used.Name;
      finding.Advice = old->Advice;
    }
    if (isDoubled) {
      TFinding& finding = Add(TRuleId::DoubledUnits, firstDoubled);
      int most = 0;
      for (const auto& [name, count] : counts) {
        most = std::max(most, count);
        if (count > 1) finding.Subject.append(finding.Subject.empty() ? "" : ", ").append(name);
      }
      finding.Value = std::to_string(most);
    }
    if (!FFirstNewClass.empty() && counts.empty()) {
      TFinding& finding = Add(TRuleId::NoNewUnits, FFirstNewClassOffset);
      finding.Subject = finding.NewClass = FFirstNewClass;
      for (const std::string& name : newUnits)
        finding.Value.append(finding.Value.empty() ? "" : ", ").append(name);
    }
  }

  const TUnitFindingInput& FInput;
  const TTextPlaces& FPlaces;
  const TUnitTokens FTokens;
  const std::vector<TUnitToken>& FCode;
  size_t FAt = 0;  // index of the current token
  TUnitFindings FResult;
  bool FIsInterface = false;
  std::vector<TRoutine> FRoutines;  // open ones, the outermost first
  std::vector<TUsedUnit> FUsedUnits;
  std::vector<TWith> FWiths;
  int FHeads = 0;                     // `with` statements whose `do` is not read yet
  std::vector<size_t> FTransactions;  // findings for fields of the current class
  std::string FBeforeUses;            // what FPairs views
  std::optional<TLinePairs> FPairs;
  std::string FFirstNewClass;
  size_t FFirstNewClassOffset = 0;
};

}  // namespace

TUnitFindings FindInUnit(const TUnitFindingInput& input, const TTextPlaces& places) {
  return TUnitReader(input, places).Read();
}

}  // namespace mig
