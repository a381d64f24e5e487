unit Marked;
interface
uses DBTables; { Å kofja Loka }
var
  TQueryÃ©, Ã©TQuery: TQuery; // Ã( ÿ TTable
implementation
{$R *.dfm}
end.
