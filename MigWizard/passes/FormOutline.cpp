#include "MigWizard/passes/FormOutline.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "MigWizard/engine/PasParser.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

// The bytes of words in a form.
constexpr std::array<bool, 256> kWordBytes = [] {
  std::array<bool, 256> isPart{};
  for (unsigned c = 0; c < 128; ++c)
    isPart[c] = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
  return isPart;
}();

bool IsBlank(char c) {
  return c != 0 && static_cast<uint8_t>(c) <= ' ';
}

// Returns True for the words that are tokens of their own.
bool IsKeyword(std::string_view word) {
  constexpr std::string_view kKeywords[] = {"end", "inherited", "inline", "item", "object", "uses"};
  constexpr size_t kShortest = 3, kLongest = 9;
  constexpr std::string_view kFirst = "eiouEIOU";
  return word.size() >= kShortest && word.size() <= kLongest &&
         kFirst.find(word[0]) != std::string_view::npos &&
         std::any_of(std::begin(kKeywords), std::end(kKeywords),
                     [word](std::string_view each) { return rtl::SameText(each, word); });
}

// Returns the word at `place`, or an empty view if it is a keyword or none.
std::string_view PlainWord(std::string_view text, size_t place) {
  size_t end = place;
  while (end < text.size() && kWordBytes[static_cast<uint8_t>(text[end])]) ++end;
  const std::string_view word = text.substr(std::min(place, text.size()), end - place);
  if (word.empty() || (word[0] >= '0' && word[0] <= '9') || IsKeyword(word)) return {};
  return word;
}

// Reads ` Name: Class` up to the end of the line, as nearly all headers are.
bool ReadPlainHeader(std::string_view text, TObjectHeader& header) {
  if (text.substr(header.End, 1) != " ") return false;
  const std::string_view name = PlainWord(text, header.End + 1);
  const size_t colon = header.End + 1 + name.size();
  if (name.empty() || text.substr(colon, 2) != ": ") return false;
  const std::string_view className = PlainWord(text, colon + 2);
  const size_t end = colon + 2 + className.size();
  if (className.empty() || end >= text.size() || (text[end] != '\r' && text[end] != '\n')) return false;
  header.Name = name;
  header.ClassName = className;
  header.End = end;
  return true;
}

// Returns the last byte before `place` that is not white space, or 0.
char ByteBefore(std::string_view text, size_t place) {
  while (place > 0 && IsBlank(text[place - 1])) --place;
  return place == 0 ? '\0' : text[place - 1];
}

char ByteAfter(std::string_view text, size_t place) {
  while (place < text.size() && IsBlank(text[place])) ++place;
  return place == text.size() ? '\0' : text[place];
}

// Returns True if the word is a value, or the last part of a property's name.
bool IsValue(std::string_view text, size_t place) {
  const char before = ByteBefore(text, place);
  return before == '=' || before == '.' || before == ',' || before == '[' || before == '(';
}

}  // namespace

bool ReadObjectHeader(std::string_view text, const qrl::TEncoding& encoding, std::string_view keyword,
                      TObjectHeader& header) {
  header.Keyword = keyword;
  header.Offset = static_cast<size_t>(keyword.data() - text.data());
  header.End = header.Offset + keyword.size();
  if (ReadPlainHeader(text, header)) return true;
  TPasParser scanner(text, encoding);
  scanner.SetPosition(header.End);
  std::string_view lexem;
  const auto next = [&] {
    int code = qrl::kWhiteSpace;
    while (code == qrl::kWhiteSpace || code == qrl::kNul) code = scanner.GetNext(lexem);
    return code;
  };
  if (next() != qrl::kIdentifier) return false;
  header.ClassName = lexem;
  header.End = scanner.PrevPos() + lexem.size();
  (void)next();
  if (lexem != ":") return true;
  header.Name = header.ClassName;
  header.ClassName = {};
  header.End = scanner.PrevPos() + lexem.size();
  if (next() != qrl::kIdentifier) return true;
  header.ClassName = lexem;
  header.End = scanner.PrevPos() + lexem.size();
  return true;
}

void AppendName(std::string& path, std::string_view name) {
  if (!path.empty()) path += '.';
  path.append(name.empty() ? std::string_view("(no name)") : name);
}

void TFormOutline::OpenObject(std::string_view text, const qrl::TEncoding& encoding, std::string_view keyword,
                              bool isObject) {
  TObject object;
  if (!ReadObjectHeader(text, encoding, keyword, object)) return;
  if (IsValue(text, object.Offset)) return;
  object.IsObject = isObject;
  if (FClasses != nullptr) return AddReported(object);
  object.Parent = FInnermost;
  FInnermost = static_cast<int32_t>(FObjects.size());
  FOpen.push_back(FInnermost);
  FObjects.push_back(object);
}

void TFormOutline::AddReported(const TObject& object) {
  const auto place =
      std::lower_bound(FObjects.begin(), FObjects.end(), object.Offset,
                       [](const TObject& each, size_t offset) { return each.Offset < offset; });
  if (place == FObjects.end() || place->Offset != object.Offset) FObjects.insert(place, object);
}

void TFormOutline::OpenItem(std::string_view text, std::string_view keyword) {
  if (FClasses != nullptr) return;
  const auto place = static_cast<size_t>(keyword.data() - text.data());
  const char after = ByteAfter(text, place + keyword.size());
  if (after != '=' && after != '.' && !IsValue(text, place)) FOpen.push_back(-1);
}

void TFormOutline::Close(std::string_view text, std::string_view keyword) {
  if (FOpen.empty() || IsValue(text, static_cast<size_t>(keyword.data() - text.data()))) return;
  if (FOpen.back() >= 0) FInnermost = FObjects[static_cast<size_t>(FOpen.back())].Parent;
  FOpen.pop_back();
}

void TFormOutline::CloseSkipped(size_t offsetOfKeyword) {
  if (FInnermost < 0 || FObjects[static_cast<size_t>(FInnermost)].Offset != offsetOfKeyword) return;
  FInnermost = FObjects[static_cast<size_t>(FInnermost)].Parent;
  FOpen.pop_back();
}

std::string TFormOutline::PathOf(int32_t object) const {
  std::vector<std::string_view> names;
  for (; object >= 0; object = FObjects[static_cast<size_t>(object)].Parent)
    names.push_back(FObjects[static_cast<size_t>(object)].Name);
  std::string path;
  for (auto name = names.rbegin(); name != names.rend(); ++name) AppendName(path, *name);
  return path;
}

}  // namespace mig
