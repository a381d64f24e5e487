unit Deliveries;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  Grids, DBGrids, StdCtrls, Db, IBCustomDataSet, IBQuery;

type
  TDeliveriesForm = class(TForm)
    Grid: TDBGrid;
    lblTotal: TLabel;
    qryDays: TKVAQuery;
    srcDays: TDataSource;
    qryCarts: TKVAQuery;
    srcCarts: TDataSource;
    procedure qryDaysAfterOpen(DataSet: TDataSet);
  end;

procedure ShowDeliveries(GrowerId: Integer; const GrowerName: string);

implementation

uses Data;

{$R *.DFM}

procedure ShowDeliveries(GrowerId: Integer; const GrowerName: string);
begin
  with TDeliveriesForm.Create(Application) do
  try
    Caption := Caption + ' of ' + GrowerName;
    qryDays.ParamByName('GROWER_ID').AsInteger := GrowerId;
    qryDays.Open;
    qryCarts.Open;
    ShowModal;
  finally
    Free;
  end;
end;

procedure TDeliveriesForm.qryDaysAfterOpen(DataSet: TDataSet);
var
  Total: Double;
begin
  Total := 0;
  while not DataSet.EOF do
  begin
    Total := Total + DataSet.FieldByName('KG').AsFloat;
    DataSet.Next;
  end;
  DataSet.First;
  lblTotal.Caption := Format('%.1f t', [Total / 1000]);
end;

end.
