unit Data;

interface

uses DBTables, Quorel, KVA, KVAScript, Velmar, KVAError, IBDatabase, IBQuery;

type
  TDM = class(TDataModule)
    DB: TKVAConnection;
    Tr: TKVATransaction;
    DS: TKVAQuery;
    Old: TDatabase;
    Mover: TBatchMove;
    procedure Failed(E: EKVAError);
  end;

implementation

{$R *.dfm}

end.
