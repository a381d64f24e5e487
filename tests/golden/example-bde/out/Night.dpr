program Night;

{$APPTYPE CONSOLE}

{ Runs from the scheduler at two in the morning: marks what became overdue
  since yesterday and books the fines. No forms, one TQuery, one TSession. }

uses
  SysUtils, Classes,
  {$IFDEF TRACE} Windows, {$ENDIF}
  Db, DBTables,
  Texts in 'Common\Texts.pas';

const
  FinePerDay = 0.10;

function BookFines(const Alias: string; UpTo: TDateTime): Integer;
var
  Loans: TQuery;
  Fines: TTable;
begin
  Result := 0;
  Loans := TQuery.Create(nil);
  Fines := TTable.Create(nil);
  try
    Loans.DatabaseName := Alias;
    Loans.SQL.Text :=
      'select LOAN_NO, MEMBER_NO, DUE from LOANS ' +
      'where RETURNED is null and DUE < :UPTO';
    Loans.ParamByName('UPTO').AsDateTime := UpTo;
    Loans.Open;
    Fines.DatabaseName := Alias;
    Fines.TableName := 'FINES';
    Fines.IndexFieldNames := 'LOAN_NO';
    Fines.Open;
    while not Loans.EOF do
    begin
      if not Fines.FindKey([Loans['LOAN_NO']]) then
      begin
        Fines.AppendRecord([Loans['LOAN_NO'], Loans['MEMBER_NO'], 0]);
        Inc(Result);
      end;
      Fines.Edit;
      Fines['AMOUNT'] := (UpTo - Loans['DUE']) * FinePerDay;
      Fines.Post;
      Loans.Next;
    end;
  finally
    Fines.Free;
    Loans.Free;
  end;
end;

begin
  try
    Writeln(Format(SFinesBooked, [BookFines('LENDING', Date)]));
  except
    on E: EDBEngineError do
    begin
      Writeln('Engine: ', E.Errors[0].Message);
      Halt(2);
    end;
    on E: Exception do
    begin
      Writeln(E.ClassName, ': ', E.Message);
      Halt(1);
    end;
  end;
end.
