// The form pass: component names that are used in other forms, and the aliases that a form declares.
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "MigWizard/passes/ComponentNames.h"
#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/passes/FormPass.h"
#include "rtl/text/ClassRegistry.h"
#include "win/paths/CodePage.h"
#include "win/paths/SourceBytes.h"

namespace mig {
namespace {

const qrl::TEncoding& Ansi = qrl::TEncoding::Default();
const qrl::TEncoding& Utf8 = qrl::TEncoding::UTF8();
const qrl::TEncoding& Utf16 = qrl::TEncoding::Unicode();

class FormPassTest : public testing::Test {
 protected:
  ~FormPassTest() override {
    EXPECT_TRUE(win::SetACP(1252));
    rtl::UnregisterClasses();
  }

  static std::string Databases(std::string_view text, bool takesInherited) {
    std::string list;
    FindDatabaseNames(text, Ansi, takesInherited, [&list](const TDeclaredDatabase& database) {
      list.append(database.IsInherited ? "inherited " : "").append(database.Alias).append("=");
      list.append(database.Component).append(" ");
    });
    return list;
  }
};

TEST_F(FormPassTest, Utf8ToSource) {
  const std::tuple<uint32_t, const char*, std::optional<std::string>> rows[] = {
      {1252, "Maßst€\x7F", "Ma\xDFst\x80\x7F"},
      {1252, "Форма", {}},
      {1252, "\xEF\xBF\xBD", {}},  // the replacement for an unreadable character
      {1252, "\xE9", {}},
      {1251, "Форма", "\xD4\xEE\xF0\xEC\xE0"},
      {932, "ｱフォ", "\xB1\x83\x74\x83\x48"},
      {936, "窗体", "\xB4\xB0\xCC\xE5"},
      {65001, "Форма", "Форма"},
  };
  for (const auto& [codePage, utf8, bytes] : rows) {
    ASSERT_TRUE(win::SetACP(codePage));
    EXPECT_EQ(win::Utf8ToSource(utf8), bytes) << codePage << " " << utf8;
  }
  for (const uint32_t codePage : win::SupportedCodePages()) {
    ASSERT_TRUE(win::SetACP(codePage));
    for (int byte = 1; byte < 256; ++byte) {
      const std::string utf8 = win::SourceToUtf8(std::string(1, static_cast<char>(byte)));
      if (utf8 != "\xEF\xBF\xBD") {
        EXPECT_EQ(win::SourceToUtf8(win::Utf8ToSource(utf8).value()), utf8) << codePage << " " << byte;
      }
    }
  }
}

TEST_F(FormPassTest, NamesComeOutInTheEncodingOfTheForm) {
  const struct {
    const qrl::TEncoding& From;
    const char* Name;
    const qrl::TEncoding& To;
    std::optional<std::string> Given;
  } rows[] = {
      {Ansi, "DM.Gr\xF6\xDF", Utf16, "DM.Größ"},
      {Ansi, "DM.Gr\xF6\xDF", Utf8, "DM.Größ"},
      {Ansi, "DM.Gr\xF6\xDF", Ansi, "DM.Gr\xF6\xDF"},
      {Utf16, "DM.Größ", Ansi, "DM.Gr\xF6\xDF"},
      {Utf8, "DM.Größ", Utf16, "DM.Größ"},
      {Utf16, "DM.Форма", Ansi, {}},
      {Utf16, "\xED\xA0\x80", Utf16, "\xED\xA0\x80"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(NameForForm(NameForRun(row.Name, row.From), row.To), row.Given) << row.Name;

  // Two byte sequences of code page 932 map to one character; a lead byte alone maps to none.
  ASSERT_TRUE(win::SetACP(932));
  for (const char* const name : {"\x87\x90", "\x81\xE0", "a\x81"})
    EXPECT_EQ(NameForForm(NameForRun(name, Ansi), Ansi), name);
  EXPECT_EQ(NameForForm(NameForRun("a\x81", Ansi), Utf16), std::nullopt);
}

TEST_F(FormPassTest, DatabaseNames) {
  const char* const rows[][2] = {
      {"object DM: TDataModule object D: TDatabase DatabaseName = 'Sales' end end", "Sales=DM.D "},
      {"object DM: TDataModule object D: TDatabase databasename = 'Sales' end end", ""},
      {"object DM: TDataModule object D: TDatabase DATABASENAME = 'Sales' end end", ""},
      {"object DM: TDataModule object D: tdatabase DatabaseName = 'Sales' end end", ""},
      {"object DM: TDataModule object D: TDatabase AliasName = 'Sales' end end", ""},
      {"object DM: TDataModule object D: TDatabase DatabaseName = 'A' + 'B' end end", "A=DM.D B=DM.D "},
      {"object DM: TDataModule object D: TDatabase end DatabaseName = 'A' end", ""},
      {"inherited A: TA object B: TB object D: TDatabase DatabaseName = 'A' end end end", "A=B.D "},
  };
  for (const auto& [text, databases] : rows) EXPECT_EQ(Databases(text, false), databases) << text;
  const char* const inherited =
      "inherited A: TA inherited D: TDatabase DatabaseName = 'A' object E: TDatabase "
      "DatabaseName = 'B' end DatabaseName = 'C' end end";
  EXPECT_EQ(Databases(inherited, false), "inherited A=A.D B=E.E ");
  EXPECT_EQ(Databases(inherited, true), "inherited A=A.D B=A.E ");
}

// Names declared in one form, used in forms with other encodings.
TEST_F(FormPassTest, ReferencesInFormsOfOtherEncodings) {
  rtl::RegisterClass({"TNew", {"Connection"}});
  TClassMap classes;
  classes.AddClass("TQuery", "TNew");
  TFileConverter converter(classes, "DBTABLES", ", New",
                           std::make_unique<TFormParser>(ParseStateClass<TFormParseState>()));
  converter.OnGetDatabase = [](std::string_view alias, const qrl::TEncoding&) {
    return std::string(alias == "Sales" ? "DM.Größe" : "DM.Форма");
  };
  const std::string text =
      "object A: TForm\r\nobject Q: TQuery\r\nDatabaseName = 'Sales'\r\nend\r\n"
      "object R: TQuery\r\nDatabaseName = 'Stock'\r\nend\r\nend\r\n";
  const auto expected = [](const char* sales, const char* stock) {
    return std::string("object A: TForm\r\n  object Q: TNew\r\n") + sales + "  end\r\n  object R: TNew\r\n" +
           stock + "  end\r\nend\r\n";
  };
  const std::string sales = "    Connection = DM.Größe\r\n", stock = "    Connection = DM.Форма\r\n";

  TFileConversion form = converter.Convert("C:\\A.dfm", text);
  EXPECT_EQ(form.Bytes, expected("    Connection = DM.Gr\xF6\xDF"
                                 "e\r\n",
                                 ""));
  EXPECT_EQ(form.UnwritableNames, std::vector<std::string>{"DM.Форма"});
  form = converter.Convert("C:\\A.dfm", "\xEF\xBB\xBF" + text);
  EXPECT_EQ(form.Bytes, expected(sales.c_str(), stock.c_str()));
  EXPECT_EQ(form.UnwritableNames, std::vector<std::string>{});
  form = converter.Convert("C:\\A.dfm", "\xFF\xFE" + Utf16.GetBytes(text));
  EXPECT_EQ(form.Bytes, Utf16.GetBytes(expected(sales.c_str(), stock.c_str())));
}

}  // namespace
}  // namespace mig
