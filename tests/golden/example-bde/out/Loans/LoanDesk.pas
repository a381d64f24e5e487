unit LoanDesk;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  Grids, DBGrids, StdCtrls, ExtCtrls, Db, DBTables, Quorel, KVA, Velmar, KVAError;

type
  { One window for both directions: scan a member's card and then books to
    lend, or a book alone to take it back. Master TKVAQuery above, detail TKVAQuery
    below; the detail follows the master through its DataSource. }
  TLoanDeskForm = class(TForm)
    edScan: TEdit;
    MembersGrid: TDBGrid;
    LoansGrid: TDBGrid;
    Split: TSplitter;
    QMaster: TKVAQuery;
    QMasterMEMBER_NO: TIntegerField;
    QMasterNAME: TStringField;
    SMaster: TDataSource;
    QDetail: TKVAQuery;
    QDetailCOPY_NO: TIntegerField;
    QDetailTITLE: TStringField;
    QDetailDUE: TDateTimeField;
    QDetailDaysLeft: TIntegerField;
    SDetail: TDataSource;
    TBooks: TKVATable;
    procedure FormCreate(Sender: TObject);
    procedure FormClose(Sender: TObject; var Action: TCloseAction);
    procedure edScanKeyPress(Sender: TObject; var Key: Char);
    procedure QDetailCalcFields(DataSet: TDataSet);
    procedure LoansGridDrawColumnCell(Sender: TObject; const Rect: TRect;
      DataCol: Integer; Column: TColumn; State: TGridDrawState);
  private
    procedure Scanned(const Code: string);
  end;

var
  LoanDeskForm: TLoanDeskForm;

implementation

uses DataMod, Texts;

{$R *.DFM}

const
  MemberPrefix = 'M';

procedure TLoanDeskForm.FormCreate(Sender: TObject);
begin
  QMaster.Open;
  QDetail.Open;
  TBooks.Open;
end;

procedure TLoanDeskForm.FormClose(Sender: TObject;
  var Action: TCloseAction);
begin
  Action := caFree;
  LoanDeskForm := nil;
end;

procedure TLoanDeskForm.edScanKeyPress(Sender: TObject; var Key: Char);
begin
  if Key = #13 then
  begin
    Key := #0;
    Scanned(edScan.Text);
    edScan.Clear;
  end;
end;

procedure TLoanDeskForm.Scanned(const Code: string);
var
  Due: TDateTime;
begin
  if Code = '' then
    Exit;
  if UpCase(Code[1]) = MemberPrefix then
    QMaster.Locate('MEMBER_NO', StrToInt(Copy(Code, 2, MaxInt)), [])
  else if QDetail.Locate('COPY_NO', StrToInt(Code), []) then
    DM.TakeBack(StrToInt(Code))
  else
  begin
    Due := DM.Lend(QMasterMEMBER_NO.AsInteger, StrToInt(Code));
    Caption := Format(SDueBack, [QMasterNAME.AsString, DateToStr(Due)]);
  end;
  QDetail.Close;
  QDetail.Open;
end;

procedure TLoanDeskForm.QDetailCalcFields(DataSet: TDataSet);
begin
  QDetailDaysLeft.AsInteger := Trunc(QDetailDUE.AsDateTime) - Trunc(Date);
end;

procedure TLoanDeskForm.LoansGridDrawColumnCell(Sender: TObject;
  const Rect: TRect; DataCol: Integer; Column: TColumn;
  State: TGridDrawState);
begin
  if QDetailDaysLeft.AsInteger < 0 then
    LoansGrid.Canvas.Font.Color := clRed;
  LoansGrid.DefaultDrawColumnCell(Rect, DataCol, Column, State);
end;

end.
