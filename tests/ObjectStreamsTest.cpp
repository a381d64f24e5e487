// The conversions between the binary and the text form of forms.
#include <gtest/gtest.h>
#include <string>

#include "tests/ErrorOf.h"
#include "tests/HexText.h"
#include "tests/ObjectText.h"
#include "win/paths/CodePage.h"

namespace {

using tests::BinaryWith;
using tests::ErrorOf;
using tests::FromHex;
using tests::TextWith;
using tests::ToBinary;
using tests::ToHex;
using tests::ToText;
using tests::TValueRow;

TEST(ObjectStreamsTest, EveryKindOfValueBothWays) {
  for (const TValueRow& row : tests::kValues) {
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
      "'TPF0' F1 06 'TForm1' 05 'Form1' 09 'Font.Name' 06 05 'Arial' 03 'End' 02 01 06 'Object' 02 02 00F4 "
      "06 'TFrame' 01 'F' 00 F3 02 00 05 'TEdit' 01 'E' 00 00 00 06 'TLabel' 00 00 00F2 03 80 00 01 'T' 01 "
      "'X' 00 00 00");
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
  const auto narrow = [](const std::string& bytes) {
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

}  // namespace
