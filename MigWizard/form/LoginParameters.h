// Reads the entries `name=value` of a list of login parameters from the text of its property.
//
//   TLoginParameters list("('USER NAME=scott'\r\n  'PASSWORD=tiger')");
//   list.Value("user name");  // 'scott', with its quotes
//
// Nothing is decoded: a doubled quote stays doubled, `#` codes stay codes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mig {

class TLoginParameters {
 public:
  // `propValue` is the property's value as in the form. An entry is one string of the list, with all pieces
  // that `+` joins; its name is in its first quoted piece. A text that is no list of strings is read line by
  // line, each line without its first and last character. The entries view `propValue`.
  explicit TLoginParameters(std::string_view propValue);

  // Returns the text after the "=" of the first entry of that name, ignoring case, as a form value: the rest
  // of the entry's first piece in quotes, and its further pieces unchanged. Returns an empty string if there
  // is no such entry, or nothing after its "=".
  std::string Value(std::string_view name) const;

  struct TEntry {
    std::string_view Text;    // the whole entry, with its quotes; or its line
    std::string_view Name;    // empty if it has none
    std::string_view Rest;    // after the "=", within the first piece
    std::string_view Pieces;  // all that follows the first piece
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
