// Characters and code pages by the system's functions.
#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <mutex>
#include <vector>

#include "win/paths/Characters.h"
#include "win/windows/WindowsApi.h"

namespace win {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

struct TTable {
  TCodePageTable Table{};
  std::array<char16_t, 0x80> Singles{};
  std::vector<char16_t> Doubles;
};

// Returns the one character that the bytes encode, or U+FFFD if they do not encode exactly one.
char16_t Decode(uint32_t codePage, std::initializer_list<int> bytes) {
  char text[2];
  int length = 0;
  for (const int byte : bytes) text[length++] = static_cast<char>(byte);
  wchar_t units[4];
  const int count =
      MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text, length, units, std::size(units));
  return count == 1 ? static_cast<char16_t>(units[0]) : kReplacement;
}

std::unique_ptr<TTable> MakeTable(uint32_t number) {
  auto made = std::make_unique<TTable>();
  for (int byte = 0x80; byte <= 0xFF; ++byte)
    made->Singles[static_cast<size_t>(byte - 0x80)] = Decode(number, {byte});
  if (number >= 932 && number <= 950) {
    made->Doubles.reserve((kLastLead - kFirstLead + 1) * kTrailCount);
    for (int lead = kFirstLead; lead <= kLastLead; ++lead) {
      for (int trail = kFirstTrail; trail <= kLastTrail; ++trail)
        made->Doubles.push_back(Decode(number, {lead, trail}));
    }
  }
  made->Table = {number, made->Singles.data(), made->Doubles.empty() ? nullptr : made->Doubles.data()};
  return made;
}

}  // namespace

const TCodePageTable* FindCodePageTable(uint32_t number) {
  static std::mutex mutex;
  static std::array<std::unique_ptr<TTable>, kCodePageTableCount> tables;
  const auto* const place = std::find(std::begin(kCodePageNumbers), std::end(kCodePageNumbers), number);
  if (place == std::end(kCodePageNumbers)) return nullptr;
  const std::lock_guard lock(mutex);
  std::unique_ptr<TTable>& table = tables[static_cast<size_t>(place - std::begin(kCodePageNumbers))];
  if (!table) table = MakeTable(number);
  return &table->Table;
}

// Characters beyond the first plane have no upper case in file names.
char32_t UpperCharacter(char32_t character) {
  if (character > 0xFFFF) return character;
  const auto unit = static_cast<wchar_t>(character);
  wchar_t upper = unit;
  const int count =
      LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &unit, 1, &upper, 1, nullptr, nullptr, 0);
  return count == 1 ? upper : character;
}

bool IsCharAlphaU(char32_t character) {
  return character <= 0xFFFF && IsCharAlphaW(static_cast<wchar_t>(character));
}

}  // namespace win
