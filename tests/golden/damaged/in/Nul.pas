unit Nul;

interface

implementation

{$R *.dfm}

end.
