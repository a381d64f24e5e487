// The opt-in steps after a conversion.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/passes/FindingRules.h"
#include "completion/Completion.h"
#include "completion/FormLayout.h"
#include "completion/TransactionFields.h"
#include "target/KVAFormParser.h"
#include "target/KVAReplacer.h"
#include "target/OldNameList.h"

namespace {

struct TStepRow {
  const char* What;
  std::string Before, After;
};

constexpr completion::TTransactionRules kTransactions = {"TDatabase", "TKVAConnection", "TKVATransaction",
                                                         "Transaction", "DefaultConnection"};

// Converts every TDatabase as the conversion does, then completes the fields.
completion::TTransactionFields CompleteFields(
    const std::string& text, const completion::TFindTransactionPlace& findPlace =
                                 [](std::string_view, std::string_view, std::string_view) {
                                   return completion::TTransactionPlace::Free;
                                 }) {
  mig::TTextEdits edits;
  for (size_t at = text.find("TDatabase"); at != std::string::npos; at = text.find("TDatabase", at + 1))
    edits.Replace(at, 9, "TKVAConnection;\r\n    Transaction: TKVATransaction");
  return completion::CompleteTransactionFields(text, qrl::TEncoding::Default(), edits, findPlace,
                                               kTransactions);
}

TEST(TransactionFieldsTest, OnlyComponentFieldsBringATransaction) {
  const TStepRow rows[] = {
      {"a field", "type TM = class(TForm)\r\n    DB: TDatabase;\r\n  end;",
       "type TM = class(TForm)\r\n    DB: TKVAConnection;\r\n    Transaction: TKVATransaction;\r\n  end;"},
      {"a comment stays with its field", "type TM = class(TForm)\n    DB: TDatabase; // main {x}\n  end;",
       "type TM = class(TForm)\n    DB: TKVAConnection; // main {x}\n    Transaction: TKVATransaction;\n  "
       "end;"},
      {"a comment of several lines",
       "type TM = class(TForm)\r    DB: TDatabase; (* a *) { b\r c } \r    E: T;\r  end;",
       "type TM = class(TForm)\r    DB: TKVAConnection; (* a *) { b\r c } \r    Transaction: "
       "TKVATransaction;\r    E: T;\r  end;"},
      {"a comment of the next field", "type TM = class(TForm)\n    DB: TDatabase; { b\n c } E: T;\n  end;",
       "type TM = class(TForm)\n    DB: TKVAConnection;\n    Transaction: TKVATransaction; { b\n c } E: T;\n "
       " end;"},
      {"several connections", "type TM = class(TForm)\n  A, B: DBTables.TDatabase; C: TDatabase; end;",
       "type TM = class(TForm)\n  A, B: DBTables.TKVAConnection;\n  ATransaction: TKVATransaction;\n  "
       "BTransaction: TKVATransaction; C: TKVAConnection;\n  CTransaction: TKVATransaction; end;"},
      {"after the published part",
       "type TM = class(TForm)\nprivate\n  A: TDatabase;\npublished\n  B: TDatabase;\nend;",
       "type TM = class(TForm)\nprivate\n  A: TKVAConnection;\npublished\n  B: TKVAConnection;\n"
       "  Transaction: TKVATransaction;\nend;"},
      {"after an attribute", "type TM = class sealed(TForm) [Weak] A: TDatabase; end;",
       "type TM = class sealed(TForm) [Weak] A: TKVAConnection;\r\nTransaction: TKVATransaction; end;"},
      {"an ancestor may have a transaction", "type TM = class(Base.TBase, I)\r\n    DB: TDatabase;\r\n  end;",
       "type TM = class(Base.TBase, I)\r\n    DB: TKVAConnection;\r\n    DBTransaction: TKVATransaction;\r\n "
       " end;"},
      {"classes without a form",
       "type TX = class(TDatabase) A: TDatabase; end; TC = class(TComponent) A: TDatabase; end;",
       "type TX = class(TKVAConnection) A: TKVAConnection; end; TC = class(TComponent) A: TKVAConnection; "
       "end;"},
      {"everything else",
       "type TX = class(TDatabase) procedure P(C: TDatabase; D: TDatabase; N: Integer); property D: "
       "TDatabase read F; end;\n"
       "  TR = class(TForm) R: record D: TDatabase; end; end; TC = class of TDatabase;\n"
       "  TN = class D: TDatabase; end; TF = class;\nvar D: TDatabase;\nbegin with TDatabase.Create(nil) do;",
       "type TX = class(TKVAConnection) procedure P(C: TKVAConnection; D: TKVAConnection; N: Integer); "
       "property D: TKVAConnection read F; end;\n"
       "  TR = class(TForm) R: record D: TKVAConnection; end; end; TC = class of TKVAConnection;\n"
       "  TN = class D: TKVAConnection; end; TF = class;\nvar D: TKVAConnection;\nbegin with "
       "TKVAConnection.Create(nil) do;"},
  };
  for (const TStepRow& row : rows) {
    const completion::TTransactionFields fields = CompleteFields(row.Before);
    EXPECT_EQ(fields.Edits.Apply(row.Before), row.After) << row.What;
    EXPECT_TRUE(fields.Refusals.empty()) << row.What;
  }
  for (const char* const member :
       {"transaction: TX;", "private Transaction: TX;", "procedure Transaction(A: TX; B: TX);",
        "class function TRANSACTION: TX;", "property Transaction: TX read F;"}) {
    const std::string text = std::string("type TM = class(TForm) D: TDatabase; ") + member + " end;";
    const completion::TTransactionFields fields = CompleteFields(text);
    EXPECT_EQ(fields.Edits.Apply(text),
              std::string("type TM = class(TForm) D: TKVAConnection; ") + member + " end;");
    ASSERT_EQ(fields.Refusals.size(), 1U) << member;
    EXPECT_EQ(fields.Refusals[0].Offset, 26U) << member;
    EXPECT_TRUE(fields.Names.empty()) << member;
  }
  const std::string text = "type TM = class(TForm) D: TDatabase; end;";
  EXPECT_EQ(CompleteFields(text, nullptr).Edits.Apply(text),
            "type TM = class(TForm) D: TKVAConnection; end;");
}

TEST(FormLayoutTest, KeepsThePlaceOfAnObject) {
  const std::string text =
      "object F: TF\n"
      "  object  Q: TQuery\t\n"
      "    DatabaseName = 'DB'\n"
      "    SQL.Strings=(\n"
      "      'a  b'\n"
      "      'c')\n"
      "    object X: TField\n"
      "      Left = 4\n"
      "    end\n"
      "    Left = 4\n"
      "  end\n"
      "   Caption = 'x'\n"
      "end\n";
  const std::string printed =
      "  object Q: TKVAQuery\r\n"
      "    Connection = DM.C\r\n"
      "    SQL.Strings = (\r\n"
      "            'a  b'\r\n"
      "            'made'\r\n"
      "            'c')\r\n"
      "    Left = 4\r\n"
      "    AutoCommit = True\r\n"
      "    object X: TField\n"
      "      Left = 4\n"
      "    end\r\n"
      "  end\r\n";
  const size_t begin = text.find("object  Q");
  const size_t end = text.find("Caption");
  EXPECT_EQ(completion::ApplyFormEdits(
                text, {{7, 8, "G", -1, false, {}}, {begin, end, printed, 1, false, {}}}, true),
            "object G: TF\n"
            "  object  Q: TKVAQuery\t\n"
            "    Connection = DM.C\n"
            "    SQL.Strings=(\n"
            "      'a  b'\n"
            "      'made'\n"
            "      'c')\n"
            "    Left = 4\n"
            "    AutoCommit = True\n"
            "    object X: TField\n"
            "      Left = 4\n"
            "    end\n"
            "  end\n"
            "   Caption = 'x'\n"
            "end\n");
}

// Lines with tabs, and with each kind of line end. A line end in a value is printed once more after it.
TEST(FormLayoutTest, KeepsTabsAndLineEnds) {
  for (const std::string end : {"\n", "\r\n", "\r\r\n", "\r"}) {
    const std::string text = "object F: TF" + end + "\tobject Q: TQuery" + end + "\t\tSQL.Strings = (" + end +
                             "\t\t\t'a')" + end + "\tend" + end + "end" + end;
    const std::string printed = "  object Q: TKVAQuery\r\n    SQL.Strings = (" + end +
                                "\r\n        \t\t\t'a')\r\n    AutoCommit = True\r\n  end\r\n";
    EXPECT_EQ(completion::ApplyFormEdits(
                  text, {{text.find("object Q"), text.rfind("end"), printed, 1, false, {}}}, true),
              "object F: TF" + end + "\tobject Q: TKVAQuery" + end + "\t\tSQL.Strings = (" + end +
                  "\t\t\t'a')" + end + "\t\tAutoCommit = True" + end + "\tend" + end + "end" + end);
  }
}

// A unit with two connections, of which one can have a transaction, and its form.
class FormObjectsTest : public testing::Test {
 protected:
  FormObjectsTest() {
    FConverter.SetCompletion(&FCompletion);
    FConverter.CollectFindings(FNames);
  }

