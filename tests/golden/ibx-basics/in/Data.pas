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
  end;

implementation

{$R *.dfm}

end.
