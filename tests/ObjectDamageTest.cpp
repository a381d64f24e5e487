// Damaged binary forms, and text that is no form: refused with the place and the reason, never a crash.
#include <gtest/gtest.h>
#include <string>

#include "tests/ErrorOf.h"
#include "tests/HexText.h"
#include "tests/ObjectText.h"

namespace {

using tests::BinaryWith;
using tests::ErrorOf;
using tests::FromHex;
using tests::TextWith;
using tests::ToBinary;
using tests::ToHex;
using tests::ToText;

TEST(ObjectDamageTest, DamagedBinaryIsRefused) {
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

TEST(ObjectDamageTest, TextThatIsNoFormIsRefused) {
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

TEST(ObjectDamageTest, DeepNestingEndsInAnErrorAndNotInTheCallStack) {
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
