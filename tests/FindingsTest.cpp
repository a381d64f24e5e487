// Findings of a conversion: tables of sources and all their findings.
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/passes/FindingRules.h"
#include "MigWizard/run/RunFindings.h"
#include "rtl/text/ClassRegistry.h"
#include "target/KVAFormParser.h"
#include "target/KVAReplacer.h"
#include "target/OldNameList.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

// Returns "LINE:COLUMN LEVEL RULE: MESSAGE" for each finding.
std::string Printed(const std::vector<TFinding>& findings) {
  std::string text;
  for (const TFinding& finding : findings) {
    text.append(std::to_string(finding.Line)).append(":").append(std::to_string(finding.Column)).append(" ");
    text.append(LevelName(finding.Level)).append(" ").append(RuleOf(finding.Rule).Name).append(": ");
    text.append(MessageOf(finding)).append("\n");
  }
  return text;
}

std::string Printed(const TFileConversion& file) {
  return file.Findings ? Printed(file.Findings->Findings) : std::string();
}

class FindingsTest : public testing::Test {
 protected:
  FindingsTest() : FMigration(target::TCatalogue::BuiltIn()) {
    for (const char* const name : {"TQuery", "TwwQuery", "TIBQuery", "TIBDataSet"})
      FClasses.AddClass(name, "TKVAQuery");
    for (const char* const name : {"TTable", "TIBTable"}) FClasses.AddClass(name, "TKVATable");
    for (const char* const name : {"TDatabase", "TIBDatabase"}) FClasses.AddClass(name, "TKVAConnection");
    FClasses.AddClass("TIBTransaction", "TKVATransaction");
    FClasses.AddClass("TBatchMove", "THXBatchMove");
    FNames = target::BuiltInOldNames(FClasses);
    FConverter = std::make_unique<TFileConverter>(
        FClasses, "DBTABLES", ", New, Units",
        std::make_unique<target::TKVAFormParser>(ParseStateClass<TFormParseState>()));
    FConverter->CollectFindings(FNames);
    FConverter->OnGetDatabase = [](std::string_view alias, const qrl::TEncoding&) {
      return std::string(alias == "Known" ? "DM.Db" : alias == "Far" ? "DM.Форма" : "");
    };
    FConverter->OnGetInheritedDatabase = [](std::string_view alias, const qrl::TEncoding&) {
      return std::string(alias == "Above" ? "Base.D" : "");
    };
    FConverter->OnGetReplacement = [](std::string_view oldClass, std::string_view newClass) {
      return std::string(newClass).append(oldClass == "TDatabase" ? ";\r\n    Transaction: TKVATransaction"
                                                                  : "");
    };
  }
  ~FindingsTest() override {
    EXPECT_TRUE(win::SetACP(1252));
    rtl::UnregisterClasses();
  }

  std::string Find(std::string_view name, std::string_view text) {
    return Printed(FConverter->Convert("C:\\" + std::string(name), std::string(text)));
  }
  // Returns the findings of an object in a form. They begin at line 2.
  std::string FindInObject(std::string_view object) {
    return Find("A.dfm", "object F: TForm\r\n" + std::string(object) + "\r\nend\r\n");
  }

  // Returns the findings of a run over units, only those of the rules old-class, old-call and old-member.
  std::string FindInRun(const std::vector<std::pair<std::string, std::string>>& units) {
    TRunFindings run(FClasses, FNames);
    for (const auto& [name, text] : units)
      run.AddFile("C:\\" + name, FConverter->Convert("C:\\" + name, text), false, {});
    std::string printed;
    for (TFileReport& file : run.Finish()) {
      std::erase_if(file.Findings, [](const TFinding& finding) {
        return finding.Rule < TRuleId::OldClass || finding.Rule > TRuleId::OldMember;
      });
      printed += Printed(file.Findings);
    }
    return printed;
  }

  target::TKVAMigration FMigration;
  TClassMap FClasses;
  TOldNames FNames;
  std::unique_ptr<TFileConverter> FConverter;
};

