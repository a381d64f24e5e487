unit Period;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  StdCtrls, Db, DBTables, Quorel, KVA, Velmar, KVAError;

type
  TPeriodFrame = class(TFrame)
    edFrom: TEdit;
    edTo: TEdit;
    lblDash: TLabel;
    QQuarters: TKVAQuery;
  public
    procedure LastMonth;
    function FromDate: TDateTime;
    function ToDate: TDateTime;
  end;

implementation

{$R *.DFM}

procedure TPeriodFrame.LastMonth;
var
  Y, M, D: Word;
begin
  DecodeDate(IncMonth(Date, -1), Y, M, D);
  edFrom.Text := DateToStr(EncodeDate(Y, M, 1));
  edTo.Text := DateToStr(IncMonth(EncodeDate(Y, M, 1), 1) - 1);
end;

function TPeriodFrame.FromDate: TDateTime;
begin
  Result := StrToDate(edFrom.Text);
end;

function TPeriodFrame.ToDate: TDateTime;
begin
  Result := StrToDate(edTo.Text);
end;

end.
