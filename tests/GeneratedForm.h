// Generates forms of any size in binary form, the same on every machine: nested objects with properties
// similar to those of real forms. Uses only kinds of values for which all readers and writers of forms have
// the same rules.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "tests/HexText.h"

namespace tests {

class TGeneratedForm {
 public:
  explicit TGeneratedForm(uint32_t seed) : FRandom(seed) {}

  // Returns a form of at least `size` bytes, and only slightly more.
  std::string Binary(size_t size) {
    FBytes = "TPF0";
    Name("TForm1");
    Name("Form1");
    Properties();
    while (FBytes.size() < size) Object(0);
    return FBytes.append(1, '\0');
  }

 private:
  uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(FRandom() % limit); }
  void Byte(uint32_t byte) { FBytes += static_cast<char>(byte); }
  void Raw(uint64_t number, int bytes) {
    for (int i = 0; i < bytes; ++i) Byte(static_cast<uint8_t>(number >> (8 * i)));
  }
  void Name(std::string_view name) {
    Byte(static_cast<uint32_t>(name.size()));
    FBytes += name;
  }
  void Integer() {
    // The first two bits differ, so the value fits no smaller kind.
    const uint32_t kind = Below(4);
    static constexpr uint8_t kKinds[] = {2, 3, 4, 19};
    Byte(kKinds[kind]);
    Raw(FRandom() | uint64_t{FRandom()} << 32, (1 << kind) - 1);
    Byte(kind == 0 ? Below(256) : Below(64) + (Below(2) == 0 ? 0x40 : 0x80));
  }

  void String(uint32_t longest) {
    static constexpr std::string_view kWords[] = {
        "SELECT ", "CustNo", ", ", " FROM orders ", "WHERE ", "O'Hara", "&Name ", "1 = ", "\t", "(c) \r\n"};
    std::string text;
    const size_t length = Below(longest);
    while (text.size() < length) text += kWords[Below(10)];
    if (text.size() > 255) {
      Byte(12);
      Raw(text.size(), 4);
    } else {
      Byte(6);
      Byte(static_cast<uint32_t>(text.size()));
    }
    FBytes += text;
  }

  void Data() {
    const uint32_t length = Below(10) == 0 ? Below(2000) : Below(40);
    Byte(10);
    Raw(length, 4);
    for (uint32_t i = 0; i < length; ++i) Byte(Below(256));
  }

  void Property(uint32_t depth) {
    static constexpr std::string_view kNames[] = {"Left",     "Top",           "Caption", "Font.Name",
                                                  "TabOrder", "Items.Strings", "Glyph"};
    Name(kNames[Below(7)]);
    static constexpr std::string_view kPlain[] = {
        "08", "09", "07 09 'clBtnFace'", "07 06 'DM2.Q1'", "0B 06 'akLeft' 05 'akTop' 00", "0E 00", "0D"};
    const uint32_t kind = Below(14);
    if (kind < 6) {
      FBytes += FromHex(kPlain[Below(7)]);
    } else if (kind == 6) {
      Byte(1);
      for (uint32_t i = Below(12); i-- > 0;) String(70);
      Byte(0);
    } else if (kind == 7 && depth < 3) {
      Byte(14);
      for (uint32_t i = Below(4); i-- > 0;) {
        Byte(1);
        for (uint32_t j = Below(4); j-- > 0;) Property(depth + 1);
        Byte(0);
      }
      Byte(0);
    } else if (kind == 8) {
      String(Below(30) == 0 ? 600 : 60);
    } else if (kind == 9 && Below(4) == 0) {
      Data();
    } else {
      Integer();
    }
  }
  void Properties() {
    for (uint32_t i = Below(12); i-- > 0;) Property(0);
    Byte(0);
  }
  void Object(int depth) {
    if (Below(10) == 0) Byte(Below(2) ? 0xF1 : 0xF4);
    Name("TEdit");
    Name(Below(12) == 0 ? "" : "Edit" + std::to_string(Below(1000)));
    Properties();
    if (depth < 6)
      for (uint32_t i = Below(3); i-- > 0;) Object(depth + 1);
    Byte(0);
  }

  std::mt19937 FRandom;
  std::string FBytes;
};

}  // namespace tests
