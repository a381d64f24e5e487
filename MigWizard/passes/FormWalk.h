// A walk over a form's text that tells its objects and their properties, without converting anything. It needs no
// well-formed text: what it cannot read, it steps over.
//
//   class TPrinter : public TFormWalk { void OnObject(const TWalkedObject& object) override { ... } };
//   TPrinter(text, encoding).Run();
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/engine/PasParser.h"
#include "qrl/Encoding.h"

namespace mig {

// Views are of the walked text, offsets bytes from 0 in it.
struct TWalkedObject {
  std::string_view Keyword;  // object, inherited or inline, as spelled
  std::string_view Name;     // empty for an object without one
  std::string_view ClassName;
  size_t Offset = 0;      // of the keyword
  bool IsObject = false;  // the keyword is `object`
};

struct TWalkedProperty {
  std::string_view Name;   // with its dots
  std::string_view Value;  // as spelled, from its first to its last character
  size_t Offset = 0;       // of the name
};

class TFormWalk {
 public:
  TFormWalk(std::string_view text, const qrl::TEncoding& encoding) : FText(text), FScanner(text, encoding) {}
  virtual ~TFormWalk() = default;
  TFormWalk(const TFormWalk&) = delete;
  TFormWalk& operator=(const TFormWalk&) = delete;

  void Run();

 protected:
  // Called with the object as the innermost of Objects().
  virtual void OnObject(const TWalkedObject& object) = 0;
  // Called for each property of the innermost object.
  virtual void OnProperty(const TWalkedProperty& property) = 0;
  // Called while the object still is the innermost one; at the end of the text for objects that it does not end.
  virtual void OnObjectEnd() = 0;

  // The open objects, the outermost first.
  const std::vector<TWalkedObject>& Objects() const { return FObjects; }
  // Their names with dots between them: "DM.QMembers".
  std::string Path() const;
  std::string_view Text() const { return FText; }

 private:
  bool Next();
  void ReadObject(bool isObject);
  void ReadProperty();
  void ReadValue();
  void SkipTo(char end, char nested);
  bool NextIsSymbol(char symbol);

  const std::string_view FText;
  TPasParser FScanner;
  int FCode = 0;  // of the present token; white space is passed over
  std::string_view FLexem;
  bool FIsPending = false;  // the present token is to be read again
  size_t FEnd = 0;          // the end of the last token that was used
  std::vector<TWalkedObject> FObjects;
};

}  // namespace mig
