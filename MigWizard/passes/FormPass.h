// The conversion of a form's text: every object of a mapped class is parsed whole and printed anew,
// everything else keeps its text and layout. And the walk that finds the database aliases that a form
// declares.
//
// Both are functions of their input; the run driver reads and writes the files.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

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

// What became of an object of the map. Views of the form's text and of constants.
struct TObjectAccount {
  size_t Start = 0;  // offset of its keyword
  bool IsConverted = false;
  std::string_view OldClass;              // as spelled
  const std::string* NewClass = nullptr;  // of the class map
  std::vector<TSourceProperty> Properties;
  std::vector<std::string_view> NewNames;  // of the properties that were printed
};

// A change that the conversion makes in a form's text. Offsets are bytes, 0-based.
struct TFormEdit {
  size_t Begin = 0,
         End = 0;        // what is replaced: an object, from its keyword to the white space after its `end`,
                         // or the name of a class
  std::string Text;      // the object as printed, or the new class
  int Level = -1;        // the nesting level at which the object was printed; -1 for a class name
  bool LaysOut = false;  // of an object: it is to be laid out like its original in any case
  std::vector<TFormEdit> Nested;  // changes of objects that this one holds, which are in Text as they were
};

// Converts the objects of a form. `text` must live as long as the call. The number of objects converted; if
// it is not 0, `output` holds the whole changed form in `encoding`, without a mark, and otherwise it is
// untouched.
//
// `accounts`, unless null, gets an entry for each object of the map, converted or not; `parser` has to keep its
// sources then. `edits`, unless null, gets the changes as values, in the order of the text.
//
// An object whose class is mapped but whose text `parser` cannot take keeps its properties: only its class is
// replaced, and that does not count.
int ConvertForm(std::string_view text, const qrl::TEncoding& encoding, const TClassMap& classes,
                TFormParser& parser, rtl::TMemoryStream& output,
                std::vector<TObjectAccount>* accounts = nullptr, std::vector<TFormEdit>* edits = nullptr);

// Returns the account of the object that `parser` has converted and printed last. `start` is the offset of its keyword.
TObjectAccount AccountOf(const TFormParser& parser, size_t start, std::string_view oldClass,
                         const std::string& newClass);

// Calls found(alias, "Root.Component") for each database alias that a TDatabase of the form declares, in the
// order of the text. The alias is working text, the component a name of the run (ComponentNames.h).
void FindDatabaseNames(std::string_view text, const qrl::TEncoding& encoding,
                       const std::function<void(std::string_view alias, std::string_view component)>& found);

}  // namespace mig
