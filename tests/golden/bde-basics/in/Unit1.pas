unit Unit1;

interface

uses Forms, DBTables, DB;

type
  TForm1 = class(TForm)
    Database1: TDatabase;
    Query1: TQuery; { TQuery is filled below }
  end;

implementation

{$R *.dfm}

procedure Fill(var S: string);
begin
  try
    S := 'TQuery';
  except
    on E: EDBEngineError do
      raise;
  end;
end;

end.
