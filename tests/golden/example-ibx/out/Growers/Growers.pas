unit Growers;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  Grids, DBGrids, StdCtrls, ExtCtrls, Db, IBCustomDataSet, IBQuery,
  IBUpdateSQL;

type
  TGrowersForm = class(TForm)
    Grid: TDBGrid;
    Foot: TPanel;
    btDeliveries: TButton;
    dsGrowers: TKVAQuery;
    dsGrowersID: TIntegerField;
    dsGrowersNAME: TIBStringField;
    dsGrowersVILLAGE: TIBStringField;
    srcGrowers: TDataSource;
    qrySums: TKVAQuery;
    updSums: TKVAUpdateSQL;
    srcSums: TDataSource;
    procedure FormShow(Sender: TObject);
    procedure FormHide(Sender: TObject);
    procedure btDeliveriesClick(Sender: TObject);
    procedure dsGrowersNewRecord(DataSet: TDataSet);
  end;

var
  GrowersForm: TGrowersForm;

implementation

uses Data, Deliveries;

{$R *.DFM}

procedure TGrowersForm.FormShow(Sender: TObject);
begin
  dsGrowers.Open;
  qrySums.Open;
end;

procedure TGrowersForm.FormHide(Sender: TObject);
begin
  qrySums.Close;
  dsGrowers.Close;
end;

procedure TGrowersForm.btDeliveriesClick(Sender: TObject);
begin
  ShowDeliveries(dsGrowersID.AsInteger, dsGrowersNAME.AsString);
end;

procedure TGrowersForm.dsGrowersNewRecord(DataSet: TDataSet);
begin
  { a TKVAQuery asks no generator by itself in this version }
  with TKVAQuery.Create(nil) do
  try
    Database := MainData.PressDB;
    Transaction := MainData.WriteTr;
    SQL.Text := 'select gen_id(GROWER_ID, 1) from RDB$DATABASE';
    Open;
    dsGrowersID.Value := Fields[0].AsInteger;
  finally
    Free;
  end;
end;

end.
