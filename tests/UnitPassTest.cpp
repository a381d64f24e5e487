// The unit pass: the changes in a unit, and the form file that it names.
#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>

#include "MigWizard/passes/FormPass.h"
#include "MigWizard/passes/FormSearch.h"
#include "MigWizard/passes/UnitPass.h"
#include "rtl/text/SysUtils.h"
#include "target/Catalogue.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

struct TUnitRow {
  const char* Source;
  const char* Target;
  int Changes;
};

const TUnitRow kUnitRows[] = {
    {"uses Forms, DBTables, DB;", "uses Forms, DBTables, New, Units, DB;", 1},
    {"USES dbtables;dbtables", "USES dbtables, New, Units;dbtables", 1},
    {"uses A, DBTables, TQuery, dbtables in 'x';",
     "uses A, DBTables, New, Units, TKVAQuery, dbtables, New, Units in 'x';", 3},
    {"uses A {;}, DBTables (* ; *), // ;\nDBTables;",
     "uses A {;}, DBTables, New, Units (* ; *), // ;\nDBTables, New, Units;", 2},
    {"uses {$IFDEF X} DBTables, {$ENDIF} Bde.DBTables;",
     "uses {$IFDEF X} DBTables, New, Units, {$ENDIF} Bde.DBTables, New, Units;", 2},
    {"DBTables", "DBTables", 0},
    {"a: tquery; b: DBTables.TQuery; c: TQueryHelper", "a: TKVAQuery; b: DBTables.TKVAQuery; c: TQueryHelper",
     2},
    {"x: TDatabase; y: tdatabase;", "x: <TDatabase>; y: <tdatabase>;", 2},
    {"{TQuery}(*TQuery*)//TQuery", "{TKVAQuery}(*TKVAQuery*)//TKVAQuery", 3},
    {"{ uses DBTables; TDatabase }", "{ uses DBTables; TKVAConnection }", 1},
    {"{$IFDEF TQuery}{$R+ TQuery}", "{$IFDEF TKVAQuery}{$R+ TKVAQuery}", 2},
    {"{$R TQuery.dfm}{$resource TQuery.dfm}", "{$R TQuery.dfm}{$resource TQuery.dfm}", 0},
    {"'TQuery", "'TQuery", 0},
    {"'TQuery\r\nTQuery", "'TQuery\r\nTKVAQuery", 1},
    {"end.\x1A TQuery \xE9", "end.\x1A TKVAQuery \xE9", 1},
};

class UnitPassTest : public testing::Test {
 protected:
  UnitPassTest() {
    FClasses.AddClass("TDatabase", "TKVAConnection");
    FClasses.AddClass("TQuery", "TKVAQuery");
  }

  TUnitResult Convert(std::string_view text) {
    const TUnitRules rules{
        FClasses, "DBTABLES", ", New, Units", [](std::string_view oldClass, std::string_view newClass) {
          return newClass == "TKVAConnection" ? "<" + std::string(oldClass) + ">" : std::string(newClass);
        }};
    return ConvertUnit(text, qrl::TEncoding::Default(), rules);
  }

  TClassMap FClasses;
};

TEST_F(UnitPassTest, Tokens) {
  for (const TUnitRow& row : kUnitRows) {
    const TUnitResult result = Convert(row.Source);
    EXPECT_EQ(result.Edits.Apply(row.Source), row.Target);
    EXPECT_EQ(result.Changes, row.Changes) << row.Source;
    EXPECT_EQ(result.Edits.Empty(), std::string_view(row.Source) == row.Target) << row.Source;
  }
}

