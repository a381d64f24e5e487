#include "win/paths/CodePage.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <iterator>
#include <unicode/utf8.h>

#include "win/paths/Characters.h"

namespace win {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& text, char32_t character) {
  uint8_t units[U8_MAX_LENGTH];
  int32_t length = 0;
  UBool failed = false;
  U8_APPEND(units, length, U8_MAX_LENGTH, static_cast<UChar32>(character), failed);
  if (!failed) text.append(reinterpret_cast<const char*>(units), static_cast<size_t>(length));
}

// A code page. Any number of threads may read it.
class TCodePage {
 public:
  // If `table` is null, the code page is UTF-8.
  explicit TCodePage(const TCodePageTable* table) : FTable(table) {
    for (size_t byte = 0; byte < 256; ++byte) FAlpha[byte] = IsCharAlphaU(Single(static_cast<uint8_t>(byte)));
  }

  uint32_t Number() const { return FTable ? FTable->Number : kUtf8CodePage; }
  bool IsDoubleByte() const { return FTable && FTable->Doubles; }
  bool IsLead(uint8_t byte) const {
    if (!IsDoubleByte()) return false;
    return FTable->Number == 932 ? (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC)
                                 : byte >= kFirstLead && byte <= kLastLead;
  }
  // Returns the character of one byte, or U+FFFD if the code page has none.
  char32_t Single(uint8_t byte) const {
    if (byte < 0x80) return byte;
    return FTable ? FTable->Singles[byte - 0x80] : kReplacement;
  }
  // Returns the character of a lead byte and a trail byte, or U+FFFD if the code page has none.
  char32_t Double(uint8_t lead, uint8_t trail) const {
    return FTable->Doubles[static_cast<size_t>(lead - kFirstLead) * kTrailCount + (trail - kFirstTrail)];
  }
  bool IsAlpha(uint8_t byte) const { return FAlpha[byte]; }

 private:
  const TCodePageTable* FTable;
  std::array<bool, 256> FAlpha{};
};

// Returns one of SupportedCodePages. It is never changed or deleted, so that threads may use it while another
// one changes the setting.
const TCodePage& PageOf(uint32_t number) {
  static const std::vector<TCodePage> pages = [] {
    std::vector<TCodePage> list;
    for (const uint32_t one : SupportedCodePages()) list.emplace_back(FindCodePageTable(one));
    return list;
  }();
  return *std::find_if(pages.begin(), pages.end(),
                       [number](const TCodePage& page) { return page.Number() == number; });
}

std::atomic<const TCodePage*>& Current() {
  static std::atomic<const TCodePage*> current = &PageOf(1252);
  return current;
}

const TCodePage& Setting() {
  return *Current();
}

std::string ToUtf8(const TCodePage& page, std::string_view text) {
  std::string result;
  result.reserve(text.size());
  if (page.Number() == kUtf8CodePage) {
    for (int32_t i = 0, length = static_cast<int32_t>(text.size()); i < length;) {
      UChar32 character;
      U8_NEXT_OR_FFFD(reinterpret_cast<const uint8_t*>(text.data()), i, length, character);
      AppendUtf8(result, static_cast<char32_t>(character));
    }
    return result;
  }
  for (size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<uint8_t>(text[i]);
    if (page.IsLead(byte) && i + 1 < text.size() && IsDBCSTrailByte(static_cast<uint8_t>(text[i + 1]))) {
      AppendUtf8(result, page.Double(byte, static_cast<uint8_t>(text[++i])));
    } else {
      AppendUtf8(result, page.Single(byte));
    }
  }
  return result;
}

}  // namespace

bool SetACP(uint32_t codePage) {
  const TCodePageTable* const table = FindCodePageTable(codePage);
  if (!table && codePage != kUtf8CodePage) return false;
  Current() = &PageOf(codePage);
  return true;
}

uint32_t GetACP() {
  return Setting().Number();
}

const std::vector<uint32_t>& SupportedCodePages() {
  static const std::vector<uint32_t> numbers = [] {
    std::vector<uint32_t> list(std::begin(kCodePageNumbers), std::end(kCodePageNumbers));
    list.push_back(kUtf8CodePage);
    return list;
  }();
  return numbers;
}

bool IsDBCSLeadByte(uint8_t byte) {
  return Setting().IsLead(byte);
}
bool IsDoubleByteCodePage() {
  return Setting().IsDoubleByte();
}

bool IsDBCSLeadByteEx(uint32_t codePage, uint8_t byte) {
  return PageOf(codePage).IsLead(byte);
}

std::string SourceToUtf8(std::string_view text) {
  return ToUtf8(Setting(), text);
}

std::string CodePageToUtf8(uint32_t codePage, std::string_view text) {
  return ToUtf8(PageOf(codePage), text);
}

bool IsCharAlphaA(std::string_view bytes) {
  const TCodePage& page = Setting();
  if (bytes.size() == 1) return page.IsAlpha(static_cast<uint8_t>(bytes[0]));
  if (page.Number() == kUtf8CodePage && !bytes.empty()) {
    int32_t i = 0;
    UChar32 character;
    const int32_t length = static_cast<int32_t>(bytes.size());
    U8_NEXT_OR_FFFD(reinterpret_cast<const uint8_t*>(bytes.data()), i, length, character);
    return i == length && IsCharAlphaU(static_cast<char32_t>(character));
  }
  return bytes.size() == 2 && page.IsLead(static_cast<uint8_t>(bytes[0])) &&
         IsDBCSTrailByte(static_cast<uint8_t>(bytes[1])) &&
         IsCharAlphaU(page.Double(static_cast<uint8_t>(bytes[0]), static_cast<uint8_t>(bytes[1])));
}

}  // namespace win