struct TRow {
  const char* Source;
  const char* Findings;
};

TEST_F(FindingsTest, Forms) {
  const TRow rows[] = {
      {"  object Q: TQuery\r\n    Tag = 1\r\n    SQL.Strings = ()\r\n  end", ""},
      {"  object Q: TQuery\r\n    SessionName = 'S'\r\n    UpdateMode = upWhereChanged\r\n    OnFoo = "
       "QFoo\r\n  end",
       "3:5 warning dropped-property: the property SessionName of F.Q is dropped, because TKVAQuery does not "
       "publish it\n"
       "4:5 warning dropped-property: the property UpdateMode of F.Q is dropped, because TKVAQuery does not "
       "publish it\n"
       "5:5 warning dropped-property: the event handler OnFoo of F.Q is dropped, because TKVAQuery does not "
       "publish it\n"},
      // The root decides, of the new object and with its added line.
      {"  object Q: TQuery\r\n    Left = 1\r\n    Left.X = 2\r\n    Font.Name = 'x'\r\n  end",
       "5:5 warning dropped-property: the property Font.Name of F.Q is dropped, because TKVAQuery does not "
       "publish it\n"},
      {"  object D: TDatabase\r\n    DatabaseName = 'Known'\r\n  end",
       "3:5 warning dropped-property: the property DatabaseName of F.D is dropped, because TKVAConnection "
       "does not publish it\n"},
      {"  object D: TDatabase\r\n    Params.Strings = (\r\n      'USER NAME=u'\r\n      'LANGDRIVER=x'\r\n   "
       "   'user name=v'\r\n      'PASSWORD=tiger'\r\n      'odd')\r\n  end",
       "5:7 warning dropped-login-entry: the login entry LANGDRIVER of F.D is dropped, because "
       "TKVAConnection has no property for it\n"
       "6:7 warning dropped-login-entry: the login entry user name of F.D is dropped, because TKVAConnection "
       "has no property for it\n"
       "8:7 warning dropped-login-entry: the login entry (no name) of F.D is dropped, because TKVAConnection "
       "has no property for it\n"},
      {"  object D: tdatabase\r\n    Params.Strings = ('PASSWORD=tiger')\r\n  end",
       "3:23 warning dropped-login-entry: the login entry PASSWORD of F.D is dropped, because TKVAConnection "
       "has no property for it\n"},
      {"  object Q: TQuery\r\n    DatabaseName = 'Known'\r\n  end\r\n  object R: TQuery\r\n    DatabaseName "
       "= 'Lost'\r\n    DatabaseName = 'Lost'\r\n  end",
       "6:5 error lost-connection: F.R has lost its connection: the run found no database of the alias "
       "\"Lost\"\n"},
      {"  object Q: TQuery\r\n    DatabaseName = 'Far'\r\n  end",
       "3:5 error lost-connection: F.Q has lost its connection: the form's encoding lacks the name of the "
       "database of the alias \"Far\"\n"},
      {"  object Q: TQuery\r\n    DatabaseName = 'Above'\r\n  end",
       "3:5 error lost-connection: F.Q has lost its connection: Base.D, which declares the alias \"Above\", "
       "is inherited and keeps its class\n"},
      {"  object T: TTable\r\n    IndexFieldNames = 'A;B'\r\n  end\r\n  object U: TTable\r\n    "
       "IndexFieldNames = 'A'\r\n    MasterSource = S\r\n  end",
       "3:5 warning order-became-detail: IndexFieldNames of F.T became DetailFields, but the data set has no "
       "master: 'A;B'\n"},
      {"  object T: TIBTransaction\r\n    DefaultAction = TARollback\r\n  end",
       "3:5 error old-value: DefaultAction of F.T has the value TARollback, which TKVATransaction does not "
       "know\n"},
      {"  object Q: TQuery\r\n    Tag = 1\r\n    Color = $FF\r\n  end",
       "4:5 error unparsed-object: F.Q is not converted, because its property Color cannot be read\n"},
      {"  object Q: TQuery [1]\r\n  end",
       "2:3 error unparsed-object: F.Q is not converted, because its header cannot be read\n"},
      {"  object Q: TQuery\r\n    object N: TX\r\n      A = 1end\r\n    end\r\n  end",
       "4:7 error unparsed-object: F.Q is not converted, because its property A cannot be read\n"},
      {"  inherited Q: TQuery\r\n    Tag = 1\r\n  end\r\n  inline R: TQuery\r\n    SessionName = 'S'\r\n    "
       "DataSource = D\r\n    object X: TQuery\r\n    end\r\n  end",
       "2:3 warning inherited-object: F.Q is declared with \"inherited\" and keeps its class TQuery\n"
       "5:3 error inherited-object: F.R is declared with \"inline\" and keeps its class TQuery; TKVAQuery "
       "does not publish SessionName, DataSource\n"},
      {"  object Q: TQuery\r\n    object R: TQuery\r\n      SessionName = 'S'\r\n    end\r\n    inherited S: "
       "TTable\r\n    end\r\n  end",
       "3:5 error nested-object: F.Q.R lies in a converted object and keeps its class TQuery\n"
       "6:5 warning inherited-object: F.Q.S is declared with \"inherited\" and keeps its class TTable\n"},
      {"  object S: TSession\r\n  end\r\n  object Q: TIBStringField\r\n  end",
       "2:3 warning unmapped-class: F.S is a TSession, which nothing takes the place of\n"
       "4:3 warning unmapped-class: F.Q is a TIBStringField, which nothing takes the place of\n"},
      {"  object B: TBatchMove\r\n    Mode = batAppend\r\n  end",
       "2:3 note no-published-list: F.B keeps all its properties, because it is not known what THXBatchMove "
       "publishes\n"},
      // Strings, collections, and properties with the names of words are no objects.
      {"  object L: TLabel\r\n    Caption = 'object Q: TQuery'\r\n    Hint = 'it''s' \r\n      + ' end'\r\n  "
       "  Tag = -1\r\n    "
       "Font.Style = [fsBold, fsItalic]\r\n    Lines.Strings = (\r\n      'a)'\r\n      'end')\r\n    Item = "
       "1\r\n    X.End = 2\r\n    Items = <\r\n     "
       " item\r\n        A = <\r\n          item\r\n            B = 1.5e+3\r\n          end>\r\n      "
       "end>\r\n  end\r\n  inherited Q: TQuery\r\n  end",
       "21:3 warning inherited-object: F.Q is declared with \"inherited\" and keeps its class TQuery\n"},
  };
  for (const TRow& row : rows) EXPECT_EQ(FindInObject(row.Source), row.Findings) << row.Source;
  // A later run does not know the alias.
  FConverter->OnGetDatabase = [](std::string_view, const qrl::TEncoding&) { return std::string(); };
  EXPECT_EQ(FindInObject("object Q: TQuery DatabaseName = 'Far' end"),
            "2:18 error lost-connection: F.Q has lost its connection: the run found no database of the alias "
            "\"Far\"\n");
}

