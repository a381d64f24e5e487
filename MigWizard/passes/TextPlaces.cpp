#include "MigWizard/passes/TextPlaces.h"

#include <algorithm>

#include "MigWizard/engine/PasParser.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

constexpr uint32_t kUtf8CodePage = 65001;

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

// Without a branch, so that compilers make a loop over vectors of it.
bool HasBareReturn(std::string_view text) {
  const char* const bytes = text.data();
  unsigned char found = text.ends_with('\r') ? 1 : 0;
  for (size_t i = 1; i < text.size(); ++i)
    found |= static_cast<unsigned char>(static_cast<unsigned char>(bytes[i - 1] == '\r') &
                                        static_cast<unsigned char>(bytes[i] != '\n'));
  return found != 0;
}

}  // namespace

TTextPlaces::TTextPlaces(std::string_view text, const qrl::TEncoding& encoding) : FText(text) {
  const bool isDefault = encoding == qrl::TEncoding::Default();
  FCharacters = !isDefault || win::GetACP() == kUtf8CodePage ? TCharacters::Utf8
                : win::IsDoubleByteCodePage()                ? TCharacters::DoubleByte
                                                             : TCharacters::Bytes;
}

// Reads up to the start of the first line after `offset`, or to the end of the text.
void TTextPlaces::ReadTo(size_t offset) const {
  if (!FIsFeedKnown) FHasBareReturns = HasBareReturn(FText);
  while (!FIsRead && FStarts.back() <= offset && FStarts.back() < FText.size()) {
    const size_t start = FStarts.back();
    if (!FIsFeedKnown || FNextFeed < start) {
      FNextFeed = std::min(FText.find('\n', start), FText.size());
      FIsFeedKnown = true;
    }
    size_t end = FNextFeed;
    if (FHasBareReturns) {
      end = std::min(FText.substr(start, FNextFeed - start).find('\r'), FNextFeed - start) + start;
    } else if (end > start && end < FText.size() && FText[end - 1] == '\r') {
      --end;
    }
    if (end == FText.size()) {
      FIsRead = true;
      return;
    }
    const bool isWindows = end + 1 == FNextFeed && FNextFeed < FText.size();
    ++(isWindows ? FWindowsEnds : FOtherEnds);
    FStarts.push_back(isWindows ? FNextFeed + 1 : end + 1);
  }
}

TTextPlace TTextPlaces::At(size_t offset) const {
  offset = std::min(offset, FText.size());
  ReadTo(offset);
  const auto next = std::upper_bound(FStarts.begin(), FStarts.end(), offset);
  TTextPlace place{static_cast<uint32_t>(next - FStarts.begin()), 1};
  for (size_t at = *(next - 1); at < offset; ++place.Column) {
    const auto byte = static_cast<uint8_t>(FText[at++]);
    if (FCharacters == TCharacters::DoubleByte) {
      const bool isPair = win::IsDBCSLeadByte(byte) && at < FText.size() &&
                          win::IsDBCSTrailByte(static_cast<uint8_t>(FText[at]));
      at += isPair ? 1 : 0;
    } else if (FCharacters == TCharacters::Utf8) {
      while (at < FText.size() && (static_cast<uint8_t>(FText[at]) & 0xC0) == 0x80) ++at;
    }
  }
  return place;
}

std::string_view TTextPlaces::LineAt(size_t offset) const {
  offset = std::min(offset, FText.size());
  ReadTo(offset);
  const size_t start = *(std::upper_bound(FStarts.begin(), FStarts.end(), offset) - 1);
  return FText.substr(start, std::min(FText.find_first_of("\r\n", start), FText.size()) - start);
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
