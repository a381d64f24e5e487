unit deep;
{$R *.dfm}
var Q: TKVAQuery;
end.
