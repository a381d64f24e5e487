unit Third;

interface

implementation

{$R Third1.dfm}{$R x*.dfm}{$R a.dfm b.res}{$R+}{$R *.dfmx}{$R*.dfm}{$R *.df}{$R missing.dfm}

end.
