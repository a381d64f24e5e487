#include "MigWizard/form/FormResults.h"

#include <algorithm>

#include "rtl/text/Lines.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

unsigned char Fold(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

}  // namespace

TFormProperty::TFormProperty(std::string_view name, std::string value)
    : FName(name), FMade(std::move(value)) {}

std::vector<std::string> TFormProperty::Lines() const {
  std::vector<std::string> lines;
  for (std::string_view rest = Value(); !rest.empty();) {
    const std::string_view line = rtl::TakeLine(rest);
    lines.emplace_back(lines.empty() ? 0 : FIndent, ' ').append(line);
  }
  return lines;
}

void TFormProperty::Print(std::string& text) const {
  std::string_view rest = Value();
  text += rtl::TakeLine(rest);
  while (!rest.empty()) {
    text += "\r\n";
    text.append(FIndent, ' ');
    text += rtl::TakeLine(rest);
  }
}

size_t TFormProperty::MaxPrintedSize(size_t blanks) const {
  const std::string_view value = Value();
  const auto lineEnds =
      std::count(value.begin(), value.end(), '\r') + std::count(value.begin(), value.end(), '\n');
  return value.size() + static_cast<size_t>(lineEnds) * (FIndent + blanks + 1);
}

void TNestedObjects::Add(std::string_view text) {
  if (FKnown.insert(text).second) FTexts.push_back(text);
}

void TNestedObjects::DeleteLast() {
  FKnown.erase(FTexts.back());
  FTexts.pop_back();
}

void TNestedObjects::Clear() {
  if (FKnown.empty()) return;  // an Add that ran out of memory leaves FTexts shorter
  FTexts.clear();
  FKnown = {};  // frees the buckets, because clearing those of a large object would cost each small one
}

size_t TNestedObjects::THash::operator()(std::string_view text) const {
  uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : text) hash = (hash ^ Fold(c)) * 0x100000001B3U;
  return static_cast<size_t>(hash);
}

bool TNestedObjects::TEqual::operator()(std::string_view left, std::string_view right) const {
  return rtl::SameText(left, right);
}

}  // namespace mig
