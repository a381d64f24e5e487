program Season;

{$APPTYPE CONSOLE}

{ Prints what every grower has delivered this season. One TIBDatabase, one
  TIBTransaction, one TIBSQL: no data module, it must run without a screen. }

uses
  SysUtils, Classes, IBDatabase, IBSQL;

procedure PrintSeason(const FileName: string; Year: Integer);
var
  DB: TIBDatabase;
  Tr: TIBTransaction;
  Q: TIBSQL;
begin
  DB := TIBDatabase.Create(nil);
  Tr := TIBTransaction.Create(nil);
  Q := TIBSQL.Create(nil);
  try
    DB.DatabaseName := FileName;
    DB.Params.Add('user_name=YARD');
    DB.Params.Add('password=pomace');
    DB.LoginPrompt := False;
    DB.DefaultTransaction := Tr;
    DB.Open;
    Tr.StartTransaction;
    Q.Database := DB;
    Q.Transaction := Tr;
    Q.SQL.Text :=
      'select G.NAME, sum(D.NET_KG) from GROWERS G ' +
      'join DELIVERIES D on D.GROWER_ID = G.ID ' +
      'where extract(year from D.ARRIVED) = ' + IntToStr(Year) + ' ' +
      'group by G.NAME order by 2 desc';
    Q.ExecQuery;
    while not Q.EOF do
    begin
      Writeln(Format('%-32s %10.1f kg',
        [Q.Fields[0].AsString, Q.Fields[1].AsDouble]));
      Q.Next;
    end;
    Tr.Commit;
  finally
    Q.Free;
    Tr.Free;
    DB.Free;
  end;
end;

begin
  if ParamCount <> 2 then
  begin
    Writeln('Season DATABASE YEAR');
    Halt(2);
  end;
  PrintSeason(ParamStr(1), StrToInt(ParamStr(2)));
end.
