unit Jp;
{ マ TQuery }
// ボ TQuery
interface
var
  ボTQuery: TQuery; { 表マ TTable }
  S: string = '表'; Q: TQuery;
implementation
{$R *.dfm}
end.
