#include "MigWizard/passes/TextPlaces.h"

#include <algorithm>

#include "MigWizard/engine/PasParser.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

// Iterates over the words of a form's text, and the strings after each of them.
class TPieceWalk {
 public:
  TPieceWalk(std::string_view text, const qrl::TEncoding& encoding) : FScanner(text, encoding) {}

  // Moves to the next piece. Returns false at the end of the text.
  bool Next() {
    for (std::string_view lexem; const int code = FScanner.GetNext(lexem);) {
      if (code == qrl::kWhiteSpace) {
        FIsAfterBlank = true;
        continue;
      }
      const bool isText = code == qrl::kString || lexem == "#" || (code == qrl::kNumber && FIsCode);
      FIsCode = lexem == "#";
      // A string continues after "+", and where two of its pieces are adjacent.
      const bool continues = isText && (FIsAfterPlus || (FIsInText && !FIsAfterBlank));
      FIsAfterPlus = FIsInText && lexem == "+";
      FIsInText = isText || FIsAfterPlus;
      FIsAfterBlank = false;
      const bool isWord = code == qrl::kIdentifier || (code >= kEnd && code <= kUses);
      if (continues || !(isText || isWord)) continue;
      Words += isWord;
      Strings = isWord ? 0 : Strings + 1;
      Offset = FScanner.PrevPos();
      return true;
    }
    return false;
  }

  size_t Words = 0;    // so far
  size_t Strings = 0;  // since the last word
  size_t Offset = 0;   // of the piece

 private:
  TPasParser FScanner;
  bool FIsCode = false, FIsAfterBlank = true, FIsAfterPlus = false, FIsInText = false;
};

// Counts the bytes from `begin` to before `end` for which isCounted(byte before, byte, byte after) is not 0.
// Both neighbours of the range must be bytes of the text. Without a branch on bytes, so that compilers make a
// loop over vectors of it: the count of a block fits into a byte.
template <typename TTest>
size_t CountBytes(std::string_view text, size_t begin, size_t end, TTest isCounted) {
  constexpr size_t kBlock = 240;
  const char* const bytes = text.data();
  size_t count = 0;
  while (begin < end) {
    const size_t stop = std::min(end, begin + kBlock);
    uint8_t inBlock = 0;
    for (; begin < stop; ++begin)
      inBlock = static_cast<uint8_t>(inBlock + isCounted(bytes[begin - 1], bytes[begin], bytes[begin + 1]));
    count += inBlock;
  }
  return count;
}

// Returns 1 if a line ends with `byte`, and otherwise 0.
uint8_t EndsLine(char byte, char after) {
  return static_cast<uint8_t>((byte == '\n') | ((byte == '\r') & (after != '\n')));
}

bool IsLineEnd(char c) {
  return c == '\r' || c == '\n';
}

}  // namespace

TTextPlaces::TTextPlaces(std::string_view text, const qrl::TEncoding& encoding) : FText(text) {
  const bool isDefault = encoding == qrl::TEncoding::Default();
  FCharacters = !isDefault || win::GetACP() == win::kUtf8CodePage ? TCharacters::Utf8
                : win::IsDoubleByteCodePage()                     ? TCharacters::DoubleByte
                                                                  : TCharacters::Bytes;
}

// Returns the number of lines that end with a byte from `begin` to before `end`.
size_t TTextPlaces::LineEnds(size_t begin, size_t end) const {
  if (begin == end) return 0;
  // The first and the last byte of the text lack a neighbour.
  const auto at = [this](size_t place) { return place < FText.size() ? FText[place] : '\0'; };
  size_t count = EndsLine(FText[begin], at(begin + 1));
  if (end - begin > 1) count += EndsLine(FText[end - 1], at(end));
  if (end - begin > 2)
    count += CountBytes(FText, begin + 1, end - 1,
                        [](char, char byte, char after) { return EndsLine(byte, after); });
  return count;
}

size_t TTextPlaces::StartOfLine(size_t offset) const {
  while (offset > 0 && !EndsLine(FText[offset - 1], offset < FText.size() ? FText[offset] : '\0')) --offset;
  return offset;
}

TTextPlace TTextPlaces::At(size_t offset) const {
  offset = std::min(offset, FText.size());
  if (offset >= FOffset) {
    FLineEnds += LineEnds(FOffset, offset);
  } else {
    FLineEnds -= LineEnds(offset, FOffset);
  }
  FOffset = offset;
  TTextPlace place{static_cast<uint32_t>(FLineEnds + 1), 1};
  size_t at = StartOfLine(offset);
  if (FCharacters == TCharacters::Bytes) {
    place.Column = static_cast<uint32_t>(offset - at + 1);
    return place;
  }
  for (; at < offset; ++place.Column) {
    const auto byte = static_cast<uint8_t>(FText[at++]);
    if (FCharacters == TCharacters::DoubleByte) {
      const bool isPair = win::IsDBCSLeadByte(byte) && at < FText.size() &&
                          win::IsDBCSTrailByte(static_cast<uint8_t>(FText[at]));
      at += isPair ? 1 : 0;
    } else {
      while (at < FText.size() && (static_cast<uint8_t>(FText[at]) & 0xC0) == 0x80) ++at;
    }
  }
  return place;
}

std::string_view TTextPlaces::LineAt(size_t offset) const {
  offset = std::min(offset, FText.size());
  const size_t start = StartOfLine(offset);
  size_t end = offset;
  while (end < FText.size() && !IsLineEnd(FText[end])) ++end;
  while (end > start && IsLineEnd(FText[end - 1])) --end;  // the offset of the LF of CR LF
  return FText.substr(start, end - start);
}

size_t TTextPlaces::OtherLineEnds() const {
  // A bare LF is counted at its place, and a bare CR at the byte after it.
  const auto isOther = [](char before, char byte, char /*after*/) {
    return static_cast<uint8_t>((byte == '\n') ^ (before == '\r'));
  };
  const size_t size = FText.size();
  if (size == 0) return 0;
  size_t count = isOther('\0', FText[0], '\0');
  count += isOther(FText[size - 1], '\0', '\0');
  if (size > 1) count += isOther(FText[size - 2], FText[size - 1], '\0');
  return size > 2 ? count + CountBytes(FText, 1, size - 1, isOther) : count;
}

TPrintedForm::TPrintedForm(std::string_view text, std::string_view printed, const qrl::TEncoding& encoding,
                           const std::vector<size_t>& offsets) {
  TPieceWalk memory(text, encoding), paper(printed, encoding);
  for (const size_t offset : offsets) {
    while (memory.Offset < offset && memory.Next()) continue;
    while (paper.Words < memory.Words && paper.Next()) continue;
    while (paper.Words == memory.Words && paper.Strings < memory.Strings && paper.Next()) continue;
    FOffsets.push_back(paper.Offset);
  }
}

}  // namespace mig
