// The objects of a form, as the conversion comes to them in its scan of the form's text. Findings use them,
// so that the text need not be scanned again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/passes/NameTable.h"
#include "qrl/Encoding.h"

namespace mig {

// The header of an object: `object Name: Class` or `object Class`. Views are of the form's text.
struct TObjectHeader {
  std::string_view Keyword;  // object, inherited or inline, as spelled
  std::string_view Name;     // empty for an object without one
  std::string_view ClassName;
  size_t Offset = 0;      // of the keyword, in bytes from 0
  size_t End = 0;         // after the last byte of the header
  bool IsObject = false;  // the keyword is `object`
};

// Reads the header that begins with `keyword`, a view into `text`, and sets the rest of `header`. Returns
// False if no name follows, so that the word has another meaning there.
[[nodiscard]] bool ReadObjectHeader(std::string_view text, const qrl::TEncoding& encoding,
                                    std::string_view keyword, TObjectHeader& header);

// Appends an object's name to a path, such as "DM.QMembers".
void AppendName(std::string& path, std::string_view name);

class TFormOutline {
 public:
  struct TObject : TObjectHeader {
    int32_t Parent = -1;  // index of the object around it, or -1
  };

  // With `classes`, unless null, takes the objects without their nesting, and the caller leaves out most of
  // those of other classes. `classes` must outlive the outline.
  explicit TFormOutline(const TNameTable* classes = nullptr) : FClasses(classes) {}

  // Returns True if the outline takes all objects.
  bool TakesAll() const { return FClasses == nullptr; }
  // Returns True if `className` is one of the classes, or if the outline takes all objects.
  bool Takes(std::string_view className) const {
    return FClasses == nullptr || FClasses->Find(className) != 0;
  }

  // Call these in the order of the text for each word. `keyword` is a view into `text`, the form's text. They
  // ignore a word that is the name or the value of a property.
  void OpenObject(std::string_view text, const qrl::TEncoding& encoding, std::string_view keyword,
                  bool isObject);
  void OpenItem(std::string_view text, std::string_view keyword);
  void Close(std::string_view text, std::string_view keyword);
  // Call this in place of Close for an object whose text is skipped from its header on.
  void CloseSkipped(size_t offsetOfKeyword);

  // Returns the objects in the order of the text, without those in skipped text.
  const std::vector<TObject>& Objects() const { return FObjects; }
  // Returns the names of an object and of those around it, the outermost first: "DM.QMembers". Not for an
  // outline of classes.
  std::string PathOf(int32_t object) const;

 private:
  void AddReported(const TObject& object);

  const TNameTable* FClasses;
  std::vector<TObject> FObjects;
  std::vector<int32_t> FOpen;  // indices of open objects; -1 for an item of a collection
  int32_t FInnermost = -1;     // of them, the last object
};

}  // namespace mig
