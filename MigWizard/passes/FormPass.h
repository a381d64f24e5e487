// Converts the text of a form: parses and reprints every object of a mapped class, and keeps the text and
// layout of everything else. Also finds the database aliases that a form declares.
//
// Both are functions of their input; the run driver reads and writes the files.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/FormOutline.h"
#include "qrl/Encoding.h"
#include "rtl/text/Streams.h"

namespace mig {

// The object at the current position of a walk over tokens.
struct TFormObject {
  std::string_view Name;
  std::string_view ClassName;  // as spelled in the form
  std::string_view LastIdent;  // the last identifier read
  bool ExpectName = false;     // the next identifier is an object's name
  bool ExpectClass = false;    // the next identifier is an object's class
};

// The outcome of the conversion of an object of the map. Views are of the form's text and of constants.
struct TObjectConversion {
  size_t Start = 0;  // offset of its keyword
  bool IsConverted = false;
  bool IsLeftOut = false;                 // by choice
  std::string_view OldClass;              // as spelled
  const std::string* NewClass = nullptr;  // of the class map
  std::vector<TSourceProperty> Properties;
  // Of the printed properties: MasterSource, and those with the root of a property that was not printed
  // itself.
  std::vector<std::string_view> NewNames;
  size_t End = 0;           // the offset after the object, or 0 if it is not known
  std::string_view Nested;  // if End is known: the text from the first nested object on
};

// A change to a form's text. Offsets are in bytes, from 0.
struct TFormEdit {
  size_t Begin = 0,
         End = 0;        // the replaced text: an object, from its keyword to the white space after `end`,
                         // or the name of a class
  std::string Text;      // the printed object, or the new class
  int Level = -1;        // the nesting level at which the object was printed; -1 for a class name
  bool LaysOut = false;  // of an object: it always gets the layout of its original
  std::vector<TFormEdit> Nested;  // changes of objects within this one, which are unconverted in Text
  size_t Place = 0;               // offset of the object's keyword
};

// Converts the objects of a form and returns how many were converted. If the result is not 0, `output` is the
// whole changed form in `encoding`, without a mark; otherwise `output` is unchanged. `text` must outlive the
// call.
//
// `conversions`, unless null, gets an entry for each object of the map, converted or not, and `outline`,
// unless null, each object that is not within a converted one; `parser` must keep its sources then. `edits`,
// unless null, gets the changes as values, in the order of the text.
//
// An object of a mapped class that `parser` cannot parse keeps its properties: only its class is replaced,
// and the object is not counted. An object for which leavesOut(offset of its keyword) is True is kept as it
// is, with everything in it.
int ConvertForm(std::string_view text, const qrl::TEncoding& encoding, const TClassMap& classes,
                TFormParser& parser, rtl::TMemoryStream& output,
                std::vector<TObjectConversion>* conversions = nullptr,
                std::vector<TFormEdit>* edits = nullptr,
                const std::function<bool(size_t)>& leavesOut = nullptr, TFormOutline* outline = nullptr);

// Returns the conversion of the last object that `parser` converted and printed. `start` is the offset of its
// keyword.
TObjectConversion ConversionOf(const TFormParser& parser, size_t start, std::string_view oldClass,
                               const std::string& newClass);

// A database alias that a TDatabase of a form declares.
struct TDeclaredDatabase {
  std::string_view Alias;    // working text
  std::string Component;     // "Root.Component", a name of the run (ComponentNames.h)
  bool IsInherited = false;  // the TDatabase is under `inherited` or `inline`
};

// Calls found for each alias that the form declares, in the order of the text. The root is the first object
// under `object`. It is the form's first object for an inherited TDatabase, and for all of them if
// `takesInherited` is True.
void FindDatabaseNames(std::string_view text, const qrl::TEncoding& encoding, bool takesInherited,
                       const std::function<void(const TDeclaredDatabase&)>& found);

}  // namespace mig
