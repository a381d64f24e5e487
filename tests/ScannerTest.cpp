// The scanner: the type of each token; all lexems concatenate to the text.
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>

#include "MigWizard/engine/PasParser.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

// Returns "KIND<LEXEM> " for each token; a single blank is "_ ".
std::string Scan(TPasParser scanner) {
  std::string tokens;
  std::string_view lexem;
  while (const int code = scanner.GetNext(lexem)) {
    const std::string kind = code == qrl::kWhiteSpace   ? "blank"
                             : code == qrl::kIdentifier ? "name"
                             : code == qrl::kNumber     ? "number"
                             : code == qrl::kString     ? "string"
                             : code == qrl::kComment    ? "comment"
                             : code == qrl::kOther      ? "other"
                             : code == qrl::kNul        ? "nul"
                                                        : std::to_string(code);
    tokens += lexem == " " ? "_ " : kind + "<" + std::string(lexem) + "> ";
  }
  EXPECT_EQ(lexem, "");
  return tokens;
}

const std::pair<std::string, std::string> kRows[] = {
    {"", ""},
    {" \t\r\n\x01x", "blank< \t\r\n\x01> name<x> "},
    {std::string("a\0b", 3), std::string("name<a> nul<\0> name<b> ", 23)},
    {"End INHERITED inline iTem object uses usesx EndDate",
     "28<End> _ 29<INHERITED> _ 30<inline> _ 31<iTem> _ 32<object> _ 33<uses> _ name<usesx> _ "
     "name<EndDate> "},
    {"DBTables.TQuery;", "name<DBTables> 13<.> name<TQuery> 16<;> "},
    {"_a1\xE9", "name<_a1\xE9> "},
    {"12FFx $0a 1.5e3", "number<12FF> name<x> _ number<$0a> _ number<1> 13<.> number<5e3> "},
    {"'It''s'x", "string<'It''s'> name<x> "},
    {"''''+''", "string<''''> 10<+> string<''> "},
    {"'open\r\nTQuery", "string<'open> blank<\r\n> name<TQuery> "},
    {"'", "string<'> "},
    {"{a}b{c", "comment<{a}> name<b> comment<{c> "},
    {"(*)a*)b(*", "comment<(*)a*)> name<b> comment<(*> "},
    {"//x'\ny/z", "comment<//x'> blank<\n> name<y> 14</> name<z> "},
    {"(a)", "7<(> name<a> 8<)> "},
    {"|}~\x7F", "other<|> other<}> other<~> other<\x7F> "},
    {"!\"#%&*+,-.:<=>?@[\\]^`",
     "1<!> 2<\"> 3<#> 4<%> 5<&> 9<*> 10<+> 11<,> 12<-> 13<.> 15<:> 17<<> 18<=> 19<>> 20<?> 21<@> 22<[> "
     "23<\\> "
     "24<]> 25<^> 27<`> "},
};

TEST(ScannerTest, Tokens) {
  for (const auto& [text, tokens] : kRows) EXPECT_EQ(Scan(TPasParser(text)), tokens) << text;
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
    EXPECT_EQ(scanner.GetNext(found), qrl::kString);
    EXPECT_EQ(found, lexem) << text;
  }
}

// 83 7B is one character in 932; its second byte alone is a brace.
TEST(ScannerTest, DoubleByteCharactersStayWhole) {
  ASSERT_TRUE(win::SetACP(932));
  const qrl::TEncoding& source = qrl::TEncoding::Default();
  EXPECT_EQ(Scan(TPasParser("{\x83\x7D}x", source)), "comment<{\x83\x7D}> name<x> ");
  EXPECT_EQ(Scan(TPasParser("a\x83\x7B\x83\x5B=", source)), "name<a\x83\x7B\x83\x5B> 18<=> ");
  EXPECT_EQ(Scan(TPasParser("\x83'x'", source)), "name<\x83> string<'x'> ");
  EXPECT_EQ(Scan(TPasParser("\x83{x}", qrl::TEncoding::UTF8())), "name<\x83> comment<{x}> ");
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
        if (code != qrl::kIdentifier && code != qrl::kComment) continue;
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
