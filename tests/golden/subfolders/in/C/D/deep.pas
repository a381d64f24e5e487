unit deep;
{$R *.dfm}
var Q: TQuery;
end.
