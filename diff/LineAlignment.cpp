#include "diff/LineAlignment.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace diff {
namespace {

using TKind = TDiffLine::TKind;

constexpr size_t kMostPairs = 1'000'000;
constexpr int kAlike = 40;  // per cent; less similar lines are not put side by side

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsWordByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 128 || c == '_' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
         (c >= 'a' && c <= 'z');
}

std::vector<std::string_view> SplitWords(std::string_view line) {
  std::vector<std::string_view> words;
  for (size_t at = 0; at < line.size();) {
    size_t end = at + 1;
    if (IsWordByte(line[at])) {
      while (end < line.size() && IsWordByte(line[end])) ++end;
    } else if (IsBlank(line[at])) {
      while (end < line.size() && IsBlank(line[end])) ++end;
    }
    words.push_back(line.substr(at, end - at));
    at = end;
  }
  return words;
}

// A longest common subsequence by dynamic programming: Score(i, j) is the best sum for the first i and j
// items.
template <typename TScore>
std::vector<std::pair<size_t, size_t>> BestPairs(size_t oldCount, size_t newCount, TScore score) {
  const size_t width = newCount + 1;
  std::vector<uint32_t> best((oldCount + 1) * width);
  std::vector<uint32_t> scores(oldCount * newCount);
  for (size_t i = 0; i < oldCount; ++i) {
    for (size_t j = 0; j < newCount; ++j) {
      const uint32_t pair = scores[i * newCount + j] = score(i, j);
      best[(i + 1) * width + j + 1] = std::max(
          {best[i * width + j + 1], best[(i + 1) * width + j], pair == 0 ? 0 : best[i * width + j] + pair});
    }
  }
  std::vector<std::pair<size_t, size_t>> pairs;
  for (size_t i = oldCount, j = newCount; i > 0 && j > 0;) {
    const uint32_t pair = scores[(i - 1) * newCount + j - 1];
    if (pair != 0 && best[i * width + j] == best[(i - 1) * width + j - 1] + pair) {
      pairs.emplace_back(--i, --j);
    } else if (best[i * width + j] == best[(i - 1) * width + j]) {
      --i;
    } else {
      --j;
    }
  }
  std::reverse(pairs.begin(), pairs.end());
  return pairs;
}

// A line without its white space, and how often each two neighbouring bytes occur in it, hashed into few
// counters.
struct TProfile {
  explicit TProfile(std::string_view line) {
    unsigned previous = 0;
    for (const char c : line) {
      if (IsBlank(c)) continue;
      const auto byte = static_cast<unsigned char>(c);
      ++Counts[(previous * 31 + byte) % std::size(Counts)];
      previous = byte;
      ++Length;
    }
  }
  uint16_t Counts[64] = {};
  uint32_t Length = 0;
};

// Returns how alike two lines are in per cent (S. Sørensen's and L. Dice's coefficient over pairs of bytes),
// plus 1; 0 where they are not alike enough.
uint32_t Similarity(const TProfile& left, const TProfile& right) {
  const uint32_t total = left.Length + right.Length;
  if (total == 0) return 1 + 100;
  uint32_t common = 0;
  for (size_t i = 0; i < std::size(left.Counts); ++i) common += std::min(left.Counts[i], right.Counts[i]);
  const uint32_t percent = 200 * common / total;
  return percent < kAlike ? 0 : 1 + percent;
}