TEST_F(FindingsTest, ValuesThatCouldBeSecretsAreWithheld) {
  const char* const rows[][2] = {
      {"Hint = 'plain'", "'plain'"},
      {"DBPassword = 'tiger'", "(withheld)"},
      {"Hint = 'user=x;PWD=tiger'", "(withheld)"},
      {"Lines.Strings = (\r\n'a'\r\n'b')", "( 'a' 'b')"},
  };
  for (const auto& [property, value] : rows) {
    const std::string form =
        "object F: TForm\r\nobject Q: TQuery\r\n" + std::string(property) + "\r\nend\r\nend\r\n";
    const TFileConversion file = FConverter->Convert("C:\\A.dfm", form);
    ASSERT_EQ(file.Findings->Findings.size(), 1u);
    EXPECT_EQ(file.Findings->Findings[0].Value, value);
  }
}

TEST_F(FindingsTest, PlacesCountCharactersOfTheFile) {
  const std::string utf8 =
      "object F: TForm\r\n  Caption = 'ß' {я} object Q: TQuery SessionName = 'ü' end\r\nend";
  const std::string findings =
      "2:38 warning dropped-property: the property SessionName of F.Q is dropped, because TKVAQuery does not "
      "publish it\n";
  EXPECT_EQ(Find("A.dfm", "\xFF\xFE" + qrl::TEncoding::Unicode().GetBytes(utf8)), findings);
  EXPECT_EQ(Find("A.dfm", "\xEF\xBB\xBF" + utf8),
            "1:1 warning lost-mark: the file is written without its UTF-8 byte order mark\n" + findings);
  ASSERT_TRUE(win::SetACP(932));
  EXPECT_EQ(
      Find("A.dfm",
           "object F: TForm\n  Caption = '\x83\x74' {\x83\x74} object Q: TQuery SessionName = '' end\rend"),
      "1:1 note mixed-line-ends: the file has 2 line end(s) other than CR LF, and the conversion writes CR "
      "LF\n" +
          findings);
}