// Directives and their forms in C:\src\Unit1.pas.
const char* const kFormRows[][2] = {
    {"{$R *.dfm}", "C:\\src\\Unit1.DFM"},
    {"{$r *.Nfm}", "C:\\src\\Unit1.NFM"},
    {"{$R *.dfm", "C:\\src\\Unit1.DFM"},
    {"{$R\t*.dfm}", ""},
    {"{$R Main.dfm}", "C:\\src\\Main.dfm"},
    {"{$R 'Main.Dfm' 'x'}", "C:\\src\\Main.Dfm"},
    {"{$R Unit1.dfm}", ""},
    {"{$R forms\\Main.dfm}", "C:\\src\\Main.dfm"},
    {"{$R .dfm}", ""},
    {"{$R Caf\xE9.dfm}", "C:\\src\\Caf\xC3\xA9.dfm"},
    {"{$R a\xD7x.dfm}", "C:\\src\\x.dfm"},
    {"{$R b.dfm\xE9}", ""},
};

TEST(FormSearchTest, Directives) {
  for (const auto& [directive, form] : kFormRows)
    EXPECT_EQ(FormFileOfDirective(directive, "C:\\src\\Unit1.pas", qrl::TEncoding::Default()), form)
        << directive;
}

TEST(FormSearchTest, Encodings) {
  const char* const source = "C:\\src\\Unit1.pas";
  EXPECT_EQ(FormFileOfDirective("{$R x\xC3\x97M\xC3\xBCll.dfm}", source, qrl::TEncoding::UTF8()),
            "C:\\src\\M\xC3\xBCll.dfm");
  EXPECT_EQ(FormFileOfDirective("{$R \xA9x.dfm}", source, qrl::TEncoding::UTF8()), "C:\\src\\x.dfm");
  ASSERT_TRUE(win::SetACP(1251));
  EXPECT_EQ(FormFileOfDirective("{$R \xC4\xE0.dfm}", source, qrl::TEncoding::Default()),
            "C:\\src\\\xD0\x94\xD0\xB0.dfm");
  ASSERT_TRUE(win::SetACP(932));
  EXPECT_EQ(FormFileOfDirective("{$R \x83\x7B.dfm}", source, qrl::TEncoding::Default()),
            "C:\\src\\\xE3\x83\x9C.dfm");
  ASSERT_TRUE(win::SetACP(1252));
}

TEST(WordSearchTest, FindsWhatIsThere) {
  std::mt19937 random(1);
  const auto text = [&random](size_t most) {
    std::string made;
    for (auto length = random() % most; length > 0; --length) made += "aAbBtT$4\xE1"[random() % 9];
    return made;
  };
  size_t found = 0;
  for (int round = 0; round < 20000; ++round) {
    TWordSearch search;
    std::vector<std::string> words;
    for (auto count = random() % 4; count > 0; --count) search.Add(words.emplace_back(text(8)));
    const std::string where = text(30);
    const bool isThere = std::any_of(words.begin(), words.end(), [&where](const std::string& word) {
      return rtl::LowerCase(where).find(rtl::LowerCase(word)) != std::string::npos;
    });
    const bool isShort =
        std::any_of(words.begin(), words.end(), [](const std::string& word) { return word.size() < 3; });
    EXPECT_EQ(search.FindAny(where), isThere || isShort) << where;
    found += isThere;
  }
  EXPECT_GT(found, 5000U);
}

// A text that the search skips is one that the passes would not change.
TEST_F(UnitPassTest, NothingChangesWithoutAWordOfTheMap) {
  std::mt19937 random(1);
  const char* const pieces[] = {"TQuer", "y",    "tquery", "TDataBase", " ",  "'", "{",   "}",        "//",
                                "\r\n",  "uses", ";",      "object",    ": ", "A", "end", "\xC3\xA9", "1"};
  TFormParser forms(ParseStateClass<TFormParseState>());
  size_t untouched = 0;
  for (int round = 0; round < 5000; ++round) {
    std::string text;
    for (auto count = random() % 14; count > 0; --count) text += pieces[random() % std::size(pieces)];
    if (FClasses.OldClasses().FindAny(text)) continue;
    EXPECT_EQ(Convert(text).Changes, 0) << text;
    rtl::TMemoryStream output;
    EXPECT_EQ(ConvertForm(text, qrl::TEncoding::Default(), FClasses, forms, output), 0) << text;
    ++untouched;
  }
  EXPECT_GT(untouched, 1000U);
}

}  // namespace
}  // namespace mig
