// The results of a form parser: the properties to print, and the raw texts of the objects nested in the
// object.
//
// Both view the parsed text where they hold it unchanged, so their cost depends on their count and not on
// their length: a string list of a million lines is one view until it is printed. They are valid as long as
// that text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace mig {

struct TPropertyRule;

// A property of the output: a name, and a value of one or more lines.
class TFormProperty {
 public:
  // Keeps views, of the parsed text or of constants.
  TFormProperty(std::string_view name, std::string_view value) : FName(name), FView(value) {}
  // Takes over a value that is no part of the parsed text; `name` is kept as a view.
  TFormProperty(std::string_view name, std::string value);

  std::string_view Name() const { return FName; }
  // Returns the lines without their line ends, which are CR, LF or CR LF, and with the indentation so far.
  std::vector<std::string> Lines() const;

  // Indents all lines but the first by that many blanks, on top of earlier calls.
  void IndentLines(size_t blanks) { FIndent += blanks; }
  // Appends the lines to `text`, separated by CR LF.
  void Print(std::string& text) const;
  // Returns an upper bound of the bytes that Print appends after IndentLines(blanks).
  size_t MaxPrintedSize(size_t blanks) const;

 private:
  std::string_view Value() const { return FMade.empty() ? FView : std::string_view(FMade); }

  std::string_view FName;
  std::string_view FView;
  std::string FMade;   // replaces FView unless empty
  size_t FIndent = 0;  // blanks before all lines but the first
};

// A property of the source, and the result of its conversion. Views of the parsed text.
struct TSourceProperty {
  std::string_view Name, Value;
  size_t EntryCount = 0;                // properties of the output that it gave
  const TPropertyRule* Rule = nullptr;  // the rule that was applied, or null
};

// The texts of nested objects in order of appearance, each once, ignoring case.
class TNestedObjects {
 public:
  size_t Count() const { return FTexts.size(); }
  const std::vector<std::string_view>& Texts() const { return FTexts; }
  // Adds a text unless it is there already.
  void Add(std::string_view text);
  void DeleteLast();
  void Clear();

 private:
  struct THash {
    size_t operator()(std::string_view text) const;
  };
  struct TEqual {
    bool operator()(std::string_view left, std::string_view right) const;
  };
  std::vector<std::string_view> FTexts;
  std::unordered_set<std::string_view, THash, TEqual> FKnown;
};

}  // namespace mig
