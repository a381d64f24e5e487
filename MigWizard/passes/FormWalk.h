// Walks over an object of a form and reports the objects in it and their properties, without converting
// anything. The text need not be well-formed: the walk skips what it cannot parse. For that reason it uses
// the tokens of the passes, and neither rtl::TFormTextScanner, which raises, nor the grammar, which matches
// whole objects.
//
//   class TPrinter : public TFormWalk { void OnObject(const TObjectHeader& object) override { ... } };
//   TPrinter(text, encoding).Run(offsetOfObject);
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "MigWizard/engine/PasParser.h"
#include "MigWizard/passes/FormOutline.h"
#include "qrl/Encoding.h"

namespace mig {

// Views are of the walked text; offsets are in bytes from 0.
struct TWalkedProperty {
  std::string_view Name;   // with its dots
  std::string_view Value;  // as spelled, from its first to its last character
  size_t Offset = 0;       // of the name
};

class TFormWalk {
 public:
  TFormWalk(std::string_view text, const qrl::TEncoding& encoding)
      : FText(text), FEncoding(encoding), FScanner(text, encoding) {}
  virtual ~TFormWalk() = default;
  TFormWalk(const TFormWalk&) = delete;
  TFormWalk& operator=(const TFormWalk&) = delete;

  // Walks over the first object from `start` on, to its end, and returns the offset after it. An object
  // without an end of its own ends with the text.
  size_t Run(size_t start);

 protected:
  // Called for each object, when it is the innermost of Objects().
  virtual void OnObject(const TObjectHeader& object) = 0;
  // Called for each property of the innermost object if it wants them, and for some if it does not.
  virtual void OnProperty(const TWalkedProperty& property) = 0;
  // Returns True if the properties of the innermost object matter. Others are skipped faster.
  virtual bool WantsProperties() const = 0;
  // Called at the end of each object, while it still is the innermost one.
  virtual void OnObjectEnd() = 0;

  // Call in OnObject: continues at `end`, the offset after the object's own `end`.
  void SkipObject(size_t end) { FSkippedTo = end; }

  // Returns the open objects, the outermost first.
  const std::vector<TObjectHeader>& Objects() const { return FObjects; }
  std::string_view Text() const { return FText; }

 private:
  bool Next();
  bool ReadObject(bool isObject);
  void OpenObject(const TObjectHeader& object);
  void EndObject();
  bool SkipPlainLine();
  void ReadProperty();
  void ReadValue();
  void SkipTo(char end, char nested);
  bool NextIsSymbol(char symbol);

  const std::string_view FText;
  const qrl::TEncoding& FEncoding;
  TPasParser FScanner;
  int FCode = 0;  // of the current token; white space is skipped
  std::string_view FLexem;
  bool FIsPending = false;  // the current token has to be read again
  size_t FEnd = 0;          // the end of the last token used
  size_t FSkippedTo = 0;    // where to continue after the object that was read last, or 0
  std::vector<TObjectHeader> FObjects;
};

}  // namespace mig
