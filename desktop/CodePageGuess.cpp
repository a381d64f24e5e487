#include "desktop/CodePageGuess.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <unicode/ucsdet.h>

#include "win/paths/CodePage.h"
#include "win/paths/FileNames.h"

namespace desktop {

namespace {

constexpr size_t kMostWordBytes = 1 << 16;  // of words that are looked at
constexpr size_t kLeastHighBytes = 20;      // fewer say nothing
constexpr int kLeastConfidence = 25;        // of 100
constexpr int kLead = 10;                   // by how much a guess must be more likely than the assumed page

struct TPage {
  uint32_t Number;
  const char* Script;
};
constexpr TPage kPages[] = {
    {437, "DOS, United States"},
    {850, "DOS, Western European"},
    {852, "DOS, Central European"},
    {866, "DOS, Cyrillic"},
    {874, "Thai"},
    {932, "Japanese"},
    {936, "Simplified Chinese"},
    {949, "Korean"},
    {950, "Traditional Chinese"},
    {1250, "Central European"},
    {1251, "Cyrillic"},
    {1252, "Western European"},
    {1253, "Greek"},
    {1254, "Turkish"},
    {1255, "Hebrew"},
    {1256, "Arabic"},
    {1257, "Baltic"},
    {1258, "Vietnamese"},
    {win::kUtf8CodePage, "UTF-8"},
};

// The detector's names of the pages. An ISO page stands for the Windows page of the same script.
struct TDetected {
  std::string_view Name;
  uint32_t Page;
  bool IsLatin = false;  // its words are of ASCII letters with some others in between
};
constexpr TDetected kDetected[] = {
    {"Shift_JIS", 932},           {"GB18030", 936},           {"EUC-KR", 949},        {"Big5", 950},
    {"windows-1250", 1250, true}, {"ISO-8859-2", 1250, true}, {"windows-1251", 1251}, {"ISO-8859-5", 0},
    {"windows-1252", 1252, true}, {"ISO-8859-1", 1252, true}, {"windows-1253", 1253}, {"ISO-8859-7", 1253},
    {"windows-1254", 1254, true}, {"ISO-8859-9", 1254, true}, {"windows-1255", 1255}, {"ISO-8859-8", 1255},
    {"ISO-8859-8-I", 1255},       {"windows-1256", 1256},     {"ISO-8859-6", 0},
};

bool IsHigh(char c) {
  return static_cast<uint8_t>(c) >= 0x80;
}

// Letters, and the other bytes that end a double-byte character.
bool IsWordByte(char c) {
  return IsHigh(c) || (c >= '@' && c <= '~');
}

// Returns the words that are not all ASCII. The keywords of a source would make every text look English.
std::string ForeignWords(std::string_view bytes) {
  std::string words;
  for (size_t i = 0; i < bytes.size() && words.size() < kMostWordBytes;) {
    const size_t start = i;
    while (i < bytes.size() && IsWordByte(bytes[i])) ++i;
    const std::string_view word = bytes.substr(start, i - start);
    if (std::any_of(word.begin(), word.end(), IsHigh)) words.append(word).append(" ");
    i += word.empty();
  }
  return words;
}

// Returns the confidence for each page, of 100. The detector alone takes short Latin texts for Greek or
// Cyrillic.
std::map<uint32_t, int> Detect(const std::string& text, bool isLatin) {
  std::map<uint32_t, int> confidences;
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<UCharsetDetector, decltype(&ucsdet_close)> detector(ucsdet_open(&error),
                                                                            &ucsdet_close);
  if (U_FAILURE(error)) return confidences;
  ucsdet_setText(detector.get(), text.data(), static_cast<int32_t>(text.size()), &error);
  int32_t count = 0;
  const UCharsetMatch** const matches = ucsdet_detectAll(detector.get(), &count, &error);
  for (int32_t i = 0; U_SUCCESS(error) && i < count; ++i) {
    const std::string_view name = ucsdet_getName(matches[i], &error);
    const auto* const found = std::find_if(std::begin(kDetected), std::end(kDetected),
                                           [&](const TDetected& detected) { return detected.Name == name; });
    if (found == std::end(kDetected) || found->Page == 0 || found->IsLatin != isLatin) continue;
    int& confidence = confidences[found->Page];
    confidence = std::max(confidence, static_cast<int>(ucsdet_getConfidence(matches[i], &error)));
  }
  return confidences;
}

}  // namespace

uint32_t GuessCodePage(std::string_view bytes, uint32_t assumed) {
  if (bytes.starts_with("\xEF\xBB\xBF") || bytes.starts_with("\xFF\xFE")) return 0;
  const std::string words = ForeignWords(bytes);
  if (words.empty()) return 0;
  if (win::IsValidUtf8(words)) return assumed == win::kUtf8CodePage ? 0 : win::kUtf8CodePage;
  const auto high = static_cast<size_t>(std::count_if(words.begin(), words.end(), IsHigh));
  if (high < kLeastHighBytes) return 0;
  std::map<uint32_t, int> confidences = Detect(words, /*isLatin=*/high < words.size() / 2);
  const int floor = std::max(kLeastConfidence, confidences[assumed] + kLead);
  const auto best = std::max_element(confidences.begin(), confidences.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  return best->first != assumed && best->second >= floor ? best->first : 0;
}

std::string CodePageName(uint32_t codePage) {
  const auto* const page = std::find_if(std::begin(kPages), std::end(kPages),
                                        [&](const TPage& one) { return one.Number == codePage; });
  const std::string number = std::to_string(codePage);
  return page == std::end(kPages) ? number : number + " (" + page->Script + ")";
}

}  // namespace desktop
