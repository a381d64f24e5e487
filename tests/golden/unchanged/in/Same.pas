unit Same;
uses DB;
var Q: TQuery; D: TDatabase;
implementation
{$R *.dfm}
end.
