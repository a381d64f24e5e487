#include "FormText.h"

namespace bench {
namespace {

constexpr const char* kNouns[] = {"Member",  "Loan",   "Invoice", "Price",  "Article", "Batch",
                                  "Grower",  "Ledger", "Stock",   "Street", "Payment", "Branch",
                                  "Carrier", "Order",  "Sample",  "Shift"};
constexpr const char* kColumns[] = {"ID",   "NAME",   "TOWN",  "AMOUNT", "DUE_DATE", "STATUS",
                                    "NOTE", "PERIOD", "PRICE", "WEIGHT", "OWNER_ID", "COUNTER"};
constexpr const char* kFieldClasses[] = {"TStringField", "TIntegerField", "TDateTimeField", "TFloatField"};
constexpr const char* kControls[] = {"TLabel",    "TEdit",   "TDBEdit",     "TButton",
                                     "TCheckBox", "TDBText", "TSpeedButton"};

struct TFamily {
  const char* Query;
  const char* Table;
  const char* StoredProc;
  const char* UpdateSQL;
  const char* Database;  // the line with the name of a data set's database
};
constexpr TFamily kBde = {"TQuery", "TTable", "TStoredProc", "TUpdateSQL", "DatabaseName = 'MainDB'"};
constexpr TFamily kIbx = {"TIBQuery", "TIBTable", "TIBStoredProc", "TIBUpdateSQL",
                          "Database = MainData.MainDB"};

class TFormWriter {
 public:
  TFormWriter(TRandom& random, const TFormPlan& plan)
      : FRandom(random), FPlan(plan), FFamily(plan.Ibx ? kIbx : kBde) {
    FText.reserve(plan.Bytes + 4096);
  }

  std::string Write() {
    Open(std::string(FPlan.Name), "T" + std::string(FPlan.Name));
    Place();
    Line("Caption = 'Generated'");
    Line("Color = clBtnFace");
    Line("Font.Charset = DEFAULT_CHARSET");
    Line("Font.Name = 'MS Sans Serif'");
    Line("Font.Style = []");
    Line("OldCreateOrder = False");
    Line("PixelsPerInch = 96");
    for (size_t i = 0; i < FPlan.Objects; ++i) {
      const size_t due = FPlan.Bytes / FPlan.Objects * (i + 1);
      if (FPlan.Shape == TFormShape::Lists) {
        Query(due);
      } else {
        MappedObject();
        while (FText.size() < due) PlainObject();
      }
    }
    while (FText.size() < FPlan.Bytes) PlainObject();
    Close();
    return std::move(FText);
  }

 private:
  void Line(std::string_view text) { FText.append(2 * FLevel, ' ').append(text).append("\r\n"); }

  void Open(const std::string& name, const std::string& type) {
    Line("object " + name + ": " + type);
    ++FLevel;
  }

  void Close() {
    --FLevel;
    Line("end");
  }

  void Number(const char* name, size_t low, size_t high) {
    Line(std::string(name) + " = " + std::to_string(FRandom.Between(low, high)));
  }

  void Place() {
    Number("Left", 0, 800);
    Number("Top", 0, 600);
  }

  std::string NewName() { return FRandom.Pick(kNouns) + std::to_string(++FCount); }

  void Control() {
    Open(NewName(), FRandom.Pick(kControls));
    Place();
    Number("Width", 16, 300);
    Number("Height", 13, 40);
    Line(std::string("Caption = '&") + FRandom.Pick(kNouns) + (FRandom.Percent(10) ? " '#39'A'#39" : "'"));
    Line("TabOrder = " + std::to_string(FRandom.Below(30)));
    if (FRandom.Percent(30)) Line(std::string("OnClick = ") + FRandom.Pick(kNouns) + "Click");
    Close();
  }

  void Grid() {
    Open(NewName(), "TDBGrid");
    Place();
    Line("Options = [dgTitles, dgIndicator, dgColumnResize, dgColLines, dgRowLines]");
    Line("Columns = <");
    const size_t columns = FRandom.Between(2, 9);
    for (size_t i = 1; i <= columns; ++i) {
      Line("  item");
      Line("    Expanded = False");
      Line(std::string("    FieldName = '") + FRandom.Pick(kColumns) + "'");
      Line("    Visible = True");
      Line(i == columns ? "  end>" : "  end");
    }
    Close();
  }