std::vector<std::pair<size_t, size_t>> PairsOfRun(const TDiffLine* oldLines, size_t oldCount,
                                                  const TDiffLine* newLines, size_t newCount) {
  if (oldCount * newCount <= kMostPairs) {
    std::vector<TProfile> oldProfiles, newProfiles;
    for (size_t i = 0; i < oldCount; ++i) oldProfiles.emplace_back(oldLines[i].Old);
    for (size_t i = 0; i < newCount; ++i) newProfiles.emplace_back(newLines[i].New);
    return BestPairs(oldCount, newCount,
                     [&](size_t i, size_t j) { return Similarity(oldProfiles[i], newProfiles[j]); });
  }
  std::string oldText, newText;
  for (size_t i = 0; i < oldCount; ++i) oldText.append(oldLines[i].Old);
  for (size_t i = 0; i < newCount; ++i) newText.append(newLines[i].New);
  std::vector<std::pair<size_t, size_t>> pairs;
  size_t oldNext = 0;
  size_t newNext = 0;
  const auto pairInOrder = [&](size_t oldEnd, size_t newEnd) {
    while (oldNext < oldEnd && newNext < newEnd) pairs.emplace_back(oldNext++, newNext++);
    oldNext = oldEnd;
    newNext = newEnd;
  };
  for (const TDiffLine& line : DiffLines(oldText, newText, TIgnore::Space)) {
    if (line.Kind != TKind::Same) continue;
    pairInOrder(static_cast<size_t>(line.OldLine) - 1, static_cast<size_t>(line.NewLine) - 1);
    pairs.emplace_back(oldNext++, newNext++);
  }
  pairInOrder(oldCount, newCount);
  return pairs;
}

// Returns the parts of `words` whose marks are not set, neighbouring ones joined.
std::vector<TSpan> UnmarkedSpans(const std::vector<std::string_view>& words,
                                 const std::vector<bool>& marked) {
  std::vector<TSpan> spans;
  size_t offset = 0;
  for (size_t i = 0; i < words.size(); offset += words[i++].size()) {
    if (marked[i]) continue;
    if (!spans.empty() && spans.back().Offset + spans.back().Length == offset) {
      spans.back().Length += words[i].size();
    } else {
      spans.push_back({offset, words[i].size()});
    }
  }
  return spans;
}

}  // namespace

std::vector<TDiffRow> AlignLines(const std::vector<TDiffLine>& lines) {
  std::vector<TDiffRow> rows;
  rows.reserve(lines.size());
  for (size_t at = 0; at < lines.size();) {
    if (lines[at].Kind == TKind::Same) {
      rows.push_back({&lines[at], &lines[at]});
      ++at;
      continue;
    }
    const size_t first = at;
    while (at < lines.size() && lines[at].Kind == TKind::Removed) ++at;
    const size_t firstAdded = at;
    while (at < lines.size() && lines[at].Kind == TKind::Added) ++at;
    const TDiffLine* const removed = lines.data() + first;
    const TDiffLine* const added = lines.data() + firstAdded;
    size_t i = 0;
    size_t j = 0;
    const auto addAlone = [&](size_t oldEnd, size_t newEnd) {
      for (; i < oldEnd; ++i) rows.push_back({removed + i, nullptr});
      for (; j < newEnd; ++j) rows.push_back({nullptr, added + j});
    };
    for (const auto& [oldPair, newPair] : PairsOfRun(removed, firstAdded - first, added, at - firstAdded)) {
      addAlone(oldPair, newPair);
      rows.push_back({removed + i++, added + j++});
    }
    addAlone(firstAdded - first, at - firstAdded);
  }
  return rows;
}

TWordDiff DiffWords(std::string_view oldLine, std::string_view newLine) {
  const std::vector<std::string_view> oldWords = SplitWords(oldLine);
  const std::vector<std::string_view> newWords = SplitWords(newLine);
  if (oldWords.size() * newWords.size() > kMostPairs) return {{{0, oldLine.size()}}, {{0, newLine.size()}}};
  std::vector<bool> oldMarked(oldWords.size()), newMarked(newWords.size());
  for (const auto& [i, j] : BestPairs(oldWords.size(), newWords.size(), [&](size_t left, size_t right) {
         return oldWords[left] == newWords[right] ? static_cast<uint32_t>(oldWords[left].size()) : 0U;
       })) {
    oldMarked[i] = newMarked[j] = true;
  }
  return {UnmarkedSpans(oldWords, oldMarked), UnmarkedSpans(newWords, newMarked)};
}

}  // namespace diff
