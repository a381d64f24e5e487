#include "UnitText.h"

namespace bench {
namespace {

constexpr const char* kVerbs[] = {"Load", "Store", "Check", "Print", "Count",
                                  "Find", "Close", "Merge", "Split", "Send"};
constexpr const char* kTopics[] = {"Members",  "Loans",   "Invoices", "Prices",
                                   "Articles", "Batches", "Growers",  "Ledger"};
constexpr const char* kBdeClasses[] = {"TQuery", "TTable", "TDatabase", "TStoredProc", "TUpdateSQL"};
constexpr const char* kIbxClasses[] = {"TIBQuery", "TIBTable", "TIBDatabase", "TIBStoredProc", "TIBSQL"};
constexpr const char* kOther[] = {"TStringList", "TMemoryStream", "TDataSource", "TQueryHelper",
                                  "TFileStream"};
// "@" is replaced by a class, "#" by a number.
constexpr const char* kStatements[] = {"    Total := Total + # * Rate;",
                                       "    if Length(S) > # then S := Copy(S, 1, #);",
                                       "    Memo.Lines.Add(Format('%s: %d of #', [S, Total]));",
                                       "    Items[#].Checked := not Items[#].Checked;",
                                       "    S := 'it''s ' + IntToStr(#) + #13#10 + 'end';",
                                       "    while not Source.EOF do Source.Next;",
                                       "    ProgressBar.Position := (Total * 100) div #;"};
constexpr const char* kClassStatements[] = {"    Helper := @.Create(Self);",
                                            "    if Sender is @ then Inc(Total);", "    @(Sender).Close;"};
constexpr const char* kComments[] = {"  { the rest was counted yesterday, see above }",
                                     "  // careful: the server rounds, we don't",
                                     "  (* not before the first of the month *)"};

class TUnitWriter {
 public:
  TUnitWriter(TRandom& random, const TUnitPlan& plan) : FRandom(random), FPlan(plan) {
    FText.reserve(plan.Bytes + 2048);
  }

  std::string Write() {
    const std::string name(FPlan.Name);
    Line("unit " + name + ";");
    Line("");
    Line("interface");
    Line("");
    Line("uses");
    Line("  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,");
    Line(FPlan.Changing ? "  StdCtrls, ExtCtrls, Db, DBTables;" : "  StdCtrls, ExtCtrls, Db;");
    Line("");
    Line("type");
    Line("  T" + name + " = class(TForm)");
    for (size_t n = FRandom.Between(2, 12); n > 0; --n)
      Line("    Part" + std::to_string(n) + ": " + ClassName() + ";");
    Line("  end;");
    Line("");
    Line("implementation");
    Line("");
    if (FPlan.Form) {
      Line("{$R *.DFM}");
      Line("");
    }
    while (FText.size() < FPlan.Bytes) Procedure(name);
    Line("end.");
    return std::move(FText);
  }

 private:
  void Line(std::string_view text) { FText.append(text).append("\r\n"); }

  std::string ClassName() {
    if (!FPlan.Changing || FRandom.Percent(50)) return FRandom.Pick(kOther);
    return FPlan.Ibx ? FRandom.Pick(kIbxClasses) : FRandom.Pick(kBdeClasses);
  }

  std::string Filled(std::string_view pattern) {
    std::string text;
    for (const char c : pattern) {
      if (c == '@') {
        text += ClassName();
      } else if (c == '#') {
        text += std::to_string(FRandom.Between(1, 999));
      } else {
        text += c;
      }
    }
    return text;
  }

  void Procedure(const std::string& unitName) {
    Line("procedure T" + unitName + "." + FRandom.Pick(kVerbs) + FRandom.Pick(kTopics) +
         "(Sender: TObject);");
    Line("var");
    Line("  S: string;");
    Line("  Total: Integer;");
    Line("  Helper: " + ClassName() + ";");
    Line("begin");
    if (FRandom.Percent(40)) Line(FRandom.Pick(kComments));
    Line("  try");
    for (size_t n = FRandom.Between(3, 18); n > 0; --n) {
      Line(Filled(FRandom.Percent(15) ? FRandom.Pick(kClassStatements) : FRandom.Pick(kStatements)));
    }
    Line("  finally");
    Line("    Helper.Free;");
    Line("  end;");
    Line("end;");
    Line("");
  }

  TRandom& FRandom;
  const TUnitPlan& FPlan;
  std::string FText;
};

}  // namespace

std::string MakeUnitText(TRandom& random, const TUnitPlan& plan) {
  return TUnitWriter(random, plan).Write();
}

}  // namespace bench
