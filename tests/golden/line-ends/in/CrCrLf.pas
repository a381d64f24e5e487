unit CrCrLf;
uses DBTables;
var D: TDatabase;
{$R *.dfm}
end.