TEST_F(FindingsTest, Units) {
  const TRow rows[] = {
      {"unit A;\r\nuses DBTables, Bde.BDE, IBX.IBQuery, My.DBTables, BDE in 'x.pas';\r\nend.",
       "2:6 warning old-unit: the unit uses DBTables, a unit of the old components\n"
       "2:16 warning old-unit: the unit uses Bde.BDE, a unit of the old components\n"
       "2:25 warning old-unit: the unit uses IBX.IBQuery, a unit of the old components\n"
       "2:38 error doubled-units: the uses clauses name New, Units 2 times\n"},
      {"unit A;\r\nuses DB, New;\r\nvar Q: TQuery;\r\nend.",
       "2:10 warning second-conversion: the unit used New before the run\n"},
      {"unit A;\r\nuses New, DB;\r\nvar Q: TKVAQuery;\r\nend.", ""},
      {"unit A;\r\nvar S: string = 'TQuery';\r\n{ no TQuery }\r\n{$IFDEF TQuery}\r\nend.",
       "3:6 note changed-text: TQuery became TKVAQuery within a comment\n"
       "4:9 warning changed-text: TQuery became TKVAQuery within a comment\n"},
      {"unit A;\r\nvar\r\n  Q: TQuery;\r\nend.",
       "3:6 error no-new-units: the unit names TKVAQuery, but uses none of New, Units\n"},
      {"unit A;\r\nuses Units;\r\ntype\r\n  TDM = class(TDataModule)\r\n    A: TDatabase;\r\n    B: "
       "TDatabase;\r\n  "
       "end;\r\n  TDb = class(TDatabase)\r\n    property D: TDatabase read FD;\r\n  end;\r\n  TE = class\r\n "
       "   C, D: "
       "TDatabase;\r\n    procedure P(D: TDatabase);\r\n    Transaction: T;\r\n  end;\r\n  TR = record D: "
       "TDatabase "
       "end;\r\nfunction F: TDatabase;\r\nimplementation\r\nprocedure P(const D: TDatabase);\r\nvar X: "
       "TDatabase;\r\nbegin\r\n  with TDatabase.Create(nil) do Free;\r\n  P(D as TDatabase);\r\nend;\r\nend.",
       "2:6 warning second-conversion: the unit used Units before the run\n"
       "5:8 note transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "component field\n"
       "6:8 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "class that has a member of that name already\n"
       "8:15 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "class heading\n"
       "9:17 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "property declaration\n"
       "12:11 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "class that has a member of that name already\n"
       "13:20 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "parameter list\n"
       "16:18 warning transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "field of a record\n"
       "17:13 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in the "
       "result of a function\n"
       "19:22 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "parameter list\n"
       "20:8 warning transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "variable declaration\n"
       "22:8 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "constructor call\n"
       "23:10 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in an "
       "expression\n"},
      // Routines without such a class are not read.
      {"unit A;\r\ninterface\r\nimplementation\r\nuses New;\r\nprocedure P;\r\nbegin\r\n  if X then begin A; "
       "end;\r\n"
       "  case Y of 1: try B; finally end; end;\r\nend;\r\nvar D: TDatabase;\r\nprocedure Q;\r\n"
       "  procedure N(D: TDatabase); begin end;\r\nbegin\r\n  D := TDatabase { c } . Create(nil);\r\nend;\r\n"
       "procedure R; asm end;\r\ninitialization\r\n  X(TDatabase);\r\nend.",
       "4:6 warning second-conversion: the unit used New before the run\n"
       "10:8 warning transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "variable declaration\n"
       "12:18 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "parameter list\n"
       "14:8 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "constructor call\n"
       "18:5 error transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in an "
       "expression\n"},
      {"\xEF\xBB\xBFunit A;\nuses New;\nvar D: TDatabase;\nend.",
       "1:1 note lost-mark: the file is written without its UTF-8 byte order mark\n"
       "1:1 note mixed-line-ends: the file has 3 line end(s) other than CR LF, and the conversion writes CR "
       "LF\n"
       "2:6 warning second-conversion: the unit used New before the run\n"
       "3:8 warning transaction-line: TDatabase brings a line \"Transaction: TKVATransaction\" here, in a "
       "variable declaration\n"},
  };
  for (const TRow& row : rows) EXPECT_EQ(Find("A.pas", row.Source), row.Findings) << row.Source;
}

