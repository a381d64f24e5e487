program App;

uses A, DBTables, TQuery, dbtables in 'x', { not the end; } Bde.DBTables, // nor; this
  {$IFDEF X} DBTables, {$ENDIF} DB;

type
  TA = class(TQuery)
    DBTables: Integer;
    List: array of TQuery;
    B: tdatabase;
  end;

procedure P;
begin
  with TDatabase.Create(nil) do Free;
  DBTables.Session.Close;
  TQueryHelper.Run(DBTables.TQuery, TIBQuery);
end;

uses
  DBTABLES
end.
