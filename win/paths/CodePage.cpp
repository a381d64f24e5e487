#include "win/paths/CodePage.h"

#include <algorithm>
#include <array>
#include <memory>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/utf8.h>

namespace win {
namespace {

constexpr uint32_t kUtf8 = 65001;
constexpr char32_t kReplacement = 0xFFFD;

struct TCodePageRow {
  uint32_t Number;
  const char* Converter;  // ICU's name
  uint8_t FirstLead;      // 0 in single-byte pages
};

constexpr TCodePageRow kCodePages[] = {
    {437, "ibm-437", 0},
    {850, "ibm-850", 0},
    {852, "ibm-852", 0},
    {866, "ibm-866", 0},
    {874, "windows-874-2000", 0},
    {932, "ibm-943_P15A-2003", 0x81},
    {936, "windows-936-2000", 0x81},
    {949, "windows-949-2000", 0x81},
    {950, "windows-950-2000", 0x81},
    {1250, "ibm-5346_P100-1998", 0},
    {1251, "ibm-5347_P100-1998", 0},
    {1252, "ibm-5348_P100-1997", 0},
    {1253, "ibm-5349_P100-1998", 0},
    {1254, "ibm-5350_P100-1998", 0},
    {1255, "ibm-9447_P100-2002", 0},
    {1256, "ibm-9448_X100-2005", 0},
    {1257, "ibm-9449_P100-2002", 0},
    {1258, "ibm-5354_P100-1998", 0},
    {kUtf8, nullptr, 0},
};

struct TConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using TConverter = std::unique_ptr<UConverter, TConverterCloser>;

void AppendUtf8(std::string& text, char32_t character) {
  uint8_t units[U8_MAX_LENGTH];
  int32_t length = 0;
  UBool failed = false;
  U8_APPEND(units, length, U8_MAX_LENGTH, static_cast<UChar32>(character), failed);
  if (!failed) text.append(reinterpret_cast<const char*>(units), static_cast<size_t>(length));
}

// One of the code pages, as tables that are made once for it. Any number of threads may read them.
class TCodePage {
 public:
  explicit TCodePage(const TCodePageRow& row) : Row(row) {
    TConverter converter;
    if (row.Converter) {
      UErrorCode error = U_ZERO_ERROR;
      converter.reset(ucnv_open(row.Converter, &error));
      ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    }
    for (size_t byte = 0; byte < 256; ++byte) {
      const char single = static_cast<char>(byte);
      // The control characters of IBM's tables stand crosswise (1A, 1C, 7F): ASCII is ASCII here.
      FSingles[byte] = byte < 0x80 ? static_cast<char32_t>(byte) : DecodeWith(converter.get(), {&single, 1});
      FAlpha[byte] = IsCharAlphaU(FSingles[byte]);
    }
    if (!row.FirstLead) return;
    FDoubles.reserve(0x8000);
    for (int lead = 0x80; lead < 0x100; ++lead) {
      for (int trail = 0; trail < 0x100; ++trail) {
        const char bytes[] = {static_cast<char>(lead), static_cast<char>(trail)};
        const bool isPair =
            IsLead(static_cast<uint8_t>(lead)) && IsDBCSTrailByte(static_cast<uint8_t>(trail));
        FDoubles.push_back(isPair ? DecodeWith(converter.get(), {bytes, 2}) : kReplacement);
      }
    }
  }

  bool IsLead(uint8_t byte) const {
    if (!Row.FirstLead) return false;
    return Row.Number == 932 ? (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC)
                             : byte >= 0x81 && byte <= 0xFE;
  }
  char32_t Single(uint8_t byte) const { return FSingles[byte]; }
  // The character of a lead byte and a trail byte; U+FFFD if they are none.
  char32_t Double(uint8_t lead, uint8_t trail) const {
    return FDoubles[static_cast<size_t>(lead - 0x80) << 8 | trail];
  }
  bool IsAlpha(uint8_t byte) const { return FAlpha[byte]; }

  const TCodePageRow& Row;

 private:
  // The single character that `bytes` are; U+FFFD if they are none.
  static char32_t DecodeWith(UConverter* converter, std::string_view bytes) {
    if (!converter) return kReplacement;
    UErrorCode error = U_ZERO_ERROR;
    UChar units[4] = {};
    ucnv_reset(converter);
    const int32_t count =
        ucnv_toUChars(converter, units, 4, bytes.data(), static_cast<int32_t>(bytes.size()), &error);
    return U_SUCCESS(error) && count == 1 ? static_cast<char32_t>(units[0]) : kReplacement;
  }

  std::array<char32_t, 256> FSingles{};
  std::vector<char32_t> FDoubles;  // by lead byte from 80 and trail byte
  std::array<bool, 256> FAlpha{};
};

const TCodePageRow* FindRow(uint32_t number) {
  const auto* const row = std::find_if(std::begin(kCodePages), std::end(kCodePages),
                                       [number](const TCodePageRow& r) { return r.Number == number; });
  return row != std::end(kCodePages) ? row : nullptr;
}

std::unique_ptr<TCodePage>& Setting() {
  static auto setting = std::make_unique<TCodePage>(*FindRow(1252));
  return setting;
}

}  // namespace

bool SetACP(uint32_t codePage) {
  const TCodePageRow* row = FindRow(codePage);
  if (!row) return false;
  if (row != &Setting()->Row) Setting() = std::make_unique<TCodePage>(*row);
  return true;
}

uint32_t GetACP() {
  return Setting()->Row.Number;
}

const std::vector<uint32_t>& SupportedCodePages() {
  static const std::vector<uint32_t> numbers = [] {
    std::vector<uint32_t> list;
    for (const TCodePageRow& row : kCodePages) list.push_back(row.Number);
    return list;
  }();
  return numbers;
}

bool IsDBCSLeadByte(uint8_t byte) {
  return Setting()->IsLead(byte);
}
bool IsDoubleByteCodePage() {
  return Setting()->Row.FirstLead != 0;
}

std::string SourceToUtf8(std::string_view text) {
  const TCodePage& page = *Setting();
  std::string result;
  result.reserve(text.size());
  if (page.Row.Number == kUtf8) {
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

bool IsCharAlphaA(std::string_view bytes) {
  const TCodePage& page = *Setting();
  if (bytes.size() == 1) return page.IsAlpha(static_cast<uint8_t>(bytes[0]));
  if (page.Row.Number == kUtf8 && !bytes.empty()) {
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

bool IsCharAlphaU(char32_t character) {
  return u_hasBinaryProperty(static_cast<UChar32>(character), UCHAR_ALPHABETIC);
}

}  // namespace win
