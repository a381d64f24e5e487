unit Jp;
{ マ TKVAQuery }
// ボ TKVAQuery
interface
var
  ボTQuery: TKVAQuery; { 表マ TKVATable }
  S: string = '表'; Q: TKVAQuery;
implementation
{$R *.dfm}
end.
