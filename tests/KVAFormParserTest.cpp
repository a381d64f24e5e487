// The conversion of an object's properties, class by class.
#include <gtest/gtest.h>

#include "rtl/text/ClassRegistry.h"
#include "target/KVAFormParser.h"

namespace target {
namespace {

class KVAFormParserTest : public testing::Test {
 protected:
  void SetUp() override {
    rtl::RegisterClass(
        {"TNewClass", {"Name", "SQL", "AutoCommit", "OnError", "DataSource", "ParamData", "Params"}});
    FParser.OnGetPropValue = [](std::string_view propName, std::string_view propValue) {
      return propName == "DatabaseName" && propValue == "MainDB" ? std::string("Data.Base") : std::string();
    };
  }
  void TearDown() override { rtl::UnregisterClasses(); }

  // Returns the printed lines of the properties, without indentation, each followed by a full stop.
  std::string Convert(std::string_view oldClass, std::string_view properties, std::string_view newClass) {
    FText.assign("object Q: ").append(oldClass).append("\n").append(properties).append("\nend");
    FParser.SetNewType(newClass);
    int64_t position = 1;
    if (!FParser.Parse(FText, "<object>", position)) return "refused";
    std::string printed;
    FParser.PrintObject(0, printed);
    std::string lines;
    for (size_t start = printed.find('\n') + 1, end; start + 5 < printed.size(); start = end + 2) {
      end = printed.find("\r\n", start);
      start = printed.find_first_not_of(' ', start);
      lines.append(printed, start, end - start).append(". ");
    }
    return lines;
  }

 private:
  TKVAFormParser FParser{mig::ParseStateClass<mig::TFormParseState>()};
  std::string FText;
};

struct TRow {
  const char* OldClass;
  const char* Properties;
  const char* Lines;
};

TEST_F(KVAFormParserTest, Properties) {
  const TRow rows[] = {
      // The filter.
      {"TUpdateSQL",
       "Name = 'x' name = 1 Names = 2 onerror = P SQL.Strings = () SQLX.Strings = () Left = 1 Top = 2 left = "
       "3",
       "Name = 'x'. name = 1. onerror = P. SQL.Strings = (). Left = 1. Top = 2. "},
      {"TUpdateSQL", "Left.X = 1 Tag = 2", ""},
      // Borland Database Engine.
      {"TDatabase", "DatabaseName = 'MainDB' Left = 1", "Left = 1. "},
      {"TUpdateSQL", "DatabaseName = 'MainDB'", "Connection = Data.Base. "},
      {"TUpdateSQL", "DatabaseName = 'Other'", ""},
      {"TUpdateSQL", "DatabaseName = 'Main' + 'DB'", ""},
      {"TUpdateSQL", "databasename = 'MainDB'", ""},
      {"TQuery", "DataSource = DS", "MasterSource = DS. AutoCommit = True. "},
      {"TBatchMove", "ParamData = <>", "ParamData = <>. "},
      // InterBase Express, and rules for every class.
      {"TUpdateSQL", "Database = D DefaultDatabase = E database = F",
       "Connection = D. DefaultConnection = E. "},
      {"TIBDatabase", "DatabaseName = 'MainDB'", "Database = 'MainDB'. "},
      {"TIBDataset", "DatabaseName = 'MainDB'", "Connection = Data.Base. AutoCommit = True. "},
      {"TUpdateSQL", "DefaultAction = TACommit", ""},
      {"TIBDataset", "SelectSQL.Strings = ('s')", "AutoCommit = True. "},
      {"TIBUpdateSQL", "ModifySQL.Strings = ('s')", ""},
      // The line added to data sets, after all others.
      {"TStoredProc", "AutoCommit = False Left = 1", "AutoCommit = False. Left = 1. AutoCommit = True. "},
      {"TWWSTOREDPROC", "", "AutoCommit = True. "},
      {"TIBSQL", "object F: TField end", "AutoCommit = True. object F: TField end. "},
  };
  for (const TRow& row : rows)
    EXPECT_EQ(Convert(row.OldClass, row.Properties, "TNewClass"), row.Lines)
        << row.OldClass << " " << row.Properties;
  EXPECT_EQ(Convert("TUpdateSQL", "Tag = 2 SelectSQL.Strings = ()", "TUnknown"),
            "Tag = 2. SelectSQL.Strings = (). ");
  rtl::RegisterClass({"TBareClass", {}});
  for (const char* const oldClass : {"TQuery", "TStoredProc"})
    EXPECT_EQ(Convert(oldClass, "ParamData = <> Params = 1", "TBareClass"),
              "ParamData = <>. AutoCommit = True. ");
}

TEST_F(KVAFormParserTest, LoginParameters) {
  const TRow rows[] = {
      {"TDatabase", "('SERVER NAME=s'\r\n  'USER NAME=u'\n'X=1' \r\n 'PASSWORD=p')",
       "Username = 'u'. Password = 'p'. Server = 's'. "},
      {"TDatabase", "('USER NAME=u' 'PASSWORD=p')", "Username = 'u'. Password = 'p'. "},
      {"TDatabase", "('SERVER NAME=C:\\Data\\' +\r\n    'long name'\r\n 'PASSWORD=p' + 'q'#13'r')",
       "Password = 'p' + 'q'#13'r'. Server = 'C:\\Data\\' +. 'long name'. "},
      {"TDatabase", "('PASSWORD='#65'b'\n'USER NAME='+'u')", "Username = ''+'u'. Password = ''#65'b'. "},
      {"TDatabase", "(#65'=1'\n'PASS'+'WORD=x'\n#80'PASSWORD=y')", ""},
      {"TDatabase", "('PASSWORD=a\r\nb')", "Password = 'a. b'. "},
      {"TDatabase", "'(USER NAME=x)'", "Username = 'x'. "},
      {"TDatabase", "(1 2)", ""},
      {"TTable", "('PASSWORD=p')", "Params.Strings = ('PASSWORD=p'). AutoCommit = True. "},
  };
  for (const TRow& row : rows)
    EXPECT_EQ(Convert(row.OldClass, std::string("Params.Strings = ") + row.Properties, "TNewClass"),
              row.Lines)
        << row.Properties;
}

}  // namespace
}  // namespace target
