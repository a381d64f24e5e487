#include "MigWizard/passes/FormWalk.h"

#include <array>

namespace mig {
namespace {

// The bytes of words and numbers in a form, and the dots between them.
constexpr std::array<bool, 256> kPlain = [] {
  std::array<bool, 256> plain{};
  for (unsigned c = 0; c < 128; ++c)
    plain[c] =
        (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '.';
  return plain;
}();

// The bytes with which tokens begin that SkipTo must not divide or has to see.
constexpr std::array<bool, 256> kStops = [] {
  std::array<bool, 256> stops{};
  for (const char c : {'\'', '{', '(', '/', ')', ']', '<', '>'}) stops[static_cast<uint8_t>(c)] = true;
  for (unsigned c = 128; c < 256; ++c) stops[c] = true;
  return stops;
}();

size_t SkipPlain(std::string_view text, size_t at) {
  while (at < text.size() && kPlain[static_cast<uint8_t>(text[at])]) ++at;
  return at;
}

size_t SkipBlanks(std::string_view text, size_t at) {
  while (at < text.size() && text[at] != 0 && static_cast<uint8_t>(text[at]) <= ' ') ++at;
  return at;
}

bool IsLineEnd(std::string_view text, size_t at) {
  return at < text.size() && (text[at] == '\r' || text[at] == '\n');
}

// Returns the offset after a value that has no meaning beyond its line: a word, a number, a set, or a string
// in one piece. Returns npos for any other value.
size_t SkipPlainValue(std::string_view text, size_t at) {
  if (at >= text.size()) return std::string_view::npos;
  if (text[at] == '\'') {
    while (++at < text.size() && text[at] != '\'' && !IsLineEnd(text, at)) continue;
    return at < text.size() && text[at] == '\'' ? at + 1 : std::string_view::npos;
  }
  if (text[at] == '[') {
    do at = SkipPlain(text, at + 1);
    while (at < text.size() && (text[at] == ',' || text[at] == ' '));
    return at < text.size() && text[at] == ']' ? at + 1 : std::string_view::npos;
  }
  if (text[at] == '-') ++at;
  const size_t end = SkipPlain(text, at);
  return end == at ? std::string_view::npos : end;
}

}  // namespace

size_t TFormWalk::Run(size_t start) {
  FScanner.SetPosition(start);
  FIsPending = false;
  for (bool isIn = false; !isIn || !FObjects.empty();) {
    if (!Next()) {
      FEnd = FText.size();
      break;
    }
    if (FCode == kObject || FCode == kInherited || FCode == kInline) {
      isIn = ReadObject(FCode == kObject) || isIn;
    } else if (FObjects.empty()) {
      continue;
    } else if (FCode == kEnd) {
      EndObject();
    } else if (FCode == qrl::kIdentifier || FCode == kItem || FCode == kUses) {
      if (WantsProperties() || !SkipPlainLine()) ReadProperty();
    }
  }
  while (!FObjects.empty()) EndObject();
  return FEnd;
}

void TFormWalk::EndObject() {
  OnObjectEnd();
  FObjects.pop_back();
}

// Moves to the next token that is not white space. Returns false at the end of the text.
bool TFormWalk::Next() {
  if (FIsPending) {
    FIsPending = false;
  } else {
    do FCode = FScanner.GetNext(FLexem);
    while (FCode == qrl::kWhiteSpace || FCode == qrl::kNul);
  }
  if (FCode != qrl::kEndOfText) FEnd = FScanner.PrevPos() + FLexem.size();
  return FCode != qrl::kEndOfText;
}

bool TFormWalk::ReadObject(bool isObject) {
  TObjectHeader object;
  if (!ReadObjectHeader(FText, FEncoding, FLexem, object)) return false;
  object.IsObject = isObject;
  FScanner.SetPosition(object.End);
  FEnd = object.End;
  OpenObject(object);
  return true;
}

void TFormWalk::OpenObject(const TObjectHeader& object) {
  FObjects.push_back(object);
  FSkippedTo = 0;
  OnObject(object);
  if (FSkippedTo == 0) return;
  FScanner.SetPosition(FSkippedTo);
  FEnd = FSkippedTo;
  FIsPending = false;
  EndObject();
}

// Moves past the property at the current token if it takes a line of its own, and the next line begins with a
// word. Returns False, and moves nowhere, for any other property.
bool TFormWalk::SkipPlainLine() {
  size_t at = SkipPlain(FText, FScanner.PrevPos());
  while (at < FText.size() && FText[at] == ' ') ++at;
  if (at >= FText.size() || FText[at] != '=') return false;
  ++at;
  while (at < FText.size() && FText[at] == ' ') ++at;
  const size_t end = SkipPlainValue(FText, at);
  if (!IsLineEnd(FText, end)) return false;
  const size_t next = SkipBlanks(FText, end);
  if (next < FText.size() && (FText[next] == '.' || !kPlain[static_cast<uint8_t>(FText[next])])) return false;
  FScanner.SetPosition(next);
  return true;
}

void TFormWalk::ReadProperty() {
  TWalkedProperty property;
  property.Offset = FScanner.PrevPos();
  size_t end = FEnd;
  while (Next() && FLexem == "." && Next()) end = FEnd;
  property.Name = FText.substr(property.Offset, end - property.Offset);
  FIsPending = true;
  if (FLexem != "=") return;
  FIsPending = false;
  if (!Next()) return;
  const size_t start = FScanner.PrevPos();
  ReadValue();
  property.Value = FText.substr(start, FEnd - start);
  OnProperty(property);
}

bool TFormWalk::NextIsSymbol(char symbol) {
  const size_t end = FEnd;
  if (Next() && FLexem.size() == 1 && FLexem[0] == symbol && FCode > 0) return true;
  FIsPending = true;
  FEnd = end;
  return false;
}

// Reads the value that begins with the current token.
void TFormWalk::ReadValue() {
  if (FLexem == "(") return SkipTo(')', 0);
  if (FLexem == "[") return SkipTo(']', 0);
  if (FLexem == "<") return SkipTo('>', '<');
  if (FCode == qrl::kComment) return;
  if (FCode == qrl::kString || FLexem == "#") {
    for (bool isCode = FLexem == "#";;) {
      const size_t end = FEnd;
      if (!Next()) return;
      const bool continues =
          FCode == qrl::kString || FLexem == "#" || FLexem == "+" || (isCode && FCode == qrl::kNumber);
      if (!continues) {
        FIsPending = true;
        FEnd = end;
        return;
      }
      isCode = FLexem == "#";
    }
  }
  if ((FLexem == "-" || FLexem == "+") && !Next()) return;
  for (;;) {
    const bool hasExponent = FCode == qrl::kNumber && (FLexem.back() == 'e' || FLexem.back() == 'E');
    if (hasExponent && (NextIsSymbol('+') || NextIsSymbol('-'))) {
      (void)Next();
      continue;
    }
    if (!NextIsSymbol('.')) return;
    if (!Next()) return;
  }
}

// Moves to the symbol `end` that closes the current one.
void TFormWalk::SkipTo(char end, char nested) {
  for (int depth = 1; depth > 0;) {
    size_t at = FEnd;
    while (at < FText.size() && !kStops[static_cast<uint8_t>(FText[at])]) ++at;
    FScanner.SetPosition(at);
    if (!Next()) return;
    if (FCode <= 0 || FLexem.size() != 1) continue;
    if (FLexem[0] == end) --depth;
    if (nested != 0 && FLexem[0] == nested) ++depth;
  }
}

}  // namespace mig
