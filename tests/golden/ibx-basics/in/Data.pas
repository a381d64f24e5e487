unit Data;

interface

uses DBTables, IBDatabase, IBQuery;

type
  TDM = class(TDataModule)
    DB: TIBDatabase;
    Tr: TIBTransaction;
    DS: TIBDataSet;
    Old: TDatabase;
    Mover: TBatchMove;
    procedure Failed(E: EDBEngineError);
  end;

implementation

{$R *.dfm}

end.
