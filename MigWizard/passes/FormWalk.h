// Walks over a form's text and reports its objects and their properties, without converting anything. The
// text need not be well-formed: the walk skips what it cannot parse. For that reason it uses the tokens of the
// passes, and neither rtl::TFormTextScanner, which raises, nor the grammar, which matches whole objects.
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

// Views are of the walked text; offsets are in bytes from 0.
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
  // Called for each object, when it is the innermost of Objects().
  virtual void OnObject(const TWalkedObject& object) = 0;
  // Called for each property of the innermost object if it wants them, and for some if it does not.
  virtual void OnProperty(const TWalkedProperty& property) = 0;
  // Returns True if the properties of the innermost object matter. Others are skipped faster.
  virtual bool WantsProperties() const = 0;
  // Called at the end of each object, while it still is the innermost one. Objects without an end of their
  // own end with the text.
  virtual void OnObjectEnd() = 0;

  // Call in OnObject: continues at `end`, the offset after the object's own `end`.
  void SkipObject(size_t end) { FSkippedTo = end; }

  // Returns the open objects, the outermost first.
  const std::vector<TWalkedObject>& Objects() const { return FObjects; }
  // Returns their names, joined by dots: "DM.QMembers".
  std::string Path() const;
  std::string_view Text() const { return FText; }

 private:
  bool Next();
  void ReadObject(bool isObject);
  bool ReadPlainHeader(TWalkedObject& object);
  void OpenObject(const TWalkedObject& object);
  void EndObject();
  bool SkipPlainLine();
  void ReadProperty();
  void ReadValue();
  void SkipTo(char end, char nested);
  bool NextIsSymbol(char symbol);

  const std::string_view FText;
  TPasParser FScanner;
  int FCode = 0;  // of the current token; white space is skipped
  std::string_view FLexem;
  bool FIsPending = false;  // the current token has to be read again
  size_t FEnd = 0;          // the end of the last token used
  size_t FSkippedTo = 0;    // where to continue after the object that was read last, or 0
  std::vector<TWalkedObject> FObjects;
};

}  // namespace mig
