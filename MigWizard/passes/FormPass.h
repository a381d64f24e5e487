// The conversion of a form's text: every object of a mapped class is parsed whole and printed anew,
// everything else keeps its text and layout. And the walk that finds the database aliases that a form
// declares.
//
// Both are functions of their input; the run driver reads and writes the files.
#pragma once

#include <functional>
#include <string_view>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "qrl/Encoding.h"
#include "rtl/text/Streams.h"

namespace mig {

// What a token walk knows of the object it is in.
struct TFormObject {
  std::string_view Name;
  std::string_view ClassName;  // as spelled in the form
  std::string_view LastIdent;  // the last identifier met
  bool ExpectName = false;     // the next identifier is an object's name
  bool ExpectClass = false;    // the next identifier is an object's class
};

// Converts the objects of a form. `text` must live as long as the call. The number of objects converted; if
// it is not 0, `output` holds the whole changed form in `encoding`, without a mark, and otherwise it is
// untouched.
//
// An object whose class is mapped but whose text `parser` cannot take keeps its properties: only its class is
// replaced, and that does not count.
int ConvertForm(std::string_view text, const qrl::TEncoding& encoding, const TClassMap& classes,
                TFormParser& parser, rtl::TMemoryStream& output);

// Calls found(alias, "Root.Component") for each database alias that a TDatabase of the form declares, in the
// order of the text. The alias is working text, the component a name of the run (ComponentNames.h).
void FindDatabaseNames(std::string_view text, const qrl::TEncoding& encoding,
                       const std::function<void(std::string_view alias, std::string_view component)>& found);

}  // namespace mig