constexpr char kData[] =
    "unit Data;\r\ninterface\r\nuses DBTables;\r\ntype\r\n  TDM = class(TDataModule)\r\n    T: TTable;\r\n  "
    "end;\r\n  TMine = class(TTable)\r\n    procedure SetKey;\r\n  end;\r\nvar DM: TDM;\r\n  M: "
    "TMine;\r\nimplementation\r\nend.";

TEST_F(FindingsTest, NamesThatAreResolved) {
  const std::string code =
      "unit A;\r\ninterface\r\nuses DBTables, BDE, Data;\r\ntype\r\n  TF = class(TForm)\r\n    Q: "
      "TQuery;\r\n    "
      "procedure P;\r\n  end;\r\nimplementation\r\nprocedure TF.P;\r\nvar L: TTable;\r\nbegin\r\n";
  const TRow rows[] = {
      {"  DM.T.SetRange([1], [2]);",
       "13:8 warning old-member: TKVATable has no member SetRange; T is declared in Data.pas(6,5) as "
       "TTable\n"},
      {"  Data.DM.T.SetKey;",
       "13:13 warning old-member: TKVATable has no member SetKey; T is declared in Data.pas(6,5) as "
       "TTable\n"},
      {"end;\r\nfunction Make: TTable;\r\nbegin\r\n  Result.SetKey;",
       "16:10 warning old-member: TKVATable has no member SetKey; Result is declared in A.pas(14,10) as "
       "TTable\n"},
      {"  Q.RequestLive := Self.Q.Local;",
       "13:5 warning old-member: TKVAQuery has no member RequestLive; Q is declared in A.pas(6,5) as TQuery\n"
       "13:27 warning old-member: TKVAQuery has no member Local; Q is declared in A.pas(6,5) as TQuery\n"},
      {"  L.IndexName := '';",
       "13:5 warning old-member: TKVATable has no member IndexName; L is declared in A.pas(11,5) as "
       "TTable\n"},
      {"  M.SetRange([], []);",
       "13:5 warning old-member: TKVATable has no member SetRange; M is declared in Data.pas(12,3) as "
       "TMine\n"},
      {"  Check(DbiSaveChanges(L.Handle)); DbiInit(nil);",
       "13:3 warning old-call: Check(DbiSaveChanges is part of the old components\n"
       "13:36 warning old-call: DbiInit is part of the old components\n"},
      {"  Session.Close; DBTables.Session.Open;",
       "13:3 warning old-call: Session is part of the old components\n"
       "13:27 warning old-call: Session is part of the old components\n"},
      {"  with TSession.Create(nil) do Free;",
       "13:8 warning old-class: TSession is a class of the old components\n"},
  };
  for (const TRow& row : rows)
    EXPECT_EQ(FindInRun({{"Data.pas", kData}, {"A.pas", code + row.Source + "\r\nend;\r\nend."}}),
              row.Findings)
        << row.Source;
}

