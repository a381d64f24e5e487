unit Data;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  Db, IBDatabase, IBCustomDataSet, IBQuery, IBTable, IBStoredProc, IBSQL,
  IBUpdateSQL;

type
  TMainData = class(TDataModule)
    PressDB: TKVAConnection;
    ReadTr: TKVATransaction;
    WriteTr: TKVATransaction;
    tblSorts: TKVATable;
    srcSorts: TDataSource;
    procWeigh: TKVAStoredProc;
    sqlCounter: TKVASQL;
    procedure MainDataCreate(Sender: TObject);
    procedure MainDataDestroy(Sender: TObject);
    procedure PressDBBeforeConnect(Sender: TObject);
  public
    function BookWeight(GrowerId, SortId: Integer; Gross, Tare: Double): Integer;
    function NextBatch: Integer;
  end;

var
  MainData: TMainData;

implementation

uses IBErrorCodes, IB;

{$R *.DFM}

procedure TMainData.MainDataCreate(Sender: TObject);
begin
  PressDB.Open;
  ReadTr.StartTransaction;
  tblSorts.Open;
end;

procedure TMainData.MainDataDestroy(Sender: TObject);
begin
  if WriteTr.InTransaction then
    WriteTr.Rollback;
  PressDB.CloseDataSets;
  PressDB.Close;
end;

procedure TMainData.PressDBBeforeConnect(Sender: TObject);
begin
  { the TKVAConnection in the designer points to the test data }
  if ParamCount > 0 then
    PressDB.DatabaseName := ParamStr(1);
end;

function TMainData.BookWeight(GrowerId, SortId: Integer;
  Gross, Tare: Double): Integer;
begin
  WriteTr.StartTransaction;
  try
    procWeigh.ParamByName('GROWER_ID').AsInteger := GrowerId;
    procWeigh.ParamByName('SORT_ID').AsInteger := SortId;
    procWeigh.ParamByName('GROSS_KG').AsFloat := Gross;
    procWeigh.ParamByName('TARE_KG').AsFloat := Tare;
    procWeigh.ExecProc;
    Result := procWeigh.ParamByName('DELIVERY_ID').AsInteger;
    WriteTr.Commit;
  except
    on E: EIBInterBaseError do
    begin
      WriteTr.Rollback;
      if E.IBErrorCode = isc_lock_conflict then
        raise Exception.Create('The other scale is just booking; try again.');
      raise;
    end;
  end;
end;

function TMainData.NextBatch: Integer;
begin
  sqlCounter.ExecQuery;
  try
    Result := sqlCounter.Fields[0].AsInteger;
  finally
    sqlCounter.Close;
  end;
end;

end.
