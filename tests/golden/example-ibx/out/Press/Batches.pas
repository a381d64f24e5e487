unit Batches;

// Lisování: jedna várka = jeden lis. TKVAQuery drí várky, TKVAStoredProc
// ukonèí várku a spoèítá vıtìnost (luouèkı mošt, úpìnlivì mìøenı).

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  Grids, DBGrids, StdCtrls, DBCtrls, Db, IBCustomDataSet, IBStoredProc;

type
  TBatchesForm = class(TForm)
    Grid: TDBGrid;
    btNew: TButton;
    btClose: TButton;
    dsBatches: TKVAQuery;
    srcBatches: TDataSource;
    procClose: TKVAStoredProc;
    procedure FormShow(Sender: TObject);
    procedure btNewClick(Sender: TObject);
    procedure btCloseClick(Sender: TObject);
  end;

var
  BatchesForm: TBatchesForm;

implementation

uses Data;

{$R *.DFM}

const
  YieldText = 'Vıtìnost %.1f %%';

procedure TBatchesForm.FormShow(Sender: TObject);
begin
  if not MainData.WriteTr.InTransaction then
    MainData.WriteTr.StartTransaction;
  dsBatches.Open;
end;

procedure TBatchesForm.btNewClick(Sender: TObject);
begin
  dsBatches.Insert;
  dsBatches.FieldByName('BATCH_NO').AsInteger := MainData.NextBatch;
  dsBatches.FieldByName('STARTED').AsDateTime := Now;
end;

procedure TBatchesForm.btCloseClick(Sender: TObject);
begin
  procClose.ParamByName('BATCH_NO').Value := dsBatches['BATCH_NO'];
  procClose.ExecProc;
  Caption := Format(YieldText, [procClose.ParamByName('YIELD').AsFloat]);
  MainData.WriteTr.CommitRetaining;
end;

end.
