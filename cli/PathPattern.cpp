#include "cli/PathPattern.h"

#include <algorithm>

#include "rtl/text/Unicode.h"
#include "win/paths/FileNames.h"

namespace cli {
namespace {

// Returns the form used for comparison: upper case, with slashes as separators.
std::string Folded(std::string_view path) {
  std::string folded = win::UpperFileName(path);
  std::replace(folded.begin(), folded.end(), '\\', '/');
  return folded;
}

// Removes a set "[...]" from the front of the pattern and returns whether `character` is in it. A "[" that
// is never closed is an ordinary character: sets `isSet` to false and removes nothing.
bool MatchSet(std::string_view& pattern, std::string_view character, bool& isSet) {
  size_t at = 1;
  const bool negated = at < pattern.size() && (pattern[at] == '!' || pattern[at] == '^');
  if (negated) ++at;
  const size_t end = pattern.find(']', at + 1);
  isSet = end != std::string_view::npos;
  if (!isSet) return false;
  bool found = false;
  while (at < end) {
    const std::string_view low = pattern.substr(at, rtl::CharacterLength(pattern.substr(at)));
    at += low.size();
    std::string_view high = low;
    if (at + 1 < end && pattern[at] == '-') {
      high = pattern.substr(at + 1, rtl::CharacterLength(pattern.substr(at + 1)));
      at += 1 + high.size();
    }
    // UTF-8 texts sort in the order of their code points.
    found = found || (low <= character && character <= high);
  }
  pattern.remove_prefix(end + 1);
  return found != negated;
}

// Removes one element other than a star from the front of the pattern, and one character from the front of
// the text. Returns whether they match.
bool MatchOne(std::string_view& pattern, std::string_view& text) {
  if (pattern.empty() || text.empty()) return false;
  const std::string_view character = text.substr(0, rtl::CharacterLength(text));
  bool matches = false;
  bool isSet = false;
  if (pattern.front() == '?') {
    matches = true;
    pattern.remove_prefix(1);
  } else if (pattern.front() == '[') {
    matches = MatchSet(pattern, character, isSet);
  }
  if (!matches && !isSet) {
    matches = pattern.starts_with(character);
    if (matches) pattern.remove_prefix(character.size());
  }
  text.remove_prefix(character.size());
  return matches;
}

// Backtracking to the last star is enough, because every star matches as little as possible.
bool Matches(std::string_view pattern, std::string_view text) {
  std::string_view starPattern, starText;
  bool hasStar = false;
  while (true) {
    if (!pattern.empty() && pattern.front() == '*') {
      pattern.remove_prefix(1);
      hasStar = true;
      starPattern = pattern;
      starText = text;
      continue;
    }
    if (pattern.empty() && text.empty()) return true;
    if (MatchOne(pattern, text)) continue;
    if (!hasStar || starText.empty()) return false;
    starText.remove_prefix(rtl::CharacterLength(starText));
    pattern = starPattern;
    text = starText;
  }
}

}  // namespace

TPathPatterns::TPathPatterns(const std::vector<std::string>& patterns) {
  for (const std::string& pattern : patterns) FPatterns.push_back(Folded(pattern));
}

bool TPathPatterns::Match(std::string_view path) const {
  const std::string whole = Folded(path);
  const std::string_view bare = std::string_view(whole).substr(whole.rfind('/') + 1);
  return std::any_of(FPatterns.begin(), FPatterns.end(), [&](const std::string& pattern) {
    return Matches(pattern, whole) || (pattern.find('/') == std::string::npos && Matches(pattern, bare));
  });
}

}  // namespace cli