  void Picture() {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    Open(NewName(), "TImage");
    Place();
    Line("Picture.Data = {");
    const size_t lines = FRandom.Between(4, 120);
    for (size_t i = 1; i <= lines; ++i) {
      std::string digits;
      for (int k = 0; k < 4; ++k) {
        for (uint64_t r = FRandom.Next(), n = 0; n < 16; ++n, r >>= 4) digits += kDigits[r & 15];
      }
      Line("  " + digits + (i == lines ? "}" : ""));
    }
    Close();
  }

  void PlainObject() {
    const size_t kind = FRandom.Below(100);
    if (kind < 3) {
      Picture();
    } else if (kind < 12) {
      Grid();
    } else if (kind < 25) {
      Open(NewName(), "TPanel");
      Place();
      for (size_t n = FRandom.Between(1, 6); n > 0; --n) Control();
      Close();
    } else {
      Control();
    }
  }

  void Fields() {
    for (size_t n = FRandom.Below(7); n > 0; --n) {
      Open(NewName(), FRandom.Pick(kFieldClasses));
      Line(std::string("DisplayLabel = '") + FRandom.Pick(kNouns) + "'");
      Line(std::string("FieldName = '") + FRandom.Pick(kColumns) + "'");
      Close();
    }
  }

  // Adds a list of at least one line, and of as many lines as the text needs to reach `until` bytes.
  void SqlList(const char* name, size_t lines, size_t until) {
    Line(std::string(name) + " = (");
    bool last = false;
    for (size_t i = 1; !last; ++i) {
      last = i >= lines && FText.size() + 64 >= until;
      std::string line = std::string("  '  and ") + FRandom.Pick(kColumns) + " = :" + FRandom.Pick(kColumns);
      if (FRandom.Percent(10)) line += " or NOTE like '#39'%x%'#39'";
      if (FRandom.Percent(8)) {
        Line("");
        Line("  " + line + " ' +");
        line = "    '/* " + std::string(FRandom.Pick(kNouns)) + " */";
      }
      Line(line + (last ? "')" : "'"));
    }
  }

  void Params() {
    Line("ParamData = <");
    const size_t items = FRandom.Between(1, 4);
    for (size_t i = 1; i <= items; ++i) {
      Line("  item");
      Line("    DataType = ftInteger");
      Line(std::string("    Name = '") + FRandom.Pick(kColumns) + "'");
      Line("    ParamType = ptInput");
      Line(i == items ? "  end>" : "  end");
    }
  }

  void Query(size_t until) {
    Open(NewName(), FFamily.Query);
    Line(FFamily.Database);
    if (FRandom.Percent(30)) Line("DataSource = Source1");
    if (FRandom.Percent(30)) Line("RequestLive = True");
    SqlList("SQL.Strings", FRandom.Between(2, 14), until);
    Place();
    if (FRandom.Percent(60)) Params();
    if (FPlan.Shape == TFormShape::Mixed) Fields();
    Close();
  }

  void MappedObject() {
    switch (FRandom.Below(8)) {
      case 0:
      case 1:
        Open(NewName(), FFamily.Table);
        Line(FFamily.Database);
        Line(std::string("IndexFieldNames = '") + FRandom.Pick(kColumns) + "'");
        Line(std::string("TableName = '") + FRandom.Pick(kNouns) + "'");
        Place();
        Fields();
        break;
      case 2:
        Open(NewName(), FFamily.StoredProc);
        Line(FFamily.Database);
        Line(std::string("StoredProcName = '") + FRandom.Pick(kNouns) + "'");
        Place();
        Params();
        break;
      case 3:
        Open(NewName(), FFamily.UpdateSQL);
        SqlList("ModifySQL.Strings", FRandom.Between(1, 8), 0);
        SqlList("InsertSQL.Strings", FRandom.Between(1, 8), 0);
        Place();
        break;
      default:
        Query(0);
        return;
    }
    Close();
  }

  TRandom& FRandom;
  const TFormPlan& FPlan;
  const TFamily& FFamily;
  std::string FText;
  size_t FLevel = 0;
  size_t FCount = 0;
};

}  // namespace

std::string MakeFormText(TRandom& random, const TFormPlan& plan) {
  return TFormWriter(random, plan).Write();
}

}  // namespace bench
