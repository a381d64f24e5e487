program App;

uses A, DBTables, Quorel, KVA, Velmar, KVAError, TKVAQuery, dbtables, Quorel, KVA, Velmar, KVAError in 'x', { not the end; } Bde.DBTables, Quorel, KVA, Velmar, KVAError, // nor; this
  {$IFDEF X} DBTables, Quorel, KVA, Velmar, KVAError, {$ENDIF} DB;

type
  TA = class(TKVAQuery)
    DBTables: Integer;
    List: array of TKVAQuery;
    B: TKVAConnection;
  end;

procedure P;
begin
  with TKVAConnection;
    Transaction: TKVATransaction.Create(nil) do Free;
  DBTables.Session.Close;
  TQueryHelper.Run(DBTables.TKVAQuery, TIBQuery);
end;

uses
  DBTABLES, Quorel, KVA, Velmar, KVAError
end.