  // Returns the form after the conversion; `told` gets what is not completed, in the unit and in the form.
  std::string Convert(const std::string& form, std::string* told = nullptr) {
    FConverter.OnReadForm = [&form](const std::string&) { return form; };
    const mig::TFileConversion unit = FConverter.Convert(
        "C:\\F.pas", "unit F; type TF = class(TForm) A, B: TDatabase; BTransaction: TX; end; {$R *.dfm}");
    const mig::TFileConversion converted = FConverter.Convert("C:\\F.DFM", form);
    for (const mig::TFileConversion* const file : {&unit, &converted}) {
      if (told == nullptr || !file->Findings) continue;
      for (const mig::TFinding& finding : file->Findings->Findings) {
        if (finding.Rule == mig::TRuleId::NotCompleted || finding.Rule == mig::TRuleId::InheritedObject)
          *told += mig::MessageOf(finding) + "\n";
      }
    }
    return converted.IsChanged ? converted.Bytes : form;
  }

 private:
  target::TKVAMigration FMigration{target::TCatalogue::BuiltIn()};
  const mig::TOldNames FNames = target::BuiltInOldNames(FMigration.BDE().Classes());
  const completion::TCompletion FCompletion{{false, true, true, true, false},
                                            {"DBTables", ", New", FNames, kTransactions}};
  mig::TFileConverter FConverter{
      FMigration.BDE().Classes(), "DBTABLES", ", New",
      std::make_unique<target::TKVAFormParser>(mig::ParseStateClass<mig::TFormParseState>())};
};

// Inherited, inline and indexed objects, and the contents of a converted object.
TEST_F(FormObjectsTest, WholeForms) {
  const TStepRow rows[] = {
      {"inherited and indexed objects",
       "inherited F: TF\n  inherited Q: TQuery [3]\n    RequestLive = True\n    Left = 4\n  end\n"
       "  inline Fr: TFr\n    inherited T: TTable\n      Top = 1\n    end\n  end\n"
       "  object I: TQuery [7]\n    Left = 1\n  end\n  object Q2: TQuery\n    Left = 2\n  end\nend\n",
       "inherited F: TF\n  inherited Q: TKVAQuery [3]\n    Left = 4\n    AutoCommit = True\n  end\n"
       "  inline Fr: TFr\n    inherited T: TKVATable\n      Top = 1\n      AutoCommit = True\n    end\n  "
       "end\n"
       "  object I: TKVAQuery [7]\n    Left = 1\n    AutoCommit = True\n  end\n"
       "  object Q2: TKVAQuery\n    Left = 2\n    AutoCommit = True\n  end\nend\n"},
      {"what a converted object holds",
       "object F: TF\n  object Q: TQuery\n    RequestLive = True\n    object A: TTable\n      Exclusive = "
       "True\n"
       "      inherited B: TQuery\n      end\n    end\n    object X: TField\n      Left = 1\n    end\n  "
       "end\nend\n",
       "object F: TF\n  object Q: TKVAQuery\n    AutoCommit = True\n    object A: TKVATable\n      "
       "AutoCommit = True\n"
       "      inherited B: TKVAQuery\n        AutoCommit = True\n      end\n    end\n    object X: TField\n  "
       "    Left = 1\n    end\n  end\nend\n"},
      {"an inherited object that holds one that the conversion takes",
       "object F: TF\n  inherited A: TTable\n    object B: TQuery\n    end\n  end\n  object C: TQuery\n  "
       "end\nend\n",
       "object F: TF\n  inherited A: TKVATable\n    AutoCommit = True\n    object B: TKVAQuery\n      "
       "AutoCommit = True\n    end\n  end\n  object C: TKVAQuery\n    AutoCommit = True\n  end\nend\n"},
      {"an object that is no form text stays", "object F: TF\n  inherited Q: TQuery\n    = 3\n  end\nend\n",
       "object F: TF\n  inherited Q: TQuery\n    = 3\n  end\nend\n"},
      {"connections whose transactions the unit declares",
       "object F: TF\n  object a: TDatabase\n    Left = 8\n    Top = 16\n  end\n  object B: TDatabase\n  "
       "end\n"
       "  object C: TDatabase\n  end\nend\n",
       "object F: TF\n  object a: TKVAConnection\n    Left = 8\n    Top = 16\n  end\n"
       "  object ATransaction: TKVATransaction\n    DefaultConnection = a\n    Left = 72\n    Top = 16\n  "
       "end\n"
       "  object B: TKVAConnection\n  end\n  object C: TKVAConnection\n  end\nend\n"},
      {"connections in other objects of the map",
       "object F: TF\n  object C: TDatabase\n    object Q: TQuery\n    end\n  end\n  object P: TQuery\n"
       "    object X: TX\n      object A: TDatabase\n        Left = 8\n        Top = 16\n        object T: "
       "TX\n        end\n"
       "      end\n    end\n  end\nend\n",
       "object F: TF\n  object C: TKVAConnection\n    object Q: TKVAQuery\n      AutoCommit = True\n    "
       "end\n  end\n"
       "  object P: TKVAQuery\n    AutoCommit = True\n    object X: TX\n      object A: TKVAConnection\n"
       "        Left = 8\n        Top = 16\n        object T: TX\n        end\n      end\n"
       "      object ATransaction: TKVATransaction\n        DefaultConnection = A\n        Left = 72\n       "
       " Top = 16\n"
       "      end\n    end\n  end\nend\n"},
      {"objects that hold objects with an index",
       "object F: TF\n  inherited Q: TQuery\n    RequestLive = True\n    object X: TField [2]\n      Left = "
       "1\n"
       "    end\n    inherited T: TTable [0]\n    end\n  end\n  object A: TDatabase\n    object P: TPanel "
       "[14]\n"
       "    end\n  end\nend\n",
       "object F: TF\n  inherited Q: TKVAQuery\n    AutoCommit = True\n    object X: TField [2]\n      Left "
       "= 1\n"
       "    end\n    inherited T: TKVATable [0]\n      AutoCommit = True\n    end\n  end\n"
       "  object A: TKVAConnection\n    object P: TPanel [14]\n    end\n  end\n"
       "  object ATransaction: TKVATransaction\n    DefaultConnection = A\n  end\nend\n"},
      {"a name in a frame is not taken",
       "object F: TF\n  inline Fr: TFr\n    inherited ATransaction: TX\n    end\n  end\n  object A: "
       "TDatabase\n"
       "  end\nend\n",
       "object F: TF\n  inline Fr: TFr\n    inherited ATransaction: TX\n    end\n  end\n"
       "  object A: TKVAConnection\n  end\n  object ATransaction: TKVATransaction\n    DefaultConnection = "
       "A\n"
       "  end\nend\n"},
      {"a form of another class", "object F: TG\n  object A: TDatabase\n  end\nend\n",
       "object F: TG\n  object A: TKVAConnection\n  end\nend\n"},
  };
  for (const TStepRow& row : rows) {
    EXPECT_EQ(Convert(row.Before), row.After) << row.What;
    EXPECT_EQ(Convert(row.After), row.After) << row.What << ", once more";
  }
}

// A connection has a transaction in its unit if and only if its form has one.
TEST_F(FormObjectsTest, RefusedTransactions) {
  const std::string hasOne = "B is not completed, because its class already has a member BTransaction\n";
  const TStepRow rows[] = {
      {"a place", "object F: TF\n  object A: TDatabase\n  end\nend\n", hasOne},
      {"no connection", "object F: TF\n  object C: TDatabase\n  end\nend\n",
       "A is not completed, because no form of its class has an object A that is converted\n" + hasOne},
      {"a name that is taken",
       "object F: TF\n  object A: TDatabase\n  end\n  object atransaction: TX\n  end\nend\n",
       "A is not completed, because its form already has an object ATransaction\n" + hasOne},
      {"a connection that is no form text", "object F: TF\n  object A: TDatabase\n    = 3\n  end\nend\n",
       "A is not completed, because no form of its class has an object A that is converted\n" + hasOne},
      {"an inherited object that is no form text",
       "object F: TF\n  object A: TDatabase\n  end\n  inherited Q: TQuery\n    = 3\n  end\nend\n",
       hasOne + "F.Q is declared with \"inherited\" and keeps its class TQuery, because its text cannot be "
                "read\n"},
      {"a form that cannot be read", std::string("\xFF\xFE\x20", 3),
       "A is not completed, because no form of its class has an object A that is converted\n" + hasOne},
  };
  for (const TStepRow& row : rows) {
    std::string told;
    const std::string form = Convert(row.Before, &told);
    EXPECT_EQ(told, row.After) << row.What;
    EXPECT_EQ(form.find("ATransaction: TKVATransaction") != std::string::npos, told.starts_with(hasOne))
        << form;
  }
}

}  // namespace
