unit DataMod;

interface

uses
  Windows, Messages, SysUtils, Classes, Graphics, Controls, Forms, Dialogs,
  Db, DBTables, Quorel, KVA, Velmar, KVAError;

type
  TDM = class(TDataModule)
    LendingDB: TKVAConnection;
    Transaction: TKVATransaction;
    TMembers: TKVATable;
    SMembers: TDataSource;
    TShelves: TKVATable;
    PLend: TKVAStoredProc;
    PTakeBack: TKVAStoredProc;
    UMembers: TKVAUpdateSQL;
    QNextNo: TKVAQuery;
    procedure DMCreate(Sender: TObject);
    procedure DMDestroy(Sender: TObject);
    procedure LendingDBLogin(Database: TKVAConnection;
    Transaction: TKVATransaction; LoginParams: TStrings);
    procedure TMembersBeforePost(DataSet: TDataSet);
    procedure TMembersPostError(DataSet: TDataSet; E: EDatabaseError;
      var Action: TDataAction);
  private
    FStarted: TDateTime;
  public
    function NextNumber(const Counter: string): Integer;
    function Lend(MemberNo, CopyNo: Integer): TDateTime;
    procedure TakeBack(CopyNo: Integer);
  end;

var
  DM: TDM;

implementation

uses
  Texts;

{$R *.DFM}

procedure TDM.DMCreate(Sender: TObject);
begin
  FStarted := Now;
  { The TKVAConnection stays closed in the designer: an open one makes the project
    hang for a minute when the server is down. }
  LendingDB.Connected := True;
  TMembers.Open;
  TShelves.Open;
end;

procedure TDM.DMDestroy(Sender: TObject);
var
  I: Integer;
begin
  for I := 0 to ComponentCount - 1 do
    if Components[I] is TDBDataSet then
      TDBDataSet(Components[I]).Close;
  LendingDB.Connected := False;
end;

procedure TDM.LendingDBLogin(Database: TKVAConnection;
    Transaction: TKVATransaction; LoginParams: TStrings);
begin
  LoginParams.Values['USER NAME'] := 'DESK';
  LoginParams.Values['PASSWORD'] := 'ladder';
end;

procedure TDM.TMembersBeforePost(DataSet: TDataSet);
begin
  if TMembers.FieldByName('NAME').IsNull then
    raise EDatabaseError.Create(SNameMissing);
  if TMembers.State = dsInsert then
    TMembers['MEMBER_NO'] := NextNumber('MEMBER');
end;

procedure TDM.TMembersPostError(DataSet: TDataSet; E: EDatabaseError;
  var Action: TDataAction);
begin
  // EKVAError knows more than its message tells; 9729 is a key violation
  if E is EKVAError then
    if EKVAError(E).Errors[0].ErrorCode = 9729 then
    begin
      ShowMessage(SNumberTaken);
      Action := daAbort;
    end;
end;

function TDM.NextNumber(const Counter: string): Integer;
begin
  with QNextNo do
  begin
    ParamByName('COUNTER').AsString := Counter;
    Open;
    try
      Result := Fields[0].AsInteger + 1;
    finally
      Close;
    end;
  end;
end;

function TDM.Lend(MemberNo, CopyNo: Integer): TDateTime;
begin
  LendingDB.StartTransaction;
  try
    PLend.ParamByName('MEMBER_NO').AsInteger := MemberNo;
    PLend.ParamByName('COPY_NO').AsInteger := CopyNo;
    PLend.ExecProc;
    Result := PLend.ParamByName('DUE').AsDateTime;
    LendingDB.Commit;
  except
    LendingDB.Rollback;
    raise;
  end;
end;

procedure TDM.TakeBack(CopyNo: Integer);
begin
  PTakeBack.ParamByName('COPY_NO').AsInteger := CopyNo;
  PTakeBack.ExecProc;
end;

end.
