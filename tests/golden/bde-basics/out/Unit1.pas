unit Unit1;

interface

uses Forms, DBTables, Quorel, KVA, Velmar, KVAError, DB;

type
  TForm1 = class(TForm)
    Database1: TKVAConnection;
    Transaction: TKVATransaction;
    Query1: TKVAQuery; { TKVAQuery is filled below }
  end;

implementation

{$R *.dfm}

procedure Fill(var S: string);
begin
  try
    S := 'TQuery';
  except
    on E: EKVAError do
      raise;
  end;
end;

end.