// Realistic code in which no use is certain, or all names are the user's own.
TEST_F(FindingsTest, NamesThatAreNoFindings) {
  const char* const sources[] = {
      // The name is a class, a variable, a member, or a parameter of the user's code.
      "type TSession = class end; var S: TSession; procedure P; begin S := TSession.Create; end;",
      "var Session: TMySession; procedure P; begin Session.Close; end;",
      "type TF = class Session: TX; procedure P; end; procedure TF.P; begin Session.Close; end;",
      "procedure P(Session: TX); begin Session.Close; end;",
      "procedure P; var Session: TX; procedure Q; begin Session.Close; end; begin end;",
      "function DbiInit(P: Pointer): Integer; begin end; begin DbiInit(nil); end;",
      // A class of another source may have such a member.
      "type TF = class(TBase) procedure P; end; procedure TF.P; begin Session.Close; end;",
      "procedure TF.P; begin Sessions.Close; end;",
      // A member of another object.
      "begin Server.Session.Close; Http.Session.Open; GetIt().Session.Close; end;",
      // Inside `with`, every name may be a member.
      "var T: TTable; procedure P; begin with Grid do T.SetRange([], []); end;",
      "var T: TTable; procedure P; begin with Grid do begin if X then Session.Close; T.IndexName := ''; end; "
      "end;",
      "procedure P; begin with A do with B do if C then D else Session.Close; end;",
      // A local hides the field.
      "type TF = class T: TTable; procedure P; end; procedure TF.P; var T: TMyList; begin T.SetKey; end;",
      "type TF = class T: TTable; procedure P; end; procedure TF.P; begin Run(procedure(T: TL) begin "
      "T.SetKey end); end;",
      // The class declares the member itself, or is unknown.
      "type TMy = class(TTable) procedure SetKey; end; var T: TMy; procedure P; begin T.SetKey; end;",
      "var T: TOther; procedure P; begin T.SetKey; List[0].SetKey; T.T.SetKey; (T as TX).SetKey; end;",
      "var T: array of TTable; procedure P; begin T.SetKey; end;",
      "procedure P; begin inherited T.SetKey; end;",
      // Strings and comments are not searched.
      "const S = 'Session.Close TSession DbiInit'; { Session.Close; TSession } // DbiInit(nil)",
      "type Dbilities = Integer; var DbiX: Dbilities;",
  };
  for (const char* const source : sources)
    EXPECT_EQ(FindInRun({{"A.pas",
                          std::string("unit A;\r\ninterface\r\nuses DBTables, BDE;\r\nimplementation\r\n") +
                              source + "\r\nend."}}),
              "")
        << source;
  // Without the unit that declares them, the names belong to other code.
  EXPECT_EQ(FindInRun({{"A.pas",
                        "unit A; interface uses Web; var S: TSession; implementation begin Session.Close; "
                        "DbiInit(nil); end."}}),
            "");
  // Another unit of the run declares the class.
  EXPECT_EQ(
      FindInRun({{"B.pas",
                  "unit B; interface type TSession = class end; var Session: TSession; implementation end."},
                 {"A.pas",
                  "unit A; interface uses DBTables, B; var S: TSession; implementation begin "
                  "Session.Close; end."}}),
      "");
}

}  // namespace
}  // namespace mig
