// The scanner: the type of each token; all lexems concatenate to the text.
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "MigWizard/engine/PasParser.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

constexpr int kBlank = qrl::kWhiteSpace, kName = qrl::kIdentifier, kNum = qrl::kNumber, kStr = qrl::kString,
              kRem = qrl::kComment, kOther = qrl::kOther;

struct TRow {
  std::string Text;
  std::vector<std::pair<int, std::string>> Tokens;
};

std::vector<std::pair<int, std::string>> Scan(TPasParser scanner) {
  std::vector<std::pair<int, std::string>> tokens;
  std::string_view lexem;
  while (const int code = scanner.GetNext(lexem)) tokens.emplace_back(code, lexem);
  EXPECT_EQ(lexem, "");
  return tokens;
}

const TRow kRows[] = {
    {"", {}},
    {" \t\r\n\x01x", {{kBlank, " \t\r\n\x01"}, {kName, "x"}}},
    {std::string("a\0b", 3), {{kName, "a"}, {qrl::kNul, std::string(1, '\0')}, {kName, "b"}}},
    {"End INHERITED inline iTem object uses usesx EndDate",
     {{28, "End"},
      {kBlank, " "},
      {29, "INHERITED"},
      {kBlank, " "},
      {30, "inline"},
      {kBlank, " "},
      {31, "iTem"},
      {kBlank, " "},
      {32, "object"},
      {kBlank, " "},
      {33, "uses"},
      {kBlank, " "},
      {kName, "usesx"},
      {kBlank, " "},
      {kName, "EndDate"}}},
    {"DBTables.TQuery;", {{kName, "DBTables"}, {13, "."}, {kName, "TQuery"}, {16, ";"}}},
    {"_a1\xE9", {{kName, "_a1\xE9"}}},
    {"12FFx $0a 1.5e3",
     {{kNum, "12FF"},
      {kName, "x"},
      {kBlank, " "},
      {kNum, "$0a"},
      {kBlank, " "},
      {kNum, "1"},
      {13, "."},
      {kNum, "5e3"}}},
    {"'It''s'x", {{kStr, "'It''s'"}, {kName, "x"}}},
    {"''''+''", {{kStr, "''''"}, {10, "+"}, {kStr, "''"}}},
    {"'open\r\nTQuery", {{kStr, "'open"}, {kBlank, "\r\n"}, {kName, "TQuery"}}},
    {"'", {{kStr, "'"}}},
    {"{a}b{c", {{kRem, "{a}"}, {kName, "b"}, {kRem, "{c"}}},
    {"(*)a*)b(*", {{kRem, "(*)a*)"}, {kName, "b"}, {kRem, "(*"}}},
    {"//x'\ny/z", {{kRem, "//x'"}, {kBlank, "\n"}, {kName, "y"}, {14, "/"}, {kName, "z"}}},
    {"(a)", {{7, "("}, {kName, "a"}, {8, ")"}}},
    {"|}~\x7F", {{kOther, "|"}, {kOther, "}"}, {kOther, "~"}, {kOther, "\x7F"}}},
    {"!\"#%&*+,-.:<=>?@[\\]^`",
     {{1, "!"},  {2, "\""}, {3, "#"},  {4, "%"},   {5, "&"},  {9, "*"},  {10, "+"},
      {11, ","}, {12, "-"}, {13, "."}, {15, ":"},  {17, "<"}, {18, "="}, {19, ">"},
      {20, "?"}, {21, "@"}, {22, "["}, {23, "\\"}, {24, "]"}, {25, "^"}, {27, "`"}}},
};

TEST(ScannerTest, Tokens) {
  for (const TRow& row : kRows) EXPECT_EQ(Scan(TPasParser(row.Text)), row.Tokens) << row.Text;
}

TEST(ScannerTest, Words) {
  TPasParser scanner("Uses a = 12 'b' (c) {d} end|");
  std::string_view lexem;
  std::string words;
  while (const int code = scanner.GetNextWord(lexem))
    words.append(lexem).append(" ").append(std::to_string(code)).append(", ");
  EXPECT_EQ(words, "Uses 33, a -103, c -103, {d} -108, end 28, ");
}

TEST(ScannerTest, StringsWithoutQuotes) {
  const std::pair<const char*, const char*> rows[] = {{"'Sales'", "Sales"}, {"'It''s'", "It''s"}, {"''", ""},
                                                      {"'open", "open"},    {"'open\n", "open"},  {"'", ""}};
  for (const auto& [text, lexem] : rows) {
    TPasParser scanner(text);
    scanner.SetQuotedStrings(false);
    std::string_view found;
    EXPECT_EQ(scanner.GetNext(found), kStr);
    EXPECT_EQ(found, lexem) << text;
  }
}

// 83 7B is one character in 932; its second byte alone is a brace.
TEST(ScannerTest, DoubleByteCharactersStayWhole) {
  ASSERT_TRUE(win::SetACP(932));
  const qrl::TEncoding& source = qrl::TEncoding::Default();
  using TTokens = std::vector<std::pair<int, std::string>>;
  EXPECT_EQ(Scan(TPasParser("{\x83\x7D}x", source)), (TTokens{{kRem, "{\x83\x7D}"}, {kName, "x"}}));
  EXPECT_EQ(Scan(TPasParser("a\x83\x7B\x83\x5B=", source)),
            (TTokens{{kName, "a\x83\x7B\x83\x5B"}, {18, "="}}));
  EXPECT_EQ(Scan(TPasParser("\x83'x'", source)), (TTokens{{kName, "\x83"}, {kStr, "'x'"}}));
  EXPECT_EQ(Scan(TPasParser("\x83{x}", qrl::TEncoding::UTF8())), (TTokens{{kName, "\x83"}, {kRem, "{x}"}}));
  ASSERT_TRUE(win::SetACP(1252));
}

TEST(ScannerTest, LexemsPutEndToEndAreTheText) {
  std::mt19937 random(1);
  const std::string_view alphabet("aZ_9$'{}(*)/;.\r\n \x81\x7B\x00|", 21);
  for (const unsigned codePage : {1252U, 936U}) {
    ASSERT_TRUE(win::SetACP(codePage));
    for (int round = 0; round < 2000; ++round) {
      std::string text;
      for (auto length = random() % 40; length > 0; --length) text += alphabet[random() % alphabet.size()];
      TPasParser scanner(text, qrl::TEncoding::Default());
      TPasParser words(text, qrl::TEncoding::Default());
      std::string together;
      std::string_view lexem, word;
      while (const int code = scanner.GetNext(lexem)) {
        ASSERT_EQ(scanner.PrevPos(), together.size());
        ASSERT_FALSE(lexem.empty());
        together += lexem;
        if (code != kName && code != kRem) continue;
        ASSERT_EQ(words.GetNextWord(word), code) << text;
        ASSERT_EQ(word.data(), lexem.data());
        ASSERT_EQ(words.PrevPos(), scanner.PrevPos());
      }
      ASSERT_EQ(together, text);
      ASSERT_EQ(words.GetNextWord(word), qrl::kEndOfText) << text;
    }
  }
  ASSERT_TRUE(win::SetACP(1252));
}

}  // namespace
}  // namespace mig
