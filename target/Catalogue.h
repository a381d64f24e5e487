// The catalogue of the target product: which class publishes which properties. It is a data file,
// catalogue.txt, that is compiled in; whoever has the product at hand can put another file in its place.
//
// The format: `#` begins a comment; `class NAME` or `class NAME : BASE` begins a class, whose base stands
// above it; then comes a property a line, indented.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rtl/text/ClassRegistry.h"
#include "rtl/text/Exceptions.h"

namespace target {

// The text is no catalogue. The message names the origin and the line.
class ECatalogue : public rtl::Exception {
 public:
  using Exception::Exception;
};

class TCatalogue {
 public:
  // `origin` names the text in messages. Raises ECatalogue.
  TCatalogue(std::string_view text, std::string_view origin);
  static TCatalogue BuiltIn();

  // What `className` publishes, base classes included. Raises ECatalogue if there is no such class.
  rtl::TClassInfo ClassInfo(std::string_view className) const;
  // The catalogue in its file format.
  std::string Text() const;

 private:
  struct TClass {
    std::string Name, Base;
    std::vector<std::string> Properties;  // its own
  };
  const TClass* Find(std::string_view name) const;
  void AddClass(std::string_view declaration, const std::string& place);

  std::string FOrigin;
  std::vector<TClass> FClasses;
};

}  // namespace target
