unit Lf;
uses DBTables, Quorel, KVA, Velmar, KVAError;
var D: TKVAConnection;
    Transaction: TKVATransaction;
{$R *.dfm}
end.
