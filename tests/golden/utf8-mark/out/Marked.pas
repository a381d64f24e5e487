unit Marked;
interface
uses DBTables, Quorel, KVA, Velmar, KVAError; { Å kofja Loka }
var
  TQueryÃ©, Ã©TQuery: TKVAQuery; // Ã( ÿ TKVATable
implementation
{$R *.dfm}
end.
