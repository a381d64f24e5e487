// The universal container: an ordered list of strings, each with an integer in its object slot.
//
// Search and comparison ignore the case of ASCII letters. Lines of the form `name=value` are read with Names
// and Values; the first "=" divides. Indices count from 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace rtl {

class TStringList {
 public:
  using TObject = std::intptr_t;

  int Count() const { return static_cast<int>(FLines.size()); }
  const std::string& operator[](int index) const { return FLines[static_cast<size_t>(index)].Text; }
  TObject Objects(int index) const { return FLines[static_cast<size_t>(index)].Object; }

  // Adds at the end, or at its place in a sorted list, where a string that is there already is not added
  // again. The index of the string.
  int Add(std::string_view text) { return AddObject(text, 0); }
  int AddObject(std::string_view text, TObject object);
  void Insert(int index, std::string_view text);
  void Put(int index, std::string_view text);
  void Delete(int index);
  void Clear();

  bool Sorted() const { return FSorted; }
  void SetSorted(bool sorted);  // sorts what is there
  // Binary search in a sorted list. True and the index, or False and the index where `text` would go.
  [[nodiscard]] bool Find(std::string_view text, int& index) const;
  // The first entry equal to `text`, or -1.
  int IndexOf(std::string_view text) const;

  // The lines, each ended by CR LF. Setting splits at CR, LF or CR LF; a line end at the very end opens no
  // further line.
  std::string Text() const;
  void SetText(std::string_view text);

  // What stands before a line's first "=", and empty for a line without one.
  std::string_view Names(int index) const;
  // What stands behind the "=" of the first line of that name; empty without such a line. Takes the same time
  // in a list of any length.
  std::string_view Values(std::string_view name) const;
  // Replaces what stands behind that line's "=", and keeps the line's place and the spelling of its name; or
  // appends the line `name=value`.
  void SetValue(std::string_view name, std::string_view value);

  // `fileName` is a Windows path; the text in the form of Text, no mark. Exceptions are those of TFileStream.
  void SaveToFile(std::string_view fileName) const;
  void LoadFromFile(std::string_view fileName);

 private:
  struct TLine {
    std::string Text;
    TObject Object = 0;
  };
  void IndexNames() const;
  void IndexName(size_t line) const;

  std::vector<TLine> FLines;
  bool FSorted = false;
  // Lower-cased name -> first line of that name; made on the first look-up, dropped by changes other than
  // appending.
  mutable std::unordered_map<std::string, size_t> FNameIndex;
  mutable bool FNamesIndexed = false;
};

}  // namespace rtl
