// TStringList: an ordered list of strings, each with an integer in its object slot.
//
// Search and comparison ignore the case of ASCII letters. Indices count from 0. Names and Values treat a line
// "name=value" as a pair, split at the first "=".
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

  // Adds a string and returns its index. In a sorted list it is inserted at its place, unless the list
  // contains it already; otherwise it is appended.
  int Add(std::string_view text) { return AddObject(text, 0); }
  int AddObject(std::string_view text, TObject object);
  // Inserts before `index`, which is at most Count. The list must not be sorted.
  void Insert(int index, std::string_view text);
  void Put(int index, std::string_view text);
  void Delete(int index);
  void Clear();

  // Sorts the list, and keeps it sorted from then on if `sorted` is set.
  void SetSorted(bool sorted);
  // Binary search in a sorted list. Returns true and the index of `text`, or false and the index at which it
  // would be inserted.
  [[nodiscard]] bool Find(std::string_view text, int& index) const;
  // Returns the index of the first string equal to `text`, or -1.
  int IndexOf(std::string_view text) const;

  // Returns the lines, each ended by CR LF.
  std::string Text() const;
  // Replaces the list by the lines of `text`, which end with CR, LF or CR LF. A line end at the end of the
  // text starts no further line.
  void SetText(std::string_view text);

  // Returns the part of a line before its first "="; empty if there is none.
  std::string_view Names(int index) const;
  // Returns the part after the "=" of the first line with that name; empty if there is none. Takes constant
  // time.
  std::string_view Values(std::string_view name) const;
  // Replaces the part after the "=" of that line, which keeps its position and the spelling of its name, or
  // appends the line "name=value".
  void SetValue(std::string_view name, std::string_view value);

  // Writes and reads the text as Text and SetText have it, without a byte order mark. `fileName` is a Windows
  // path. Raises the exceptions of TFileStream.
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
  // Maps a lower-cased name to the first line with that name. Built by the first search, invalidated by every
  // change except appending.
  mutable std::unordered_map<std::string, size_t> FNameIndex;
  mutable bool FNamesIndexed = false;
};

}  // namespace rtl
