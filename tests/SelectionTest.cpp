// Runs of a part of what could be changed: the list to choose from, and that what is left out keeps every
// byte.
#include <gtest/gtest.h>

#include "MigWizard/passes/FormFile.h"
#include "MigWizard/run/RunErrors.h"
#include "tests/RunTree.h"

namespace mig {
namespace {

namespace fs = std::filesystem;

constexpr char kSelectionUnit[] =
    "unit U;\r\nuses DBTables;\r\ntype\r\n  TDM = class(TForm)\r\n    D: TDatabase; // a TQuery\r\n"
    "    Q: TQuery;\r\n  end;\r\n{$R *.dfm}\r\n";
constexpr char kSelectionForm[] =
    "object DM: TDM\r\n  object D: TDatabase\r\n    DatabaseName = 'X'\r\n  end\r\n"
    "  object P: TPanel\r\n    object Q: TQuery\r\n      Left = 1\r\n      object F: TTable\r\n      end\r\n "
    "   end\r\n"
    "    inherited I: TQuery\r\n      Left = 2\r\n    end\r\n  end\r\n  object B: TTable\r\n    Bad Value\r\n"
    "    object N: TQuery\r\n      Left = 3\r\n    end\r\n  end\r\nend\r\n";

std::string WithoutReturns(std::string text) {
  std::erase(text, '\r');
  return text;
}

std::string FormToBinary(const std::string& text) {
  rtl::TMemoryStream file;
  TFormFile form;
  form.IsBinary = true;
  WriteFormFile(file, text, form);
  return file.TakeBytes();
}

class SelectionTest : public tests::TRunTree {
 protected:
  SelectionTest() {
    fs::remove_all(FTree.HostPath("src"));
    FTree.Write("src/U.pas", kSelectionUnit);
    FTree.Write("src/U.dfm", kSelectionForm);
  }
};

TEST_F(SelectionTest, ListsWhatCanBeChosen) {
  FTree.Write("src/V.pas", "unit V; {$R U.dfm} {$R W.dfm}");
  FTree.Write("src/W.dfm", "object W: TForm object Q: TQuery Bad Value end end");
  FTree.Write("src/X.pas", "unit X; {$R *.dfm}");
  FTree.Write("src/X.dfm", FormToBinary("object X: TX\r\nobject Q: TQuery\r\nend\r\nend\r\n"));
  TRunPlan plan;
  Replacer().Preview(&plan);
  std::string list;
  for (const TPlannedFile& file : plan.Files()) {
    list += Shown(file.FileName) + " " + std::to_string(file.Group) + (file.IsChanged ? " +\n" : "\n");
    for (const TListedEdit& edit : file.Edits)
      list += "  " + std::to_string(edit.Place) + " (" + std::to_string(edit.Line) + "," +
              std::to_string(edit.Column) + ") " + edit.Object + ": " + edit.Before + " -> " + edit.After +
              "\n";
  }
  EXPECT_EQ(list, R"(<dir>\src\U.pas 0 +
  14 (2,6) : DBTables -> DBTables, Quorel, KVA, Velmar, KVAError
  60 (5,8) : TDatabase -> TKVAConnection
  76 (5,24) : TQuery -> TKVAQuery
  91 (6,8) : TQuery -> TKVAQuery
<dir>\src\V.pas 0
<dir>\src\X.pas 2
<dir>\src\U.DFM 0 +
  18 (2,3) DM.D: TDatabase -> TKVAConnection
  94 (6,5) DM.P.Q: TQuery -> TKVAQuery
  231 (15,3) DM.B: TTable -> TKVATable
  268 (17,5) DM.B.N: TQuery -> TKVAQuery
<dir>\src\W.dfm 0
<dir>\src\X.DFM 2 +
  14 (2,3) X.Q: TQuery -> TKVAQuery
)");
}

TEST_F(SelectionTest, WhatIsLeftOutKeepsEveryByte) {
  const struct {
    const char* File;
    std::vector<const char*> LeftOut;  // texts at the places of edits
    bool IsCompleted;
    const char* Result;
  } rows[] = {
      {"U.pas", {"TDatabase", "TQuery;"}, false, R"(unit U;
uses DBTables, Quorel, KVA, Velmar, KVAError;
type
  TDM = class(TForm)
    D: TDatabase; // a TKVAQuery
    Q: TQuery;
  end;
{$R *.dfm}
)"},
      {"U.pas", {"TDatabase"}, true, R"(unit U;
uses DBTables, Quorel, KVA, Velmar, KVAError;
type
  TDM = class(TForm)
    D: TDatabase; // a TKVAQuery
    Q: TKVAQuery;
  end;
{$R *.dfm}
)"},
      {"U.pas", {"DBTables", "TDatabase", "TQuery", "TQuery;"}, true, "same"},
      {"U.DFM", {"object D:"}, true, R"(object DM: TDM
  object D: TDatabase
    DatabaseName = 'X'
  end
  object P: TPanel
    object Q: TKVAQuery
      Left = 1
      AutoCommit = True
      object F: TKVATable
        AutoCommit = True
      end
    end
    inherited I: TKVAQuery
      Left = 2
      AutoCommit = True
    end
  end
  object B: TKVATable
    Bad Value
    object N: TKVAQuery
      Left = 3
      AutoCommit = True
    end
  end
end
)"},
      {"U.DFM", {"object Q", "object B"}, false, R"(object DM: TDM
    object D: TKVAConnection
  end
object P: TPanel
    object Q: TQuery
      Left = 1
      object F: TTable
      end
    end
    inherited I: TQuery
      Left = 2
    end
  end
  object B: TTable
    Bad Value
    object N: TQuery
      Left = 3
    end
  end
end
)"},
      {"U.DFM", {"object Q", "object B", "inherited I"}, true, R"(object DM: TDM
  object D: TKVAConnection
  end
  object Transaction: TKVATransaction
    DefaultConnection = D
  end
  object P: TPanel
    object Q: TQuery
      Left = 1
      object F: TTable
      end
    end
    inherited I: TQuery
      Left = 2
    end
  end
  object B: TTable
    Bad Value
    object N: TQuery
      Left = 3
    end
  end
end
)"},
      {"U.DFM", {"object D:", "object Q", "object B", "inherited I"}, true, "same"},
  };
  for (const auto& row : rows) {
    target::TKVAMigration migration(target::TCatalogue::BuiltIn());
    migration.Options() = FMigration.Options();
    if (row.IsCompleted) migration.Complete({true, true, true, true, true});
    target::TKVAComponentReplacer& replacer = migration.BDE();
    TRunPlan plan;
    replacer.Preview(&plan);
    TRunSelection selection(plan);
    const bool isUnit = row.File == std::string("U.pas");
    for (const char* const text : row.LeftOut)
      selection.LeaveOut(plan.Files()[isUnit ? 0 : 1].FileName,
                         std::string(isUnit ? kSelectionUnit : kSelectionForm).find(text));
    replacer.SetSelection(&selection);
    std::string result = "same";
    replacer.OnConverted = [&](const std::string& name, const TFileConversion& conversion, bool isChanged) {
      if (isChanged && name.ends_with(row.File)) result = conversion.Bytes;
    };
    replacer.Preview();
    EXPECT_EQ(WithoutReturns(result), row.Result) << row.LeftOut[0];
  }
}

// A run of a part tells what it did in log, backups and undo file.
TEST_F(SelectionTest, ARunTellsWhatItReplaced) {
  FTree.Write("src/Z.pas", "unit Z; uses DBTables; {$R *.dfm}");
  FTree.Write("src/Z.dfm", tests::kForm);
  TRunPlan plan;
  Replacer().Preview(&plan);
  TRunSelection selection(plan);
  selection.LeaveOutGroup(plan.Files()[0].Group);
  Replacer().SetSelection(&selection);
  EXPECT_TRUE(Replacer().Replace());
  EXPECT_EQ(Read("src/U.pas"), kSelectionUnit);
  EXPECT_EQ(Read("src/U.dfm"), kSelectionForm);
  EXPECT_EQ(WithoutReturns(Shown(Read("src/RBackup/RExpert.reu"))),
            "<dir>\\src\\Z.pas=<dir>\\src\\RBackup\\Z.~pas\n"
            "<dir>\\src\\Z.DFM=<dir>\\src\\RBackup\\Z.~DFM\n");
  EXPECT_EQ(FTree.Names("src/RBackup"), (std::vector<std::string>{"RExpert.reu", "Z.~DFM", "Z.~pas"}));
  const std::string log = WithoutReturns(Shown(Read("src/Wiz_Log.txt")));
  const size_t files = log.find("Processing");
  EXPECT_EQ(log.substr(files, log.find("Replacing") - files), R"(Processing file: <dir>\src\U.pas

No changes

Processing file: <dir>\src\Z.pas

1 change(s)

Processing file: <dir>\src\U.DFM

No changes

Processing file: <dir>\src\Z.DFM

1 change(s)

)");
}

TEST_F(SelectionTest, OnlyWhatWasShownIsReplaced) {
  const struct {
    const char* File;
    const char* Contents;  // null: the file is deleted
    const char* Message;
  } rows[] = {
      {"src/U.pas", "unit U;", "\"<dir>\\src\\U.pas\" was changed after the preview. No file was replaced."},
      {"src/U.dfm", nullptr, "\"<dir>\\src\\U.DFM\" was changed after the preview. No file was replaced."},
      {"src/New.pas", "unit New;",
       "\"<dir>\\src\\New.pas\" was added after the preview. No file was replaced."},
  };
  for (const auto& row : rows) {
    FTree.Write("src/U.pas", kSelectionUnit);
    FTree.Write("src/U.dfm", kSelectionForm);
    TRunPlan plan;
    Replacer().SetSelection(nullptr);
    Replacer().Preview(&plan);
    const TRunSelection selection(plan);
    Replacer().SetSelection(&selection);
    if (row.Contents != nullptr) {
      FTree.Write(row.File, row.Contents);
    } else {
      fs::remove(FTree.HostPath(row.File));
    }
    EXPECT_EQ(Failure<EFileEdited>(), row.Message);
    EXPECT_TRUE(TempFolderIsEmpty());
  }
}

}  // namespace
}  // namespace mig
