#include "rtl/text/StringList.h"

#include <algorithm>

#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "rtl/text/Lines.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"

namespace rtl {

int TStringList::AddObject(std::string_view text, TObject object) {
  if (FSorted) {
    int index = 0;
    if (Find(text, index)) return index;
    FLines.insert(FLines.begin() + index, TLine{std::string(text), object});
    FNamesIndexed = false;
    return index;
  }
  FLines.push_back(TLine{std::string(text), object});
  if (FNamesIndexed) IndexName(FLines.size() - 1);
  return Count() - 1;
}

void TStringList::Insert(int index, std::string_view text) {
  Assert(!FSorted, "Insert into a sorted list");
  FLines.insert(FLines.begin() + index, TLine{std::string(text), 0});
  FNamesIndexed = false;
}

void TStringList::Put(int index, std::string_view text) {
  FLines[static_cast<size_t>(index)].Text = text;
  FNamesIndexed = false;
}

void TStringList::Delete(int index) {
  FLines.erase(FLines.begin() + index);
  FNamesIndexed = false;
}

void TStringList::Clear() {
  FLines.clear();
  FNamesIndexed = false;
}

void TStringList::SetSorted(bool sorted) {
  FSorted = sorted;
  if (!sorted) return;
  std::stable_sort(FLines.begin(), FLines.end(), [](const TLine& left, const TLine& right) {
    return CompareText(left.Text, right.Text) < 0;
  });
  FNamesIndexed = false;
}

bool TStringList::Find(std::string_view text, int& index) const {
  const auto place = std::lower_bound(
      FLines.begin(), FLines.end(), text,
      [](const TLine& line, std::string_view key) { return CompareText(line.Text, key) < 0; });
  index = static_cast<int>(place - FLines.begin());
  return place != FLines.end() && SameText(place->Text, text);
}

int TStringList::IndexOf(std::string_view text) const {
  for (size_t i = 0; i < FLines.size(); ++i)
    if (SameText(FLines[i].Text, text)) return static_cast<int>(i);
  return -1;
}

std::string TStringList::Text() const {
  size_t length = 0;
  for (const TLine& line : FLines) length += line.Text.size() + 2;
  std::string text;
  text.reserve(length);
  for (const TLine& line : FLines) text.append(line.Text).append("\r\n");
  return text;
}

void TStringList::SetText(std::string_view text) {
  Clear();
  while (!text.empty()) Add(TakeLine(text));
}

std::string_view TStringList::Names(int index) const {
  const std::string_view line = (*this)[index];
  const size_t separator = line.find('=');
  return separator == std::string_view::npos ? std::string_view() : line.substr(0, separator);
}

std::string_view TStringList::Values(std::string_view name) const {
  IndexNames();
  const auto found = FNameIndex.find(LowerCase(name));
  if (found == FNameIndex.end()) return {};
  const std::string_view line = FLines[found->second].Text;
  const size_t separator = line.find('=');
  return separator == std::string_view::npos ? std::string_view() : line.substr(separator + 1);
}

void TStringList::SetValue(std::string_view name, std::string_view value) {
  IndexNames();
  const auto found = FNameIndex.find(LowerCase(name));
  if (found == FNameIndex.end()) {
    Add(std::string(name).append("=").append(value));
    return;
  }
  std::string& line = FLines[found->second].Text;
  line.replace(line.find('=') + 1, std::string::npos, value);
}

void TStringList::IndexNames() const {
  if (FNamesIndexed) return;
  FNameIndex.clear();
  for (size_t i = 0; i < FLines.size(); ++i) IndexName(i);
  FNamesIndexed = true;
}

// A line without "=" has no name. A line that begins with "=" has the empty name.
void TStringList::IndexName(size_t line) const {
  const size_t separator = FLines[line].Text.find('=');
  if (separator != std::string::npos)
    FNameIndex.try_emplace(LowerCase(FLines[line].Text.substr(0, separator)), line);
}

void TStringList::SaveToFile(std::string_view fileName) const {
  TFileStream file(fileName, fmCreate);
  file.Write(Text());
}

void TStringList::LoadFromFile(std::string_view fileName) {
  SetText(ReadFile(fileName));
}

}  // namespace rtl
