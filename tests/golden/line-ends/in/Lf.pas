unit Lf;
uses DBTables;
var D: TDatabase;
{$R *.dfm}
end.
