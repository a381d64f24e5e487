// What a form parser gathers of an object: the properties to print, and the raw texts of the objects nested
// in it.
//
// Both view the parsed text where they hold it unchanged, so they cost what their count costs and not what
// their length does: a string list of a million lines is one view until it is printed. They are valid as long
// as that text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace mig {

// A property of the output: a name, and a value of one or more lines.
class TFormProperty {
 public:
  // Views, of the parsed text or of constants.
  TFormProperty(std::string_view name, std::string_view value) : FName(name), FView(value) {}
  // A value that was made.
  TFormProperty(std::string_view name, std::string value);

  std::string_view Name() const { return FName; }
  // The lines, cut at CR, LF or CR LF, without the line ends, as they are now: see IndentLines.
  std::vector<std::string> Lines() const;

  // Moves all lines but the first to the right by that many blanks, behind those of earlier calls.
  void IndentLines(size_t blanks) { FIndent += blanks; }
  // Appends the lines to `text`, with CR LF between them.
  void Print(std::string& text) const;
  // The most bytes that Print appends.
  size_t MostPrinted() const;

 private:
  std::string_view Value() const { return FMade.empty() ? FView : std::string_view(FMade); }

  std::string_view FName;
  std::string_view FView;
  std::string FMade;   // in the place of FView, unless empty
  size_t FIndent = 0;  // blanks in front of all lines but the first
};

struct TPropertyRule;

// A property of the source, and what was made of it. Views of the parsed text.
struct TSourceProperty {
  std::string_view Name, Value;
  size_t EntryCount = 0;                // how many properties of the output it gave
  const TPropertyRule* Rule = nullptr;  // the rule that was applied, or null
};

// The texts of nested objects in the order of their appearance, each once, ignoring the case of letters.
class TNestedObjects {
 public:
  size_t Count() const { return FTexts.size(); }
  const std::vector<std::string_view>& Texts() const { return FTexts; }
  // Unless it is there already.
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
