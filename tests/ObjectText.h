// Objects in binary and in text, and a table of every kind of value, for tests of the two conversions.
#pragma once

#include <string>
#include <string_view>

#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"

namespace tests {

inline std::string ToText(std::string_view binary, bool forPeople = false) {
  rtl::TBinaryInfo info;
  return rtl::ObjectBinaryToText(binary, {.ForPeople = forPeople}, info);
}

inline std::string ToBinary(std::string_view text, const rtl::TTextBinaryOptions& options = {}) {
  rtl::TTextInfo info;
  return rtl::ObjectTextToBinary(text, options, info);
}

// Returns the binary form of `object A: T` with one property P, and its text.
inline std::string BinaryWith(std::string_view value) {
  return std::string("TPF0\1T\1A\1P").append(value).append(2, '\0');
}
inline std::string TextWith(std::string_view value) {
  return std::string("object A: T\r\n  P = ").append(value).append("\r\nend\r\n");
}

struct TValueRow {
  const char* Hex;
  const char* Text;
  const char* ForPeople = nullptr;  // if it differs
};

// Every kind of value, as other programs store it.
inline constexpr TValueRow kValues[] = {
    {"00", "Null"},
    {"01 00", "()"},
    {"01 02 01 01 06 01 'a' 00 00", "(\r\n    1\r\n    (\r\n      'a'))"},
    {"02 80", "-128"},
    {"02 7F", "127"},
    {"03 80 00", "128"},
    {"03 7F FF", "-129"},
    {"03 00 80", "-32768"},
    {"04 00 80 00 00", "32768"},
    {"04 00 00 00 80", "-2147483648"},
    {"13 00 00 00 80 00 00 00 00", "2147483648"},
    {"13 00 00 00 00 00 00 00 80", "-9223372036854775808"},
    {"05 00 00 00 00 00 00 00 C0 FF 3F", "1.5"},
    {"05 00 00 00 00 00 00 00 80 00 C0", "-2.0"},
    {"05 00 00 00 00 00 00 00 00 00 80", "-0.0"},
    {"05 CD CC CC CC CC CC CC CC FB 3F", "0.1"},
    {"05 00 D0 CC CC CC CC CC CC FB 3F", "0.10000000000000000555"},
    {"05 00 00 F2 BE 1B 0C 91 E0 2D 40", "123456789012345.0"},
    {"05 00 00 00 A0 31 A9 5F E3 30 40", "1E15"},
    {"05 01 00 00 00 00 00 00 00 00 00", "3.64519953188247E-4951"},
    {"05 FF FF FF FF FF FF FF FF FE 7F", "1.189731495357231765E4932"},
    {"15 00 00 00 00 00 00 F8 3F", "1.5E0"},
    {"15 9A 99 99 99 99 99 B9 3F", "0.1E0"},
    {"15 34 33 33 33 33 33 D3 3F", "0.30000000000000004E0"},
    {"15 40 8C B5 78 1D AF 15 44", "100000000000000000000E0"},
    {"0F 00 00 C0 3F", "1.5s"},
    {"0F CD CC CC 3D", "0.100000001490116s"},
    {"0F 01 00 00 00", "1.40129846432482E-45s"},
    {"10 98 3A 00 00 00 00 00 00", "15000c"},
    {"10 00 00 00 00 00 00 00 80", "-9223372036854775808c"},
    {"11 00 00 00 00 C0 D5 E1 40", "36526d"},
    {"11 00 00 00 00 D0 D5 E1 40", "36526.5d"},
    {"06 03 'abc'", "'abc'"},
    {"06 04 'It' 27 's'", "'It''s'", "'It'#39's'"},
    {"06 02 27 27", "''''''", "#39#39"},
    {"06 06 'a' 0D 0A 00 7F 'b'", "'a'#13#10#0#127'b'"},
    {"06 03 80 E9 FF", "'\x80\xE9\xFF'"},
    {"12 01 00 00 00 E9 00", "#233"},
    {"12 02 00 00 00 3D D8 41 00", "#55357'A'"},
    {"14 03 00 00 00 'a' C3 A9", "'a'#233"},
    {"14 05 00 00 00 F0 9F 98 80 27", "#55357#56832''''", "#55357#56832#39"},
    {"07 09 'clBtnFace'", "clBtnFace"},
    {"07 08 'Form2.Q1'", "Form2.Q1"},
    {"08", "False"},
    {"09", "True"},
    {"0D", "nil"},
    {"0A 00 00 00 00", "{}"},
    {"0A 03 00 00 00 00 9F FF", "{009FFF}"},
    {"0B 00", "[]"},
    {"0B 06 'akLeft' 05 'akTop' 01 '7' 00", "[akLeft, akTop, 7]"},
    {"0E 00", "<>"},
    {"0E 01 01 'X' 02 01 00 02 03 01 00 03 80 00 01 01 'C' 0E 01 00 00 00 00",
     "<\r\n    item\r\n      X = 1\r\n    end\r\n    item [3]\r\n    end\r\n    item [128]\r\n      C = <\r\n"
     "        item\r\n        end>\r\n    end>"},
};

}  // namespace tests
