// A cursor over the tokens of a unit, which shows each name that it passes to a derived class.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/UnitWords.h"

namespace mig {

// The context of a name.
enum class TNameSpot { Expression, ClassHeading, Parameters, Variable, Field, RecordField, Property, Result };

class TTokenCursor {
 public:
  virtual ~TTokenCursor() = default;
  TTokenCursor(const TTokenCursor&) = delete;
  TTokenCursor& operator=(const TTokenCursor&) = delete;

 protected:
  // `code` must outlive the object. The cursor is at its first token.
  explicit TTokenCursor(const std::vector<TUnitToken>& code) : FCode(code) {}

  // Called by Next for a name, which is the current token.
  virtual void OnName(TNameSpot spot) = 0;

  // Returns the token `ahead` tokens after the current one, or `back` tokens before it; an empty one outside
  // of the unit.
  const TUnitToken& Token(size_t ahead = 0) const { return AtEnd(ahead) ? NoToken() : FCode[FAt + ahead]; }
  const TUnitToken& Before(size_t back) const { return back <= FAt ? FCode[FAt - back] : NoToken(); }
  // Returns True if there is no token `ahead` tokens after the current one.
  bool AtEnd(size_t ahead = 0) const { return FAt + ahead >= FCode.size(); }
  TWord Word() const { return Token().Word; }
  bool Is(std::string_view symbol) const { return Token().Lexem == symbol; }

  // Moves to the next token, and calls OnName before that if the current one is a name.
  void Next(TNameSpot spot = TNameSpot::Expression) {
    if (AtEnd()) return;
    if (Token().IsName) OnName(spot);
    ++FAt;
  }
  // Moves on without calling OnName.
  void Skip(size_t tokens = 1) { FAt += tokens; }
  // Moves past the symbol if it is the current token.
  void SkipSymbol(std::string_view symbol) {
    if (Is(symbol)) Next();
  }
  // Moves past `<T, U>`, if it is here.
  void SkipTypeParameters() {
    if (!Is("<")) return;
    while (!AtEnd() && !Is(">") && !Is(";")) Next();
    SkipSymbol(">");
  }
  // Moves past a name like `Vcl.Forms`, and returns it.
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

 private:
  static const TUnitToken& NoToken() {
    static const TUnitToken none;
    return none;
  }

  const std::vector<TUnitToken>& FCode;
  size_t FAt = 0;  // index of the current token
};

}  // namespace mig
