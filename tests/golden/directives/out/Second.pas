unit Second;

interface

implementation

{$R *.dfm1} {$r *.Dfm}

end.
