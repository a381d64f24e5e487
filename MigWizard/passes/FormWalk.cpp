#include "MigWizard/passes/FormWalk.h"

namespace mig {

void TFormWalk::Run() {
  while (Next()) {
    switch (FCode) {
      case kObject:
      case kInherited:
      case kInline:
        ReadObject(FCode == kObject);
        break;
      case kEnd:
        if (FObjects.empty()) break;
        OnObjectEnd();
        FObjects.pop_back();
        break;
      case qrl::kIdentifier:
      case kItem:
      case kUses:
        if (!FObjects.empty()) ReadProperty();
        break;
      default:
        break;
    }
  }
  for (; !FObjects.empty(); FObjects.pop_back()) OnObjectEnd();
}

std::string TFormWalk::Path() const {
  std::string path;
  for (const TWalkedObject& object : FObjects) {
    if (!path.empty()) path += '.';
    path.append(object.Name.empty() ? std::string_view("(no name)") : object.Name);
  }
  return path;
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

// Reads `object Name: Class` or `object Class`.
void TFormWalk::ReadObject(bool isObject) {
  TWalkedObject object{FLexem, {}, {}, FScanner.PrevPos(), isObject};
  if (!Next()) return;
  FIsPending = true;
  if (FCode != qrl::kIdentifier) return;  // the word has another meaning here
  FIsPending = false;
  object.ClassName = FLexem;
  if (Next() && FLexem == ":") {
    object.Name = object.ClassName;
    object.ClassName = {};
    if (Next() && FCode == qrl::kIdentifier) {
      object.ClassName = FLexem;
    } else {
      FIsPending = true;
    }
  } else {
    FIsPending = true;
  }
  FObjects.push_back(object);
  OnObject(object);
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
  for (int depth = 1; depth > 0 && Next();) {
    if (FCode <= 0 || FLexem.size() != 1) continue;
    if (FLexem[0] == end) --depth;
    if (nested != 0 && FLexem[0] == nested) ++depth;
  }
}

}  // namespace mig
