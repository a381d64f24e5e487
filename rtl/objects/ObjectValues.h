// The binary form of an object stream: the tables that its reader and its writer share.
//
//   stream      "TPF0" object
//   object      [prefix [position]] class-name object-name { name value } 0 { object } 0
//   prefix      one byte, F0 + flags; a position, an integer value, follows if ffChildPos is set
//   name        one byte length, not 0 for a property, then that many bytes
//   value       one byte TValueType, then the data that the table gives
//
// Numbers are little-endian. A list ends with a 0 byte in the place of the next element.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace rtl {

inline constexpr std::string_view kObjectSignature = "TPF0";

enum TValueType : uint8_t {
  vaNull = 0,         // nothing
  vaList = 1,         // values, 0
  vaInt8 = 2,         // 1 byte
  vaInt16 = 3,        // 2 bytes
  vaInt32 = 4,        // 4 bytes
  vaExtended = 5,     // 10 bytes
  vaString = 6,       // length, 1 byte, and bytes of the source code page
  vaIdent = 7,        // length, 1 byte, and a name, which may have dots
  vaFalse = 8,        // nothing
  vaTrue = 9,         // nothing
  vaBinary = 10,      // length, 4 bytes, and bytes
  vaSet = 11,         // names as in vaIdent, an empty one
  vaLString = 12,     // length, 4 bytes, and bytes of the source code page
  vaNil = 13,         // nothing
  vaCollection = 14,  // items, 0; an item is [integer value] vaList { name value } 0
  vaSingle = 15,      // 4 bytes
  vaCurrency = 16,    // 8 bytes, an integer: ten-thousandths
  vaDate = 17,        // 8 bytes, a double: days
  vaWString = 18,     // length in units, 4 bytes, and UTF-16 units
  vaInt64 = 19,       // 8 bytes
  vaUTF8String = 20,  // length in bytes, 4 bytes, and UTF-8
  vaDouble = 21,      // 8 bytes
};

// Flags of an object's prefix.
inline constexpr uint8_t kPrefixMark = 0xF0;
inline constexpr uint8_t ffInherited = 1;
inline constexpr uint8_t ffChildPos = 2;
inline constexpr uint8_t ffInline = 4;

// The kinds of integers, smallest first; an index into this table is a width.
inline constexpr std::array kIntegerKinds = {vaInt8, vaInt16, vaInt32, vaInt64};
// Returns the smallest width that holds `value`.
inline constexpr size_t WidthOf(int64_t value) {
  if (value == static_cast<int8_t>(value)) return 0;
  if (value == static_cast<int16_t>(value)) return 1;
  return value == static_cast<int32_t>(value) ? 2 : 3;
}

// An integer and by how many widths it is stored wider than needed. The text form writes a leading zero for
// each: 5 in 32 bits is "005".
struct TStoredInteger {
  int64_t Value;
  size_t ExtraWidth;
};

// The limit for the nesting of objects, collections, items and lists. Real forms stay far below it; damaged
// data does not.
inline constexpr size_t kMaxNesting = 10'000;

// The characters of names: letters, "_" and all bytes from 128 up, and after the first also digits.
inline constexpr uint8_t kNameStart = 1;
inline constexpr uint8_t kNamePart = 2;
inline constexpr auto kNameBytes = [] {
  std::array<uint8_t, 256> table{};
  for (size_t byte = 0; byte < 256; ++byte) {
    const bool letter =
        (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || byte == '_' || byte >= 128;
    const bool digit = byte >= '0' && byte <= '9';
    table[byte] = static_cast<uint8_t>((letter ? kNameStart | kNamePart : 0) | (digit ? kNamePart : 0));
  }
  return table;
}();
inline constexpr bool IsNameStart(char character) {
  return kNameBytes[static_cast<uint8_t>(character)] & kNameStart;
}
inline constexpr bool IsNamePart(char character) {
  return kNameBytes[static_cast<uint8_t>(character)] & kNamePart;
}

}  // namespace rtl
