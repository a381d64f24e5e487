// The catalogue of the target product: the published properties of each class. It is a data file,
// catalogue.txt, which is compiled in and can be replaced by anyone who has the product.
//
// The format: `#` begins a comment; `class NAME` or `class NAME : BASE` begins a class, after its base; then
// follows one property per line, indented.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rtl/text/ClassRegistry.h"
#include "rtl/text/Exceptions.h"

namespace target {

// A text is not a valid catalogue. The message names the origin and the line.
class ECatalogue : public rtl::Exception {
 public:
  using Exception::Exception;
};

class TCatalogue {
 public:
  // `origin` names the text in messages. Raises ECatalogue if the text is not valid.
  TCatalogue(std::string_view text, std::string_view origin);
  static TCatalogue BuiltIn();

  // Returns the published properties of `className`, including those of base classes. Raises ECatalogue if
  // there is no such class.
  rtl::TClassInfo ClassInfo(std::string_view className) const;
  // Returns the catalogue in its file format.
  std::string Text() const;

 private:
  struct TClass {
    std::string Name, Base;
    std::vector<std::string> Properties;  // without inherited ones
  };
  const TClass* Find(std::string_view name) const;
  void AddClass(std::string_view declaration, const std::string& place);

  std::string FOrigin;
  std::vector<TClass> FClasses;
};

}  // namespace target
