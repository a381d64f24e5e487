// The conversions between the binary and the text form of forms.
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"
#include "tests/ErrorOf.h"
#include "tests/HexText.h"
#include "win/paths/CodePage.h"

namespace {

using tests::ErrorOf;
using tests::FromHex;
using tests::ToHex;

std::string ToText(std::string_view binary, bool forPeople = false) {
  rtl::TBinaryInfo info;
  return rtl::ObjectBinaryToText(binary, {.ForPeople = forPeople}, info);
}

std::string ToBinary(std::string_view text, const rtl::TTextBinaryOptions& options = {}) {
  rtl::TTextInfo info;
  return rtl::ObjectTextToBinary(text, options, info);
}

// Returns the binary form of `object A: T` with one property P, and its text.
std::string BinaryWith(std::string_view value) {
  return std::string("TPF0\1T\1A\1P").append(value).append(2, '\0');
}
std::string TextWith(std::string_view value) {
  return std::string("object A: T\r\n  P = ").append(value).append("\r\nend\r\n");
}

struct TValueRow {
  const char* Hex;
  const char* Text;
  const char* ForPeople = nullptr;  // if it differs
};

// Every kind of value, as other programs store it.
constexpr TValueRow kValues[] = {
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

TEST(ObjectStreamsTest, EveryKindOfValueBothWays) {
  for (const TValueRow& row : kValues) {
    const std::string binary = BinaryWith(FromHex(row.Hex));
    const char* people = row.ForPeople ? row.ForPeople : row.Text;
    EXPECT_EQ(ToText(binary), TextWith(row.Text)) << row.Hex;
    EXPECT_EQ(ToText(binary, true), TextWith(people)) << row.Hex;
    EXPECT_EQ(ToHex(ToBinary(TextWith(row.Text))), ToHex(binary)) << row.Text;
    EXPECT_EQ(ToHex(ToBinary(TextWith(people))), ToHex(binary)) << people;
  }
}

TEST(ObjectStreamsTest, SpellingsThatAreOnlyRead) {
  const TValueRow rows[] = {
      {"02 10", "$10"},
      {"02 FF", "$FFFFFFFFFFFFFFFF"},
      {"13 FF FF FF FF 00 00 00 00", "$FFFFFFFF"},
      {"13 00 00 00 00 00 00 00 80", "-$8000000000000000"},
      {"02 05", "+5"},
      {"02 00", "-0"},
      {"05 00 00 00 00 00 00 00 80 FF 3F", "1."},
      {"05 00 00 00 00 00 00 00 FA 08 40", "1e+3"},
      {"05 00 00 00 00 00 00 00 FA 08 40", "1000.000E00"},
      {"05 00 00 00 00 00 00 00 00 00 00", "1E-99999999999999999999"},
      {"0F 00 00 80 3F", "1S"},
      {"10 02 00 00 00 00 00 00 00", "1.5c"},
      {"10 02 00 00 00 00 00 00 00", "2.5C"},
      {"08", "fAlSe"},
      {"06 02 'ab'", "'a'\n+ 'b'"},
      {"06 03 'a' 27 'b'", "'a'#39 + 'b'"},
      {"14 03 00 00 00 'a' C3 A9", "'a' +\r\n\t#233"},
      {"12 03 00 00 00 E9 00 AC 20 27 00", "'\xE9' + #8364''''"},  // a narrow piece, in code page 1252
      {"01 06 01 'a' 06 02 'bc' 02 01 00", "('a' 'b'+'c' 1)"},
      {"0B 01 'a' 01 'b' 00", "[ a ,b ]"},
      {"0A 03 00 00 00 AB CD EF", "{ aB\r\n c\td EF }"},
  };
  for (const TValueRow& row : rows)
    EXPECT_EQ(ToHex(ToBinary(TextWith(row.Text))), ToHex(BinaryWith(FromHex(row.Hex)))) << row.Text;
  EXPECT_EQ(ToHex(ToBinary("\xEF\xBB\xBFobject A: T P = 'a\xC3\xA9' end")),
            ToHex(BinaryWith(FromHex("14 03 00 00 00 'a' C3 A9"))));
}

TEST(ObjectStreamsTest, ObjectsTheirFlagsAndTheirOrder) {
  const std::string binary = FromHex(
      "'TPF0' F1 06 'TForm1' 05 'Form1' 09 'Font.Name' 06 05 'Arial' 03 'End' 02 01 06 'Object' 02 02 00"
      "F4 06 'TFrame' 01 'F' 00 F3 02 00 05 'TEdit' 01 'E' 00 00 00 06 'TLabel' 00 00 00"
      "F2 03 80 00 01 'T' 01 'X' 00 00 00");
  const std::string text =
      "inherited Form1: TForm1\r\n  Font.Name = 'Arial'\r\n  End = 1\r\n  Object = 2\r\n"
      "  inline F: TFrame\r\n    inherited E: TEdit [0]\r\n    end\r\n  end\r\n"
      "  object TLabel\r\n  end\r\n  object X: T [128]\r\n  end\r\nend\r\n";
  EXPECT_EQ(ToText(binary), text);
  EXPECT_EQ(ToHex(ToBinary(text)), ToHex(binary));
  EXPECT_EQ(ToHex(ToBinary("INHERITED Form1:TForm1 Font . Name='Arial' End=1 Object=2 Inline F:TFrame "
                           "inherited E:TEdit[0] END end object TLabel end object X:T[ 128 ] end end")),
            ToHex(binary));
  EXPECT_EQ(ToText("TPF0\1T" + std::string(3, '\0')), "object T\r\nend\r\n");
}

TEST(ObjectStreamsTest, StreamsAreReadAndWrittenAtTheirPositions) {
  const std::string binary = BinaryWith("\x09");
  rtl::TMemoryStream input("head" + binary + "tail");
  rtl::TMemoryStream text("....");
  input.SetPosition(4);
  text.SetPosition(2);
  rtl::ObjectBinaryToText(input, text);
  EXPECT_EQ(input.Position(), static_cast<int64_t>(4 + binary.size()));
  EXPECT_EQ(text.Bytes(), ".." + TextWith("True"));
  text.SetPosition(2);
  rtl::TMemoryStream output("**");
  output.SetPosition(2);
  rtl::ObjectTextToBinary(text, output);
  EXPECT_EQ(output.Bytes(), "**" + binary);
}

TEST(ObjectStreamsTest, EmptyStringsKeepTheKindOfTheirFile) {
  for (const char* hex : {"06 00", "0C 00 00 00 00", "12 00 00 00 00", "14 00 00 00 00"}) {
    const std::string binary = BinaryWith(FromHex(hex));
    rtl::TBinaryInfo info;
    const std::string text = rtl::ObjectBinaryToText(binary, {}, info);
    EXPECT_EQ(text, TextWith("''"));
    EXPECT_EQ(ToHex(ToBinary(text, {.EmptyString = info.EmptyString})), ToHex(binary));
  }
}

TEST(ObjectStreamsTest, LengthsAtTheirLimits) {
  struct {
    std::string Head;
    size_t Count;
    std::string Unit;
  } rows[] = {
      {FromHex("06 FF"), 255, "n"},         {FromHex("0C 00 01 00 00"), 256, "n"},
      {FromHex("07 FF"), 255, "n"},         {FromHex("12 00 01 00 00"), 256, FromHex("AC 20")},
      {FromHex("0A 1F 00 00 00"), 31, "n"}, {FromHex("0A 20 00 00 00"), 32, "n"},
      {FromHex("0A 41 00 00 00"), 65, "n"},
  };
  for (const auto& row : rows) {
    std::string value = row.Head;
    for (size_t i = 0; i < row.Count; ++i) value += row.Unit;
    for (const bool forPeople : {false, true}) {
      const std::string text = ToText(BinaryWith(value), forPeople);
      EXPECT_EQ(ToHex(ToBinary(text)), ToHex(BinaryWith(value))) << text;
    }
    for (size_t cut = 1; cut < value.size(); ++cut)
      EXPECT_NE(ErrorOf([&] { return ToText(BinaryWith({}) + value.substr(0, cut)); }), "none");
  }
  const std::string longClass(250, 'T');  // its length looks like a prefix
  EXPECT_EQ(ToText(ToBinary("object " + longClass + "\r\nend\r\n")), "object " + longClass + "\r\nend\r\n");
  EXPECT_EQ(ErrorOf([] { return ToBinary(TextWith(std::string(256, 'n'))); }),
            "Form text, line 2: a value is longer than 255 bytes (object A, property P).");
}

TEST(ObjectStreamsTest, LinesForPeople) {
  const std::string digits = "0123456789012345678901234567890123456789012345678901234567890123";  // 64
  const auto narrow = [](std::string bytes) {
    return BinaryWith(std::string("\x06") + static_cast<char>(bytes.size()) + bytes);
  };
  EXPECT_EQ(ToText(narrow(digits), true), TextWith("'" + digits + "'"));
  EXPECT_EQ(ToText(narrow(digits + "x"), true), TextWith("\r\n    '" + digits + "' +\r\n    'x'"));
  // 64 characters of the string, however long they are in print.
  const std::string quotes = std::string(63, 'q') + "\n'";
  EXPECT_EQ(ToText(narrow(quotes), true), TextWith("\r\n    '" + std::string(63, 'q') + "'#10 +\r\n    #39"));
  EXPECT_EQ(ToBinary(ToText(narrow(quotes), true)), narrow(quotes));
  EXPECT_EQ(ToText(narrow(digits + "x")), TextWith("'" + digits + "x'"));
  // A two-byte character stays on one line.
  for (const auto& [codePage, character] : {std::pair{949, "\xB0\xA1"}, std::pair{65001, "\xC3\xA9"}}) {
    ASSERT_TRUE(win::SetACP(static_cast<uint32_t>(codePage)));
    EXPECT_EQ(ToText(narrow(std::string(63, 'a') + character + "z"), true),
              TextWith("\r\n    '" + std::string(63, 'a') + character + "' +\r\n    'z'"));
  }
  ASSERT_TRUE(win::SetACP(1252));
  const std::string hexLine = "\r\n    6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E6E";
  EXPECT_EQ(ToText(BinaryWith(FromHex("0A 21 00 00 00") + std::string(33, 'n'))),
            TextWith("{" + hexLine + "\r\n    6E}"));
}

TEST(ObjectStreamsTest, DamagedBinaryIsRefused) {
  struct TRow {
    std::string Binary;
    int Offset;
    const char* Message;
  };
  const auto expectRefused = [](const TRow& row, const std::string& after) {
    EXPECT_EQ(ErrorOf([&] { return ToText(row.Binary); }),
              "Form data at offset " + std::to_string(row.Offset) + ": " + row.Message + after)
        << ToHex(row.Binary);
  };
  const TRow objects[] = {
      {"", 0, "the signature TPF0 is missing."},
      {"TPF1\1T", 0, "the signature TPF0 is missing."},
      {"TPF0", 4, "the data ends where an object must follow."},
      {FromHex("'TPF0' F8 01 'T' 00"), 4, "unknown object flags."},
      {FromHex("'TPF0' F5 01 'T' 00"), 4, "unknown object flags."},
      {FromHex("'TPF0' F2 09 01 'T' 00"), 5, "an object's position that is no integer."},
      {FromHex("'TPF0' 00 00"), 4, "a class name that is no name."},
      {FromHex("'TPF0' 01 'T' 03 'A' 0D 0A"), 6, "an object's name that is no name."},
      {FromHex("'TPF0' 01 'T' 00 02 'P.' 00 00"), 7, "a property's name that is no name (object T)."},
      {FromHex("'TPF0' 01 'T' 01 'A' 00 01 'U' 00 01 'Q' 09"), 15,
       "the data ends where a property must follow (object A.U)."},
      {BinaryWith(FromHex("0E 01 00 01 01 'Q' 0E 01 01 'R' 63")), 20,
       "unknown kind of value 99 (object A, property P[1].Q[0].R)."},
      {BinaryWith(FromHex("0E 02 05 02 01")), 13,
       "a collection item that is no list of properties (object A, property P[0])."},
  };
  for (const TRow& row : objects) expectRefused(row, "");
  const TRow values[] = {
      {"16", 10, "unknown kind of value 22"},
      {"06 09 'abc'", 12, "a string of 9 bytes, but only 5 are left"},
      {"0A FF FF FF 7F", 15, "binary data of 2147483647 bytes, but only 2 are left"},
      {"12 FF FF FF 7F", 15, "a wide string of 4294967294 bytes, but only 2 are left"},
      {"0C FF FF FF FF", 11, "a string of negative length -1"},
      {"14 04 00 00 00 'ab' C3 28", 17, "malformed UTF-8"},
      {"14 03 00 00 00 ED A0 80", 15, "malformed UTF-8"},
      {"0B 03 'a b' 00", 11, "an element of a set that is no name"},
  };
  for (const TRow& row : values)
    expectRefused({BinaryWith(FromHex(row.Binary)), row.Offset, row.Message}, " (object A, property P).");
}

// Integers that are stored wider than necessary.
TEST(ObjectStreamsTest, WideIntegersKeepTheirWidth) {
  const TValueRow rows[] = {
      {"03 00 00", "00"},
      {"03 80 FF", "-0128"},
      {"04 05 00 00 00", "005"},
      {"04 80 00 00 00", "0128"},
      {"04 FF FF FF FF", "-001"},
      {"13 05 00 00 00 00 00 00 00", "0005"},
      {"13 00 00 00 80 FF FF FF FF", "-02147483648"},
      {"01 03 01 00 02 01 00", "(\r\n    01\r\n    1)"},
      {"0B 02 '07' 03 '-07' 00", "[07, -07]"},
      {"0E 03 01 00 01 00 04 FF FF FF FF 01 00 00",
       "<\r\n    item [01]\r\n    end\r\n    item [-001]\r\n    end>"},
  };
  for (const TValueRow& row : rows) {
    const std::string binary = BinaryWith(FromHex(row.Hex));
    EXPECT_EQ(ToText(binary), TextWith(row.Text));
    EXPECT_EQ(ToText(binary, true), TextWith(row.Text));
    EXPECT_EQ(ToHex(ToBinary(TextWith(row.Text))), ToHex(binary)) << row.Text;
  }
  EXPECT_EQ(ToHex(ToBinary("object T [00000] P = 000000000000000000000007 end")),
            ToHex(FromHex("'TPF0' F2 04 00 00 00 00 01 'T' 00 01 'P' 13 07 00 00 00 00 00 00 00 00 00")));
}

// Infinities, NaNs with their payloads, and mantissas with a wrong leading bit. Text in memory preserves
// their bits; text for people cannot express them.
TEST(ObjectStreamsTest, FloatsWithoutADecimalText) {
  const TValueRow rows[] = {
      {"05 00 00 00 00 00 00 00 80 FF 7F", "9223372036854775808.32767E100005"},
      {"05 01 00 00 00 00 00 00 C0 FF FF", "13835058055282163713.65535E100005"},
      {"05 00 00 00 00 00 00 00 40 FF 3F", "4611686018427387904.16383E100005"},
      {"05 00 00 00 00 00 00 00 80 00 00", "9223372036854775808.0E100005"},
      {"05 00 00 00 00 00 00 00 80 00 80", "9223372036854775808.32768E100005"},
      {"05 00 00 00 00 00 00 00 00 00 3C", "0.15360E100005"},
      {"05 01 00 00 00 00 00 00 00 01 00", "1.1E100005"},
      {"0F 00 00 80 7F", "2139095040.0E100015"},
      {"0F 01 00 A0 FF", "4288675841.0E100015"},
      {"15 00 00 00 00 00 00 F0 FF", "18442240474082181120.0E100021"},
      {"15 01 00 00 00 00 00 F4 7F", "9219994337134247937.0E100021"},
      {"11 01 00 00 00 00 00 F8 7F", "9221120237041090561.0E100017"},
  };
  for (const TValueRow& row : rows) {
    const std::string binary = BinaryWith(FromHex(row.Hex));
    EXPECT_EQ(ToText(binary), TextWith(row.Text));
    EXPECT_EQ(ToHex(ToBinary(TextWith(row.Text))), ToHex(binary)) << row.Text;
    EXPECT_EQ(ErrorOf([&] { return ToText(binary, true); }),
              "Form data at offset 11: a floating-point number that is infinite, not a number or not "
              "normalised (object A, property P).");
  }
  // Bits of a number that has a decimal text, of too many bytes, of another kind, or of no kind.
  for (const char* text :
       {"4607182418800017408.0E100021", "2139095040.1E100015", "4288675841999.0E100015",
        "9223372036854775808.0E100006", "9223372036854775808.65536E100005", "-9223372036854775808.0E100005",
        "9223372036854775808E100005", "9223372036854775808.0E+100005", "2139095040.0E100015s"})
    EXPECT_EQ(ErrorOf([&] { return ToBinary(TextWith(text)); }),
              "Form text, line 2: a number that is too large for its kind (object A, property P).")
        << text;
}

TEST(ObjectStreamsTest, TextThatIsNoFormIsRefused) {
  using TRow = std::pair<std::string, const char*>;
  const auto expectRefused = [](const TRow& row, const std::string& before, const std::string& after) {
    EXPECT_EQ(ErrorOf([&] { return ToBinary(row.first); }), before + row.second + after) << row.first;
  };
  const TRow texts[] = {
      {" \r\n\r\n", "3: an object expected."},
      {"Left = 1", "1: an object expected."},
      {"object", "1: an object's name or class expected."},
      {"object A: T\r  object B: U end\r", "3: the text ends inside an object (object A)."},
      {"object A: T object B: U end\nX = 1 end",
       "2: an object or \"end\" expected after a nested object (object A)."},
      {"object A: T [x] end", "1: a position that is no integer of 32 bits (object A)."},
      {TextWith("1\r\n" + std::string(40, 'Q') + " . R = 1 S . 1"),
       "3: a property's name expected (object A, property S)."},
      {TextWith("<item X = 1 end x>"), "2: \"item\" or \">\" expected (object A, property P[0])."},
      {TextWith("<item X = ) end>"), "2: a value expected (object A, property P[0].X)."},
      {"object A: T P = {01", "1: binary data without its \"}\" (object A, property P)."},
  };
  for (const TRow& row : texts) expectRefused(row, "Form text, line ", "");
  const TRow values[] = {
      {"=", "a value expected"},
      {"'a' 'b'", "a property's name expected"},
      {"'a\r\nb'", "a string that is not closed on its line"},
      {"'a' + 5", "a string expected after \"+\""},
      {"#", "\"#\" without a character code"},
      {"#65536", "a character code above 65535"},
      {"1x", "malformed number"},
      {"1.2.3", "malformed number"},
      {"1E", "malformed number"},
      {"-", "malformed number"},
      {"$", "malformed number"},
      {"9223372036854775808", "an integer that 64 bits do not hold"},
      {"1E4933", "a number that is too large for its kind"},
      {"9223372036854775808c", "a currency value that 64 bits do not hold"},
      {"(1 Null)", "Null in a list, where it would be the end of the list"},
      {"[a b]", "\"]\" expected"},
      {"{0G}", "a character in binary data that is no hexadecimal digit"},
      {"{012}", "binary data with an odd number of digits"},
      {"{01", "a character in binary data that is no hexadecimal digit"},
  };
  for (const auto& [value, message] : values)
    expectRefused({TextWith(value), message}, "Form text, line 2: ", " (object A, property P).");
}

// Returns a form with every kind of value and of object, small enough to damage each of its bytes.
std::string SmallForm() {
  std::string form = FromHex("'TPF0' F3 02 05 02 'T1' 02 'Aa'");
  for (const TValueRow& row : kValues) {
    const std::string_view text = row.Text;
    const bool slowNumber = text.ends_with("E4932") || text.ends_with("E-4951");
    if (!slowNumber) form += FromHex("02 'P1'") + FromHex(row.Hex);
  }
  return form + FromHex("00 01 'T' 00 00 00 F4 01 'T' 01 'B' 01 'p' 07 01 'x' 00 00 00");
}

// Expects an error, or a form that its text converts back to.
void ExpectSoundOrRefused(const std::string& binary) {
  std::string text;
  try {
    text = ToText(binary);
  } catch (const rtl::EFilerError&) {
    return;
  }
  try {
    EXPECT_EQ(ToText(ToBinary(text)), text) << ToHex(binary);
  } catch (const rtl::EParserError& error) {
    ADD_FAILURE() << error.what() << " in\n" << text;
  }
}

TEST(ObjectStreamsTest, DamageGivesAnErrorOrAForm) {
  const std::string form = SmallForm();
  EXPECT_EQ(ToHex(ToBinary(ToText(form))), ToHex(form));
  for (size_t at = 0; at < form.size(); ++at) {
    ExpectSoundOrRefused(form.substr(0, at));
    for (const int change : {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0xFF}) {
      std::string damaged = form;
      damaged[at] = static_cast<char>(damaged[at] ^ change);
      ExpectSoundOrRefused(damaged);
    }
  }
  std::mt19937 random(1);
  for (const std::string& text : {ToText(form), ToText(form, true)}) {
    for (size_t at = 0; at < text.size(); ++at) {
      std::string damaged = text;
      damaged[at] = static_cast<char>(random());
      for (const std::string& candidate : {damaged, text.substr(0, at), damaged.erase(at, 1)}) try {
          ToText(ToBinary(candidate));
        } catch (const rtl::Exception&) {
          // Refused by the first conversion, or by the second if the text contains a float that overflows.
        }
    }
  }
}

TEST(ObjectStreamsTest, DeepNestingEndsInAnErrorAndNotInTheCallStack) {
  struct {
    std::string Head, Open, Close;  // the beginning, and one level of the binary form
    int Frames;                     // the levels of nesting that one of them adds
  } rows[] = {
      {FromHex("'TPF0' 01 'T' 00 00"), FromHex("01 'T' 00 00"), std::string(1, '\0'), 1},
      {FromHex("'TPF0' 01 'T' 00"), FromHex("01 'P' 0E 01"), std::string(2, '\0'), 2},
      {BinaryWith("").substr(0, 10), FromHex("01"), std::string(1, '\0'), 1},
  };
  for (const auto& row : rows) {
    const auto nested = [&](size_t levels) {
      std::string form = row.Head;
      for (size_t i = 0; i < levels; ++i) form += row.Open;
      for (size_t i = 0; i < levels; ++i) form += row.Close;
      return form + std::string(2, '\0');
    };
    const size_t most = (rtl::kMaxNesting - 1) / static_cast<size_t>(row.Frames);
    EXPECT_EQ(ToBinary(ToText(nested(most))).substr(0, 4 * most), nested(most).substr(0, 4 * most));
    const std::string error = ErrorOf([&] { return ToText(nested(1'000'000)); });
    EXPECT_NE(error.find("nesting of more than 10000 levels"), std::string::npos) << error;
    EXPECT_LT(error.size(), 600u);
  }
  const std::string lists = TextWith(std::string(1'000'000, '('));
  EXPECT_EQ(ErrorOf([&] { return ToBinary(lists); }),
            "Form text, line 2: nesting of more than 10000 levels (object A, property P).");
}

}  // namespace
