// The entries `name=value` of a list of login parameters, read from the text of its property.
//
//   TLoginParameters list("('USER NAME=scott'\r\n  'PASSWORD=tiger')");
//   list.Value("user name")      // 'scott', with its quotes
//
// Nothing is decoded: a doubled quote stays doubled, `#` codes stay codes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mig {

class TLoginParameters {
 public:
  // `propValue` is the property's value as the form has it. An entry is what form text takes for one string
  // of the list, broken over lines with `+` or not; its name stands in its first quoted piece. A text that is
  // no list of strings is taken line by line, each line without its first and last character. The entries
  // view `propValue`.
  explicit TLoginParameters(std::string_view propValue);

  // What stands behind the "=" of the first entry of that name, ignoring case, as the text of a form value:
  // the rest of the entry's first piece in quotes, and its further pieces as they stand. Empty if there is no
  // such entry, or nothing behind its "=".
  std::string Value(std::string_view name) const;

  struct TEntry {
    std::string_view Text;    // the whole entry, with its quotes; or its line
    std::string_view Name;    // empty if it has none
    std::string_view Rest;    // behind the "=", within the first piece
    std::string_view Pieces;  // all that follows this piece
  };
  // All entries, in the order of the text.
  const std::vector<TEntry>& Entries() const { return FEntries; }

 private:
  bool ReadEntries(std::string_view list);
  void ReadLines(std::string_view lines);
  void AddEntry(std::string_view text, std::string_view content, std::string_view pieces);

  std::vector<TEntry> FEntries;
};

}  // namespace mig
