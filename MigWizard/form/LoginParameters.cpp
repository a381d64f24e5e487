#include "MigWizard/form/LoginParameters.h"

#include <algorithm>

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr std::string_view kBlanks = "\t\n\r ";
constexpr std::string_view kDigits = "0123456789";

// Returns `text` without its first and last character; empty if it has fewer than two.
std::string_view Inner(std::string_view text) {
  return text.size() < 2 ? std::string_view() : text.substr(1, text.size() - 2);
}

size_t SkipBlanks(std::string_view text, size_t place) {
  return std::min(text.find_first_not_of(kBlanks, place), text.size());
}

// Returns the end of the piece that begins at `place`, or `place` if none does. A doubled quote continues its
// piece.
size_t PieceEnd(std::string_view text, size_t place) {
  if (place == text.size()) return place;
  if (text[place] == '#') {
    const size_t end = std::min(text.find_first_not_of(kDigits, place + 1), text.size());
    return end > place + 1 ? end : place;
  }
  if (text[place] != '\'') return place;
  for (size_t end = place + 1;;) {
    end = text.find('\'', end);
    if (end == std::string_view::npos) return place;
    if (++end == text.size() || text[end] != '\'') return end;
    ++end;
  }
}

// Returns the end of the string that begins at `place`, with all pieces that `+` joins, or npos if it is
// none.
size_t StringEnd(std::string_view text, size_t place) {
  for (;;) {
    size_t end = PieceEnd(text, place);
    if (end == place) return std::string_view::npos;
    for (size_t next = PieceEnd(text, end); next != end; next = PieceEnd(text, end)) end = next;
    const size_t plus = SkipBlanks(text, end);
    if (plus == text.size() || text[plus] != '+') return end;
    place = SkipBlanks(text, plus + 1);
  }
}

}  // namespace

TLoginParameters::TLoginParameters(std::string_view propValue) {
  const bool isList = propValue.size() >= 2 && propValue.front() == '(' && propValue.back() == ')';
  if (isList && ReadEntries(Inner(propValue))) return;
  FEntries.clear();
  ReadLines(Inner(propValue));
}

bool TLoginParameters::ReadEntries(std::string_view list) {
  for (size_t place = SkipBlanks(list, 0); place < list.size();) {
    const size_t end = StringEnd(list, place);
    if (end == std::string_view::npos) return false;
    const size_t firstEnd = PieceEnd(list, place);
    const std::string_view text = list.substr(place, end - place);
    if (list[place] == '\'') {
      AddEntry(text, Inner(list.substr(place, firstEnd - place)), list.substr(firstEnd, end - firstEnd));
    } else {
      FEntries.push_back({text, {}, {}, {}});
    }
    place = SkipBlanks(list, end);
  }
  return true;
}

void TLoginParameters::ReadLines(std::string_view lines) {
  while (!lines.empty()) {
    const size_t end = std::min(lines.find_first_of("\r\n"), lines.size());
    const std::string_view line = lines.substr(0, end);
    if (!rtl::Trim(line).empty()) AddEntry(line, Inner(rtl::Trim(line)), {});
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
}

void TLoginParameters::AddEntry(std::string_view text, std::string_view content, std::string_view pieces) {
  const size_t separator = content.find('=');
  if (separator == std::string_view::npos) {
    FEntries.push_back({text, {}, {}, {}});
  } else {
    FEntries.push_back({text, content.substr(0, separator), content.substr(separator + 1), pieces});
  }
}

std::string TLoginParameters::Value(std::string_view name) const {
  const auto entry = std::find_if(FEntries.begin(), FEntries.end(), [&](const TEntry& candidate) {
    return rtl::SameText(candidate.Name, name);
  });
  if (entry == FEntries.end() || (entry->Rest.empty() && entry->Pieces.empty())) return {};
  return std::string("'").append(entry->Rest).append("'").append(entry->Pieces);
}

}  // namespace mig
